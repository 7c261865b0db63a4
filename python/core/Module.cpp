// The compiled part of the Python module: cameras and conversions. Names, defaults and ranges are
// looked after in Python, what memory depends on here.
#include "Arrays.h"
#include "Error.h"
#include "SharedCamera.h"
#include "camera/CameraFile.h"
#include "media/Pixels.h"

#include <LumoFESDK.h>
#include <algorithm>
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <string>
#include <string_view>
#include <tuple>

namespace py = pybind11;

namespace lumofe {
namespace {

using WithoutGil = py::call_guard<py::gil_scoped_release>;
using Pair = std::tuple<int, int>;
using CircleTuple = std::tuple<int, int, int>;
using AimTuple = std::tuple<double, double, double, std::optional<int>>;

constexpr View kViews[] = {View::single, View::quad, View::ptz360, View::half180};
constexpr Mount kMounts[] = {Mount::ceiling, Mount::wall, Mount::floor};

Size toSize(const Pair& pair)
{
    return {std::get<0>(pair), std::get<1>(pair)};
}

Pair toPair(Size size)
{
    return {size.width, size.height};
}

CircleTuple toTuple(const Circle& circle)
{
    return {circle.x, circle.y, circle.radius};
}

Circle toCircle(const CircleTuple& circle)
{
    return {std::get<0>(circle), std::get<1>(circle), std::get<2>(circle)};
}

std::vector<Aim> toAims(const std::vector<AimTuple>& tuples)
{
    std::vector<Aim> aims;
    for (const auto& [pan, tilt, zoom, offset] : tuples)
        aims.push_back({pan, tilt, zoom, offset});
    return aims;
}

std::vector<AimTuple> toTuples(const std::vector<Aim>& aims)
{
    std::vector<AimTuple> tuples;
    for (const Aim& aim : aims)
        tuples.emplace_back(aim.pan, aim.tilt, aim.zoom, aim.offset);
    return tuples;
}

// A camera and the shapes of its frames.
struct PyCamera : SharedCamera {
    explicit PyCamera(const DewarperSetup& setup)
        : SharedCamera(setup), output(setup.output),
          inputShape(frameShape(setup.input, setup.format)),
          outputShape(frameShape(setup.output, setup.format))
    {
    }

