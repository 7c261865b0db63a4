// Frames in numpy arrays.
#include "Arrays.h"

#include <pybind11/stl.h>
#include <string>

namespace py = pybind11;

namespace lumofe {
namespace {

using Shape = std::vector<py::ssize_t>;

constexpr py::ssize_t kMaxSide = 16384; // of pictures that are only converted

std::string text(const Shape& shape)
{
    return py::str(py::tuple(py::cast(shape)));
}

Shape shapeOf(const py::array& array)
{
    return {array.shape(), array.shape() + array.ndim()};
}

// An array of bytes in a row, of any shape.
py::array plainArray(const py::object& object, const char* name)
{
    const std::string prefix = std::string(name) + ": ";
    if (!py::isinstance<py::array>(object))
        throw py::type_error(prefix + "expected a numpy array, got " +
                             std::string(py::str(py::type::of(object).attr("__name__"))));
    const auto array = py::reinterpret_borrow<py::array>(object);
    if (!array.dtype().equal(py::dtype::of<std::uint8_t>()))
        throw py::value_error(prefix + "expected dtype uint8, got " +
                              std::string(py::str(array.dtype())));
    if (!(array.flags() & py::array::c_style))
        throw py::value_error(prefix +
                              "expected a C-contiguous array; give numpy.ascontiguousarray(...)");
    return array;
}

bool evenSide(py::ssize_t side)
{
    return side >= 2 && side <= kMaxSide && side % 2 == 0;
}

void checkShape(const py::array& array, const char* name, const Shape& shape)
{
    const Shape got = shapeOf(array);
    if (got != shape)
        throw py::value_error(std::string(name) + ": expected shape " + text(shape) + ", got " +
                              text(got));
}

} // namespace

Shape frameShape(Size size, PixelFormat format)
{
    if (format == PixelFormat::rgb) return {size.height, size.width, 3};
    return {size.height * 3 / 2, size.width};
}

const std::uint8_t* frameBytes(const py::object& object, const char* name, const Shape& shape)
{
    const py::array array = plainArray(object, name);
    checkShape(array, name, shape);
    return static_cast<const std::uint8_t*>(array.data());
}

std::uint8_t* writableBytes(const py::object& object, const char* name, const Shape& shape,
                            const py::object& input)
{
    py::array array = plainArray(object, name);
    checkShape(array, name, shape);
    if (!array.writeable())
        throw py::value_error(std::string(name) + ": the array is read-only; give another one");
    const py::array source = plainArray(input, "frame");
    auto* const bytes = static_cast<std::uint8_t*>(array.mutable_data());
    const auto* const from = static_cast<const std::uint8_t*>(source.data());
    if (bytes < from + source.nbytes() && from < bytes + array.nbytes())
        throw py::value_error(std::string(name) + ": overlaps the input; give another array");
    return bytes;
}

Size frameSize(const py::object& object, const char* name, PixelFormat format)
{
    const py::array array = plainArray(object, name);
    const Shape got = shapeOf(array);
    const bool rgb = format == PixelFormat::rgb;
    const bool fits =
        rgb ? got.size() == 3 && got[2] == 3 && evenSide(got[0]) && evenSide(got[1])
            : got.size() == 2 && got[0] % 3 == 0 && evenSide(got[0] / 3 * 2) && evenSide(got[1]);
    if (!fits)
        throw py::value_error(std::string(name) + ": expected shape " +
                              (rgb ? "(height, width, 3)" : "(height * 3 / 2, width)") +
                              " of an even height and width up to " + std::to_string(kMaxSide) +
                              ", got " + text(got));
    return {int(got[1]), int(rgb ? got[0] : got[0] / 3 * 2)};
}

} // namespace lumofe
