#include "LumofeElement.h"

#include "GstTestSupport.h"

#include <atomic>
#include <gst/controller/controller.h>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace lumofe {
namespace {

using test::Bytes;
using test::dewarped;
using test::frameBytes;
using test::kInput;
using test::kInputBytes;
using test::kMounts;
using test::Pipeline;
using test::propertiesOf;
using test::setupOf;
using test::usual;
using test::usualAims;

constexpr View kViews[] = {View::single, View::quad, View::ptz360, View::half180};

TEST(LumofeElement, PicturesAreThoseOfTheLibrary)
{
    struct Format {
        const char* in;
        const char* out;
        PixelFormat fed;
    };
    for (const Format& format :
         {Format{"NV12", "NV12", PixelFormat::nv12}, Format{"I420", "I420", PixelFormat::yv12},
          Format{"YV12", "YV12", PixelFormat::yv12}, Format{"RGB", "BGR", PixelFormat::rgb},
          Format{"BGR", "RGB", PixelFormat::rgb}})
        for (View view : kViews)
            for (Mount mount : kMounts) {
                if (fedFormat(view, format.fed) != format.fed) continue;
                SCOPED_TRACE(propertiesOf(view, mount) + " " + format.in);
                Dewarper dewarper(setupOf(view, mount, format.fed));
                dewarper.aim(usualAims(view, mount));
                Pipeline pipeline(propertiesOf(view, mount));
                pipeline.input(format.in);
                for (int number : {0, 1}) {
                    const Bytes input = frameBytes(dewarper.inputBytes(), number);
                    EXPECT_EQ(pipeline.dewarp(input), dewarped(dewarper, input));
                }
                EXPECT_EQ(pipeline.outputFormat(), format.out);
                EXPECT_EQ(pipeline.outputSize(), dewarper.setup().output);
            }
}

TEST(LumofeElement, TakesNoFormatThatItsLayoutGarbles)
{
    for (const auto& [view, format] :
         {std::pair("360", "I420"), {"180", "YV12"}, {"quad", "RGB"}}) {
        Pipeline pipeline(std::string("layout=") + view);
        pipeline.acceptOutput("video/x-raw");
        GstCaps* caps = gst_caps_from_string(test::capsText(format, kInput).c_str());
        EXPECT_FALSE(gst_pad_peer_query_accept_caps(pipeline.harness()->srcpad, caps))
            << view << " " << format;
        gst_caps_unref(caps);
    }
}

TEST(LumofeElement, TheCapsBehindItSayHowLargeTheOutputIs)
{
    Pipeline pipeline("layout=quad");
    pipeline.acceptOutput("video/x-raw, width=240");
    pipeline.input("NV12");
    DewarperSetup setup = setupOf(View::quad, Mount::ceiling, PixelFormat::nv12);
    setup.output = {240, 184};
    const Bytes input = frameBytes(kInputBytes);
    const Bytes output = pipeline.dewarp(input);
    EXPECT_EQ(pipeline.outputSize(), setup.output);
    EXPECT_EQ(output, dewarped(setup, usualAims(View::quad, Mount::ceiling), input));
}

TEST(LumofeElement, ASizeThatDoesNotComposeIsAnError)
{
    for (const char* format : {"", ", format=BGRx"}) {
        Pipeline pipeline("layout=quad");
        pipeline.acceptOutput(std::string("video/x-raw, width=302, height=240") + format);
        pipeline.input("NV12");
        EXPECT_NE(pipeline.push(frameBytes(kInputBytes)), GST_FLOW_OK);
        EXPECT_NE(pipeline.message(GST_MESSAGE_ERROR).find("the nearest is 304x240"),
                  std::string::npos);
    }
}

TEST(LumofeElement, ViewsAreSteeredLive)
{
    for (View view : {View::single, View::quad, View::ptz360}) {
        SCOPED_TRACE(layoutRule(view).name);
        const Bytes input = frameBytes(kInputBytes);
        std::vector<Aim> aims = usualAims(view, Mount::ceiling);
        // With the same frame before: where a view leaves the input, it keeps what it showed.
        Dewarper dewarper(setupOf(view, Mount::ceiling, PixelFormat::nv12));
        dewarper.aim(aims);
        Pipeline pipeline(propertiesOf(view, Mount::ceiling));
        pipeline.input("NV12");
        const Bytes before = pipeline.dewarp(input);
        EXPECT_EQ(before, dewarped(dewarper, input));

        pipeline.set("pan1", 33.0);
        pipeline.set(view == View::single ? "tilt1" : "tilt2", 44.0);
        pipeline.set("zoom1", 55.0);
        aims[0].pan = 33;
        aims[view == View::single ? 0 : 1].tilt = 44;
        aims[0].zoom = 55;
        const Bytes after = pipeline.dewarp(input);
        EXPECT_NE(after, before);
        dewarper.aim(aims);
        EXPECT_EQ(after, dewarped(dewarper, input));
    }
}

TEST(LumofeElement, CircleAndPanoramaChangeLive)
{
    const Bytes input = frameBytes(kInputBytes);
    for (View view : kViews) {
        SCOPED_TRACE(layoutRule(view).name);
        Pipeline pipeline(propertiesOf(view, Mount::ceiling));
        pipeline.input("NV12");
        pipeline.dewarp(input);
        pipeline.set("circle-x", 150);
        pipeline.set("circle-y", 170);
        pipeline.set("circle-radius", 130);
        pipeline.set("panorama-offset", 50);
        DewarperSetup setup = setupOf(view, Mount::ceiling, PixelFormat::nv12);
        setup.circle = {150, 170, 130};
        setup.panoOffset = 50;
        EXPECT_EQ(pipeline.dewarp(input), dewarped(setup, usualAims(view, Mount::ceiling), input));
    }
}

TEST(LumofeElement, LayoutAndMountChangeLive)
{
    const Bytes input = frameBytes(kInputBytes);
    Pipeline pipeline;
    pipeline.input("NV12");
    pipeline.dewarp(input);
    for (View view : {View::quad, View::ptz360, View::half180, View::single})
        for (Mount mount : {Mount::wall, Mount::floor, Mount::ceiling}) {
            pipeline.set("layout", int(view));
            pipeline.set("mount", int(mount));
            EXPECT_EQ(pipeline.dewarp(input), usual(view, mount, input))
                << propertiesOf(view, mount);
            EXPECT_EQ(pipeline.outputSize(), defaultOutputSize(view, mount, kInput));
        }
}

TEST(LumofeElement, ALayoutThatNeedsAnotherFormatAsksForIt)
{
    const Bytes planar = frameBytes(kInputBytes), semiPlanar = frameBytes(kInputBytes, 1);
    Pipeline pipeline("layout=quad");
    pipeline.input("I420");
    pipeline.dewarp(planar);
    pipeline.set("layout", int(View::ptz360));
    // Frames on their way are still shown as before.
    EXPECT_EQ(pipeline.dewarp(planar),
              usual(View::quad, Mount::ceiling, planar, PixelFormat::yv12));
    EXPECT_TRUE(pipeline.sentUpstream(GST_EVENT_RECONFIGURE));
    pipeline.input("NV12");
    EXPECT_EQ(pipeline.dewarp(semiPlanar), usual(View::ptz360, Mount::ceiling, semiPlanar));
}

TEST(LumofeElement, TheInputsSizeChangesMidStream)
{
    constexpr Size kOther{400, 360};
    Pipeline pipeline("layout=quad");
    pipeline.input("NV12");
    pipeline.set("pan1", 25.0);
    pipeline.dewarp(frameBytes(kInputBytes));
    pipeline.input("NV12", kOther);
    DewarperSetup setup = setupOf(View::quad, Mount::ceiling, PixelFormat::nv12);
    setup.input = kOther;
    setup.output = defaultOutputSize(View::quad, Mount::ceiling, kOther);
    setup.circle = {200, 180, 180};
    std::vector<Aim> aims = usualAims(View::quad, Mount::ceiling);
    aims[0].pan = 25;
    const Bytes input = frameBytes(std::size_t(kOther.width * kOther.height) * 3 / 2);
    EXPECT_EQ(pipeline.dewarp(input), dewarped(setup, aims, input));
    EXPECT_EQ(pipeline.outputSize(), setup.output);
}

TEST(LumofeElement, PaddedInputGivesTheSamePicture)
{
    constexpr int kStride = 352;
    constexpr std::size_t kChroma = std::size_t(kStride) * 336; // behind more rows than are shown
    const Bytes input = frameBytes(kInputBytes);
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, kChroma + kStride * 160, nullptr);
    gst_buffer_memset(buffer, 0, 0xEE, gst_buffer_get_size(buffer));
    for (std::size_t row = 0; row < 480; ++row)
        gst_buffer_fill(buffer, row < 320 ? row * kStride : kChroma + (row - 320) * kStride,
                        input.data() + row * 320, 320);
    gsize offsets[GST_VIDEO_MAX_PLANES] = {0, kChroma};
    gint strides[GST_VIDEO_MAX_PLANES] = {kStride, kStride};
    gst_buffer_add_video_meta_full(buffer, GST_VIDEO_FRAME_FLAG_NONE, GST_VIDEO_FORMAT_NV12, 320,
                                   320, 2, offsets, strides);
    Pipeline pipeline("layout=quad");
    pipeline.input("NV12");
    ASSERT_EQ(pipeline.push(buffer), GST_FLOW_OK);
    EXPECT_EQ(pipeline.pull(), usual(View::quad, Mount::ceiling, input));
}