    Size output;
    std::vector<py::ssize_t> inputShape;
    std::vector<py::ssize_t> outputShape;
};

py::object dewarp(PyCamera& camera, const py::object& frame, const py::object& out)
{
    const std::uint8_t* input = frameBytes(frame, "frame", camera.inputShape);
    const py::object result =
        out.is_none() ? py::object(py::array_t<std::uint8_t>(camera.outputShape)) : out;
    std::uint8_t* output = writableBytes(result, "out", camera.outputShape, frame);
    {
        const py::gil_scoped_release withoutGil;
        camera.dewarp(input, output);
    }
    return result;
}

py::object sourceMap(const PyCamera& camera)
{
    std::vector<float> map;
    {
        const py::gil_scoped_release withoutGil;
        map = camera.sourceMap();
    }
    const auto [width, height] = camera.output;
    return py::array_t<float>(std::vector<py::ssize_t>{height, width, 2}, map.data());
}

// The two chroma planes of YV12 stand the other way round in a Frame420.
void exchangePlanes(Frame420& frame)
{
    std::swap_ranges(frame.plane(1), frame.plane(2), frame.plane(2));
}

void convertToRgb(const std::uint8_t* frame, PixelFormat format, Size size, std::uint8_t* rgb)
{
    Frame420 planar(size);
    if (format == PixelFormat::nv12) {
        separateChroma(frame, planar.bytes.data(), size);
    } else {
        std::copy_n(frame, planar.bytes.size(), planar.bytes.data());
        exchangePlanes(planar);
    }
    std::ranges::copy(toImage(planar).bytes, rgb);
}

void convertFromRgb(const std::uint8_t* rgb, Size size, PixelFormat format, std::uint8_t* frame)
{
    Image image(size);
    std::copy_n(rgb, image.bytes.size(), image.bytes.data());
    Frame420 planar = toFrame420(image);
    if (format == PixelFormat::nv12) {
        interleaveChroma(planar.bytes.data(), frame, size);
    } else {
        exchangePlanes(planar);
        std::ranges::copy(planar.bytes, frame);
    }
}

py::object toRgb(const py::object& frame, PixelFormat format)
{
    const Size size = frameSize(frame, "frame", format);
    const std::uint8_t* input = frameBytes(frame, "frame", frameShape(size, format));
    py::array_t<std::uint8_t> rgb(frameShape(size, PixelFormat::rgb));
    std::uint8_t* const output = rgb.mutable_data();
    {
        const py::gil_scoped_release withoutGil;
        convertToRgb(input, format, size, output);
    }
    return rgb;
}

py::object fromRgb(const py::object& picture, PixelFormat format)
{
    const Size size = frameSize(picture, "picture", PixelFormat::rgb);
    const std::uint8_t* input = frameBytes(picture, "picture", frameShape(size, PixelFormat::rgb));
    py::array_t<std::uint8_t> frame(frameShape(size, format));
    std::uint8_t* const output = frame.mutable_data();
    {
        const py::gil_scoped_release withoutGil;
        convertFromRgb(input, size, format, output);
    }
    return frame;
}

// What a camera file says: input, mount, circle, layout, aims and panorama offset of the preset.
// Without a preset the layout is the file's, and there are no aims.
py::tuple cameraOf(std::string_view text, const std::string& name,
                   const std::optional<std::string>& presetName)
{
    try {
        const CameraFile camera = parseCameraFile(text, name);
        Preset preset{"", camera.layout, {}};
        if (presetName) preset = presetNamed(camera, *presetName, name);
        return py::make_tuple(toPair(camera.input), mountRule(camera.mount).name,
                              toTuple(camera.circle), layoutRule(preset.layout).name,
                              toTuples(preset.position.views), preset.position.panoOffset);
    } catch (const Error& error) {
        throw py::value_error(error.what());
    }
}

void addNames(py::module_& module)
{
    py::enum_<View> views(module, "View");
    for (View view : kViews)
        views.value(layoutRule(view).name, view);
    py::enum_<Mount> mounts(module, "Mount");
    for (Mount mount : kMounts)
        mounts.value(mountRule(mount).name, mount);
    py::enum_<PixelFormat>(module, "PixelFormat")
        .value("nv12", PixelFormat::nv12)
        .value("yv12", PixelFormat::yv12)
        .value("rgb", PixelFormat::rgb);
}

void addRules(py::module_& module)
{
    module.attr("SMALLEST_INPUT") = toPair(kSmallestInput);
    module.attr("LARGEST_INPUT") = toPair(kLargestInput);
    module.attr("VERSION") = std::to_string(LUMOFESDK_VERSION_MAJOR) + "." +
                             std::to_string(LUMOFESDK_VERSION_MINOR) + "." +
                             std::to_string(LUMOFESDK_VERSION_PATCH);
    module.def(
        "view_count", [](View view) { return layoutRule(view).views; }, py::arg("view"));
    module.def(
        "direction_limits",
        [](Mount mount) {
            const MountRule& rule = mountRule(mount);
            return std::tuple(rule.panMin, rule.panMax, rule.tiltMin, rule.tiltMax);
        },
        py::arg("mount"));
    module.def(
        "default_size",
        [](View view, Mount mount, const Pair& input) {
            return toPair(defaultOutputSize(view, mount, toSize(input)));
        },
        py::arg("view"), py::arg("mount"), py::arg("input"));
    module.def(
        "nearest_size",
        [](View view, Mount mount, const Pair& asked, const Pair& input) {
            return toPair(nearestComposing(view, mount, toSize(asked), toSize(input)));
        },
        py::arg("view"), py::arg("mount"), py::arg("asked"), py::arg("input"));
    module.def(
        "unwrap_is_complete",
        [](const Pair& input, int radius) { return unwrapIsComplete(toSize(input), radius); },
        py::arg("input"), py::arg("radius"));
}

void addCamera(py::module_& module)
{
    py::class_<PyCamera>(module, "Camera")
        .def(py::init([](const Pair& input, const Pair& output, const CircleTuple& circle,
                         View view, Mount mount, PixelFormat format, int panoOffset, bool upright) {
                 return std::make_unique<PyCamera>(DewarperSetup{toSize(input), toSize(output),
                                                                 toCircle(circle), view, mount,
                                                                 format, panoOffset, upright});
             }),
             py::arg("input"), py::arg("output"), py::arg("circle"), py::arg("view"),
             py::arg("mount"), py::arg("format"), py::arg("pano_offset"), py::arg("upright"),
             WithoutGil())
        .def("close", &PyCamera::close, WithoutGil())
        .def_property_readonly(
            "closed", py::cpp_function([](const PyCamera& c) { return c.closed(); }, WithoutGil()))
        .def(
            "aim_all",
            [](PyCamera& camera, const std::vector<AimTuple>& aims) { camera.aim(toAims(aims)); },
            py::arg("aims"), WithoutGil())
        .def(
            "aim_one",
            [](PyCamera& camera, int number, std::optional<double> pan, std::optional<double> tilt,
               std::optional<double> zoom) {
                camera.aim(number, {pan, tilt, zoom});
            },
            py::arg("number"), py::arg("pan"), py::arg("tilt"), py::arg("zoom"), WithoutGil())
        .def(
            "aims", [](const PyCamera& camera) { return toTuples(camera.aims()); }, WithoutGil())
        .def(
            "step",
            [](PyCamera& camera, int number, int pan, int tilt, int zoom) {
                camera.step(number, {pan, tilt, zoom});
            },
            py::arg("number"), py::arg("pan"), py::arg("tilt"), py::arg("zoom"), WithoutGil())
        .def("turn_panorama", &PyCamera::turnPanorama, py::arg("degrees"), WithoutGil())
        .def("pano_offset", &PyCamera::panoOffset, WithoutGil())
        .def(
            "set_circle",
            [](PyCamera& camera, const CircleTuple& circle) { camera.setCircle(toCircle(circle)); },
            py::arg("circle"), WithoutGil())
        .def(
            "circle", [](const PyCamera& camera) { return toTuple(camera.circle()); }, WithoutGil())
        .def(
            "direction_of",
            [](const PyCamera& camera, int x, int y) {
                const Aim aim = camera.directionOf(x, y);
                return std::tuple(aim.pan, aim.tilt);
            },
            py::arg("x"), py::arg("y"), WithoutGil())
        .def("aim_at", &PyCamera::aimAt, py::arg("number"), py::arg("x"), py::arg("y"),
             py::arg("zoom"), WithoutGil())
        .def_property_readonly("input_shape",
                               [](const PyCamera& c) { return py::tuple(py::cast(c.inputShape)); })
        .def_property_readonly("output_shape",
                               [](const PyCamera& c) { return py::tuple(py::cast(c.outputShape)); })
        .def("source_map", &sourceMap)
        .def("dewarp", &dewarp, py::arg("frame"), py::arg("out") = py::none());
}

} // namespace
} // namespace lumofe

PYBIND11_MODULE(_core, module)
{
    using namespace lumofe;
    module.doc() = "Cameras of the library, and conversions; lumofe.Camera is what to use.";
    addNames(module);
    addRules(module);
    addCamera(module);
    module.def("camera_of", &cameraOf, py::arg("text"), py::arg("name"), py::arg("preset"));
    module.def("to_rgb", &toRgb, py::arg("frame"), py::arg("format"));
    module.def("from_rgb", &fromRgb, py::arg("picture"), py::arg("format"));
}
