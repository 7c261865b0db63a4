#include "LiveCamera.h"

#include "ErrorOf.h"
#include "FrameMemory.h"
#include "GstTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::kInput;

// A mapped buffer of GStreamer's own layout.
class Mapped {
public:
    Mapped(GstVideoFormat format, Size size, const test::Bytes& content = {})
    {
        test::useGStreamer();
        GstVideoInfo info;
        gst_video_info_set_format(&info, format, guint(size.width), guint(size.height));
        buffer_ = gst_buffer_new_allocate(nullptr, info.size, nullptr);
        gst_video_frame_map(&frame, &info, buffer_, GST_MAP_READWRITE);
        if (!content.empty()) unpackFrame(content.data(), frame);
    }
    ~Mapped()
    {
        gst_video_frame_unmap(&frame);
        gst_buffer_unref(buffer_);
    }
    Mapped(const Mapped&) = delete;
    Mapped& operator=(const Mapped&) = delete;

    test::Bytes content(std::size_t bytes) const
    {
        test::Bytes content(bytes);
        packFrame(frame, content.data());
        return content;
    }

    GstVideoFrame frame;

private:
    GstBuffer* buffer_;
};

Settings settingsOf(View view, Mount mount = Mount::ceiling)
{
    Settings settings;
    settings.view = view;
    settings.mount = mount;
    return settings;
}

// The next frame of the camera.
test::Bytes shown(LiveCamera& camera, const test::Bytes& content, Size output)
{
    const Mapped in(GST_VIDEO_FORMAT_NV12, kInput, content);
    Mapped out(GST_VIDEO_FORMAT_NV12, output);
    camera.dewarp(in.frame, out.frame);
    return out.content(std::size_t(output.width * output.height) * 3 / 2);
}

TEST(LiveCamera, FramesThatAreNotTightGiveTheSamePicture)
{
    constexpr Size kOdd{322, 246}, kOutput{326, 242};
    for (GstVideoFormat format :
         {GST_VIDEO_FORMAT_NV12, GST_VIDEO_FORMAT_I420, GST_VIDEO_FORMAT_RGB}) {
        const PixelFormat fed = format == GST_VIDEO_FORMAT_NV12   ? PixelFormat::nv12
                                : format == GST_VIDEO_FORMAT_I420 ? PixelFormat::yv12
                                                                  : PixelFormat::rgb;
        const Settings settings = settingsOf(View::single);
        DewarperSetup setup = test::setupOf(View::single, Mount::ceiling, fed);
        setup.input = kOdd;
        setup.output = kOutput;
        setup.circle = settings.circle(kOdd);
        Dewarper dewarper(setup);
        dewarper.aim(settings.aims());
        const test::Bytes content = test::frameBytes(dewarper.inputBytes());
        test::Bytes expected(dewarper.outputBytes());
        dewarper.dewarp(content.data(), expected.data());

        LiveCamera camera;
        camera.open(settings, kOdd, kOutput, fed);
        const Mapped in(format, kOdd, content);
        Mapped out(format, kOutput);
        ASSERT_FALSE(isTight(in.frame));
        ASSERT_FALSE(isTight(out.frame));
        camera.dewarp(in.frame, out.frame);
        EXPECT_EQ(out.content(expected.size()), expected) << gst_video_format_to_string(format);
    }
}

TEST(LiveCamera, ALayoutThatTheSizeDoesNotSuitWaits)
{
    constexpr Size kOutput{318, 238}; // composes in the single view only
    const test::Bytes content = test::frameBytes(std::size_t(kInput.width * kInput.height) * 3 / 2);
    LiveCamera camera;
    camera.open(settingsOf(View::single), kInput, kOutput, PixelFormat::nv12);
    const test::Bytes before = shown(camera, content, kOutput);
    for (View view : {View::quad, View::ptz360, View::half180}) {
        camera.follow(settingsOf(view));
        EXPECT_EQ(shown(camera, content, kOutput), before) << layoutRule(view).name;
    }
    // The mounting suits it.
    camera.follow(settingsOf(View::single, Mount::floor));
    EXPECT_NE(shown(camera, content, kOutput), before);
}