TEST(LumofeElement, ABadCircleIsAnErrorAtFirstAndLaterAWarning)
{
    Pipeline bad("circle-x=2000");
    bad.input("NV12");
    EXPECT_NE(bad.push(frameBytes(kInputBytes)), GST_FLOW_OK);
    EXPECT_NE(bad.message(GST_MESSAGE_ERROR).find("circle-x, circle-y: the centre 2000,160"),
              std::string::npos);

    Pipeline pipeline;
    const Bytes input = frameBytes(kInputBytes);
    pipeline.input("NV12");
    const Bytes before = pipeline.dewarp(input);
    pipeline.set("circle-x", 2000);
    EXPECT_EQ(pipeline.dewarp(input), before);
    EXPECT_NE(pipeline.message(GST_MESSAGE_WARNING).find("the centre 2000,160"), std::string::npos);
    pipeline.dewarp(input);
    EXPECT_EQ(pipeline.message(GST_MESSAGE_WARNING), "") << "told again";
}

TEST(LumofeElement, TheSeventeenthFindsNoSlotUntilOneStops)
{
    const Bytes input = frameBytes(kInputBytes);
    const Bytes expected = usual(View::single, Mount::ceiling, input);
    std::vector<std::unique_ptr<Pipeline>> pipelines;
    for (int i = 0; i < FE_MAX_CAMERAS; ++i) {
        pipelines.push_back(std::make_unique<Pipeline>());
        pipelines.back()->input("NV12");
        EXPECT_FALSE(pipelines.back()->dewarp(input).empty());
    }
    Pipeline late;
    late.input("NV12");
    EXPECT_NE(late.push(input), GST_FLOW_OK);
    EXPECT_NE(late.message(GST_MESSAGE_ERROR).find("all 16 camera slots"), std::string::npos);

    pipelines[4]->stop();
    Pipeline next;
    next.input("NV12");
    EXPECT_EQ(next.dewarp(input), expected);

    next.stop();
    pipelines[4]->restart();
    pipelines[4]->input("NV12");
    EXPECT_EQ(pipelines[4]->dewarp(input), expected) << "started again";
}

