// The element and the file of a camera.
#include "GstTestSupport.h"
#include "camera/CameraFile.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::Bytes;
using test::frameBytes;
using test::kInput;
using test::kInputBytes;
using test::Pipeline;

const Circle kCircle{150, 170, 140};

// A camera's file in a folder of its own; both are removed in the end.
class WrittenCamera {
public:
    explicit WrittenCamera(Size input = kInput)
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "lumofe-XXXXXX").string();
        if (!mkdtemp(pattern.data())) throw std::runtime_error("no scratch folder");
        folder_ = pattern;
        CameraFile camera;
        camera.input = input;
        camera.mount = Mount::floor;
        camera.circle = kCircle;
        camera.layout = View::quad;
        camera.presets = {{"door", View::single, {{{70, -40, 20, {}}}, 0}},
                          {"round", View::half180, {{}, 45}}};
        writeCameraFile(path(), camera);
    }
    ~WrittenCamera() { std::filesystem::remove_all(folder_); }
    WrittenCamera(const WrittenCamera&) = delete;
    WrittenCamera& operator=(const WrittenCamera&) = delete;

    std::string path() const { return (folder_ / "hall.json").string(); }
    std::string property() const { return "camera-file=" + path(); }

private:
    std::filesystem::path folder_;
};

Bytes expected(View view, const std::vector<Aim>& aims, const Bytes& input, int offset = 0)
{
    DewarperSetup setup = test::setupOf(view, Mount::floor, PixelFormat::nv12);
    setup.circle = kCircle;
    setup.panoOffset = offset;
    return test::dewarped(setup, aims, input);
}

TEST(ElementCamera, FileAndPresetsSayWhatIsShown)
{
    const WrittenCamera camera;
    const Bytes input = frameBytes(kInputBytes);
    Pipeline pipeline(camera.property());
    pipeline.input("NV12");
    EXPECT_EQ(pipeline.dewarp(input),
              expected(View::quad, test::usualAims(View::quad, Mount::floor), input));
    pipeline.set("preset", "door");
    EXPECT_EQ(pipeline.dewarp(input), expected(View::single, {{70, -40, 20}}, input));
    EXPECT_EQ(pipeline.number("pan1"), 70);
    pipeline.set("preset", "round");
    EXPECT_EQ(pipeline.dewarp(input), expected(View::half180, {}, input, 45));
    EXPECT_EQ(pipeline.outputSize(), defaultOutputSize(View::half180, Mount::floor, kInput));
}

TEST(ElementCamera, WhatIsSetAfterItWins)
{
    const WrittenCamera camera;
    const Bytes input = frameBytes(kInputBytes);
    Pipeline pipeline(camera.property() + " preset=door pan1=30");
    pipeline.input("NV12");
    EXPECT_EQ(pipeline.dewarp(input), expected(View::single, {{30, -40, 20}}, input));
    int told = 0;
    const auto count =
        +[](GObject*, GParamSpec*, gpointer number) { ++*static_cast<int*>(number); };
    g_signal_connect(pipeline.element(), "notify::pan1", G_CALLBACK(count), &told);
    pipeline.set("preset", "door");
    EXPECT_EQ(pipeline.number("pan1"), 70) << "the preset again";
    EXPECT_EQ(told, 1);
}

// The message of an element that does not start.
std::string errorAtStart(const std::string& properties)
{
    test::useGStreamer();
    GstElement* element = gst_parse_launch(("lumofe " + properties).c_str(), nullptr);
    gst_object_ref_sink(element);
    GstBus* bus = gst_bus_new();
    gst_element_set_bus(element, bus);
    EXPECT_EQ(gst_element_set_state(element, GST_STATE_PAUSED), GST_STATE_CHANGE_FAILURE);
    const std::string text = test::messageOn(bus, GST_MESSAGE_ERROR);
    gst_element_set_state(element, GST_STATE_NULL);
    gst_element_set_bus(element, nullptr);
    gst_object_unref(bus);
    gst_object_unref(element);
    return text;
}

TEST(ElementCamera, WhatCannotBeReadDoesNotStart)
{
    const WrittenCamera camera;
    EXPECT_NE(errorAtStart("camera-file=/nowhere/hall.json").find("/nowhere/hall.json"),
              std::string::npos);
    EXPECT_EQ(errorAtStart(camera.property() + " preset=desk"),
              camera.path() + ": there is no preset 'desk'; choose one of door, round");
    EXPECT_NE(errorAtStart("camera-file=/nowhere/hall.json preset=door").find("/nowhere/hall.json"),
              std::string::npos);
    EXPECT_EQ(errorAtStart("preset=door"),
              "preset: 'door' is one of a camera's file; set camera-file, too");
    EXPECT_EQ(errorAtStart("camera-file=-"), "camera-file: - is no file; give its name");
}

TEST(ElementCamera, WhilePlayingItIsAWarning)
{
    const WrittenCamera camera;
    const Bytes input = frameBytes(kInputBytes);
    Pipeline pipeline(camera.property() + " preset=door");
    pipeline.input("NV12");
    const Bytes before = pipeline.dewarp(input);
    pipeline.set("preset", "desk");
    EXPECT_NE(pipeline.message(GST_MESSAGE_WARNING).find("there is no preset 'desk'"),
              std::string::npos);
    pipeline.set("camera-file", "/nowhere/hall.json");
    EXPECT_NE(pipeline.message(GST_MESSAGE_WARNING).find("/nowhere/hall.json"), std::string::npos);
    EXPECT_EQ(pipeline.dewarp(input), before);
}

TEST(ElementCamera, ItIsForInputsOfItsSize)
{
    const WrittenCamera camera({640, 480});
    Pipeline pipeline(camera.property());
    pipeline.input("NV12");
    EXPECT_NE(pipeline.push(frameBytes(kInputBytes)), GST_FLOW_OK);
    EXPECT_NE(pipeline.message(GST_MESSAGE_ERROR)
                  .find("is for an input of 640x480, but this one is 320x320"),
              std::string::npos);

    Pipeline running;
    running.input("NV12");
    const Bytes input = frameBytes(kInputBytes);
    running.dewarp(input);
    running.set("camera-file", camera.path().c_str());
    DewarperSetup setup = test::setupOf(View::quad, Mount::floor, PixelFormat::nv12);
    EXPECT_EQ(running.dewarp(input),
              test::dewarped(setup, test::usualAims(View::quad, Mount::floor), input))
        << "the circle before";
    EXPECT_NE(running.message(GST_MESSAGE_WARNING).find("640x480"), std::string::npos);
}

} // namespace
} // namespace lumofe