TEST(LiveCamera, ALayoutThatTheFormatDoesNotSuitWaits)
{
    LiveCamera camera;
    const Size output = defaultOutputSize(View::quad, Mount::ceiling, kInput);
    camera.open(settingsOf(View::single), kInput, output, PixelFormat::rgb);
    EXPECT_NO_THROW(camera.follow(settingsOf(View::quad)));
    Mapped in(GST_VIDEO_FORMAT_RGB, kInput), out(GST_VIDEO_FORMAT_RGB, output);
    EXPECT_NO_THROW(camera.dewarp(in.frame, out.frame));
}

TEST(LiveCamera, ABadCircleIsToldOnceAndTheRestTakenUp)
{
    const Size output = defaultOutputSize(View::single, Mount::ceiling, kInput);
    const test::Bytes content = test::frameBytes(std::size_t(kInput.width * kInput.height) * 3 / 2);
    Settings settings = settingsOf(View::single);
    settings.now.views[0].pan = 50;
    LiveCamera there, camera;
    there.open(settings, kInput, output, PixelFormat::nv12);
    camera.open(settingsOf(View::single), kInput, output, PixelFormat::nv12);
    shown(camera, content, output);
    settings.circleX = kInput.width;
    EXPECT_EQ(test::errorOf([&] { camera.follow(settings); }),
              "circle-x, circle-y: the centre 320,160 is outside of the 320x320 input; give it in "
              "input pixels, or -1 for the middle");
    EXPECT_EQ(test::errorOf([&] { camera.follow(settings); }), "");
    EXPECT_EQ(shown(camera, content, output), shown(there, content, output));
}

TEST(LiveCamera, TheWallTellsHowFarItsViewsPanned)
{
    const test::Bytes input = test::frameBytes(test::kInputBytes);
    const Size output = defaultOutputSize(View::quad, Mount::wall, kInput);
    Settings settings = settingsOf(View::quad, Mount::wall);
    for (ViewDirection& view : settings.now.views)
        view.pan = 0;
    LiveCamera camera;
    camera.open(settings, kInput, output, PixelFormat::nv12);
    shown(camera, input, output);
    EXPECT_EQ(camera.panReach(), kUnlimitedReach);

    settings.now.views[1].pan = -90;
    camera.follow(settings);
    const test::Bytes far = shown(camera, input, output);
    const double reach = camera.panReach()[1];
    EXPECT_LT(reach, 90);
    EXPECT_EQ(camera.panReach(), (PanReach{360, reach, 360, 360}));
    shown(camera, input, output);
    EXPECT_EQ(camera.panReach()[1], reach) << "a frame later";
    settings.now.views[1].pan = -reach;
    camera.follow(settings);
    EXPECT_EQ(shown(camera, input, output), far);

    settings.mount = Mount::ceiling;
    camera.follow(settings);
    shown(camera, input, output);
    EXPECT_EQ(camera.panReach(), kUnlimitedReach);
}

TEST(LiveCamera, WhatCannotBeOpenedIsNot)
{
    LiveCamera camera;
    const auto error = [&](const Settings& settings, Size output) {
        return test::errorOf([&] { camera.open(settings, kInput, output, PixelFormat::nv12); });
    };
    EXPECT_EQ(
        error(settingsOf(View::quad), {302, 240}),
        "layout=quad leaves gaps at 302x240 from an input of 320x320; ask for another size in "
        "the caps behind the element, the nearest is 304x240");
    Settings settings;
    settings.circleY = 4000;
    EXPECT_NE(error(settings, {320, 240}).find("the centre 160,4000"), std::string::npos);
    EXPECT_FALSE(camera.isOpen());
}

} // namespace
} // namespace lumofe