TEST(LumofeElement, ControllersSteerByTheFramesTime)
{
    Pipeline pipeline;
    pipeline.input("NV12");
    GstControlSource* source = gst_interpolation_control_source_new();
    g_object_set(source, "mode", GST_INTERPOLATION_MODE_LINEAR, nullptr);
    auto* values = reinterpret_cast<GstTimedValueControlSource*>(source);
    gst_timed_value_control_source_set(values, 0, 10);
    gst_timed_value_control_source_set(values, GST_SECOND, 50);
    gst_object_add_control_binding(
        GST_OBJECT(pipeline.element()),
        gst_direct_control_binding_new_absolute(GST_OBJECT(pipeline.element()), "pan1", source));
    gst_object_unref(source);

    const Bytes input = frameBytes(kInputBytes);
    std::vector<Aim> aims = usualAims(View::single, Mount::ceiling);
    for (int half : {0, 1, 2}) {
        GstBuffer* buffer = gst_buffer_new_memdup(input.data(), input.size());
        GST_BUFFER_PTS(buffer) = GST_SECOND / 2 * guint64(half);
        ASSERT_EQ(pipeline.push(buffer), GST_FLOW_OK);
        aims[0].pan = 10 + 20 * half;
        EXPECT_EQ(pipeline.pull(),
                  dewarped(setupOf(View::single, Mount::ceiling, PixelFormat::nv12), aims, input));
    }
}

TEST(LumofeElement, PropertiesMayBeSetByAnotherThread)
{
    const Bytes input = frameBytes(kInputBytes);
    Pipeline pipeline;
    pipeline.input("NV12");
    std::atomic<bool> done = false;
    std::thread operatorThread([&] {
        for (int i = 0; !done; ++i) {
            pipeline.set("layout", int(kViews[i % 4]));
            pipeline.set("pan1", double(i % 360));
            pipeline.set("circle-x", 140 + i % 40);
            pipeline.scroll(100, 100, i % 3 - 1);
            pipeline.number("zoom1");
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    for (int i = 0; i < 50; ++i)
        EXPECT_FALSE(pipeline.dewarp(input).empty());
    done = true;
    operatorThread.join();
    pipeline.set("layout", int(View::single));
    pipeline.dewarp(input);
    pipeline.set("layout", int(View::quad));
    pipeline.set("pan1", 5.0);
    pipeline.set("zoom1", 6.0);
    pipeline.set("circle-x", -1);
    std::vector<Aim> aims = usualAims(View::quad, Mount::ceiling);
    aims[0] = {5, aims[0].tilt, 6};
    for (int number : {2, 3, 4})
        pipeline.set(("zoom" + std::to_string(number)).c_str(), 0.0);
    pipeline.set("tilt1", aims[0].tilt);
    EXPECT_EQ(pipeline.dewarp(input),
              dewarped(setupOf(View::quad, Mount::ceiling, PixelFormat::nv12), aims, input));
}

TEST(LumofeElement, NothingIsPrinted)
{
    testing::internal::CaptureStdout();
    {
        Pipeline pipeline("layout=quad");
        pipeline.input("NV12");
        pipeline.dewarp(frameBytes(kInputBytes));
    }
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

} // namespace
} // namespace lumofe
