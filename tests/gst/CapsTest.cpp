#include "Caps.h"

#include "GstTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

constexpr View kViews[] = {View::single, View::quad, View::ptz360, View::half180};
constexpr Mount kMounts[] = {Mount::ceiling, Mount::wall, Mount::floor};

GstCaps* capsOf(const char* text)
{
    test::useGStreamer();
    return gst_caps_from_string(text);
}

// Formats that the caps hold, in alphabetical order.
std::string formatsIn(GstCaps* caps)
{
    std::string found;
    for (const char* format : {"BGR", "I420", "NV12", "RGB", "YUY2", "YV12"}) {
        GstCaps* one = gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, format, nullptr);
        if (gst_caps_can_intersect(caps, one))
            found += std::string(found.empty() ? "" : " ") + format;
        gst_caps_unref(one);
    }
    return found;
}

std::string formatsBehind(View view, GstPadDirection direction, const char* text)
{
    GstCaps* caps = capsOf(text);
    GstCaps* other = capsOfOtherPad(view, direction, caps);
    const std::string formats = formatsIn(other);
    gst_caps_unref(caps);
    gst_caps_unref(other);
    return formats;
}

TEST(Caps, LayoutsOfferTheFormatsThatTheyTakeOnly)
{
    for (GstPadDirection direction : {GST_PAD_SINK, GST_PAD_SRC}) {
        EXPECT_EQ(formatsBehind(View::single, direction, kInputCaps), "BGR I420 NV12 RGB YV12");
        EXPECT_EQ(formatsBehind(View::quad, direction, kInputCaps), "I420 NV12 YV12");
        EXPECT_EQ(formatsBehind(View::ptz360, direction, kInputCaps), "NV12");
        EXPECT_EQ(formatsBehind(View::half180, direction, kInputCaps), "NV12");
        EXPECT_EQ(formatsBehind(View::quad, direction, "video/x-raw"), "I420 NV12 YV12");
    }
}

TEST(Caps, RedAndBlueAreExchanged)
{
    for (GstPadDirection direction : {GST_PAD_SINK, GST_PAD_SRC}) {
        EXPECT_EQ(formatsBehind(View::single, direction, "video/x-raw, format=RGB"), "BGR");
        EXPECT_EQ(formatsBehind(View::single, direction, "video/x-raw, format=BGR"), "RGB");
        for (const char* format : {"I420", "NV12", "YV12"})
            EXPECT_EQ(formatsBehind(View::single, direction,
                                    (std::string("video/x-raw, format=") + format).c_str()),
                      format);
    }
    EXPECT_EQ(formatsBehind(View::quad, GST_PAD_SINK, "video/x-raw, format=RGB"), "");
    EXPECT_EQ(formatsBehind(View::single, GST_PAD_SINK, "video/x-raw, format=YUY2"), "");
}

TEST(Caps, OtherFieldsPassAndPixelsAreSquare)
{
    GstCaps* caps = capsOf("video/x-raw, format=NV12, width=640, height=480, framerate=25/2, "
                           "colorimetry=bt709, pixel-aspect-ratio=4/3");
    GstCaps* other = capsOfOtherPad(View::single, GST_PAD_SINK, caps);
    GstCaps* expected = capsOf("video/x-raw, format=NV12, width=[16,4096], height=[16,4096], "
                               "framerate=25/2, colorimetry=bt709, pixel-aspect-ratio=1/1");
    EXPECT_TRUE(gst_caps_is_equal(other, expected));
    for (GstCaps* c : {caps, other, expected})
        gst_caps_unref(c);
}

Size fixated(const char* size, View view, Mount mount, Size input)
{
    GstCaps* caps =
        fixateOutput(capsOf((std::string("video/x-raw, ") + size).c_str()), view, mount, input);
    Size fixed;
    gst_structure_get_int(gst_caps_get_structure(caps, 0), "width", &fixed.width);
    gst_structure_get_int(gst_caps_get_structure(caps, 0), "height", &fixed.height);
    EXPECT_TRUE(gst_caps_is_fixed(caps));
    gst_caps_unref(caps);
    return fixed;
}

Size fixated(const char* size, View view)
{
    return fixated(size, view, Mount::ceiling, {1280, 1280});
}

constexpr const char* kAnySize = "width=[16,4096,2], height=[16,4096,2]";

TEST(Caps, WithoutAWishTheSizeIsTheLayoutsDefault)
{
    for (View view : kViews)
        for (Mount mount : kMounts)
            for (Size input :
                 {Size{320, 240}, Size{1280, 1280}, Size{4096, 4096}, Size{1922, 1082}})
                EXPECT_EQ(fixated(kAnySize, view, mount, input),
                          defaultOutputSize(view, mount, input))
                    << layoutRule(view).name << " " << input.width;
}

TEST(Caps, OneSideFollowsTheOther)
{
    EXPECT_EQ(fixated("width=640, height=[16,4096,2]", View::quad), (Size{640, 480}));
    EXPECT_EQ(fixated("width=[16,4096,2], height=480", View::quad), (Size{640, 480}));
    EXPECT_EQ(fixated("width=640, height=[16,4096,2]", View::half180), (Size{640, 360}));
    EXPECT_EQ(fixated("width=602, height=[16,4096,2]", View::single), (Size{602, 452}));
}

TEST(Caps, OfARangeTheSizeThatComposesIsTaken)
{
    EXPECT_EQ(fixated("width=[600,702,2], height=[16,4096,2]", View::quad), (Size{696, 520}));
    EXPECT_EQ(fixated("width=[16,4096,2], height=[16,478,2]", View::quad), (Size{632, 472}));
    for (View view : kViews)
        for (Mount mount : kMounts)
            for (int most = 300; most < 340; most += 2) {
                const std::string range = "[16," + std::to_string(most) + ",2]";
                const Size size = fixated(("width=" + range + ", height=" + range).c_str(), view,
                                          mount, {640, 640});
                EXPECT_TRUE(composes(view, mount, size, {640, 640}))
                    << layoutRule(view).name << " " << size.width << "x" << size.height;
                EXPECT_LE(size.width, most);
            }
}

TEST(Caps, TheFirstStructureWithASizeThatComposesIsTaken)
{
    GstCaps* caps = capsOf("video/x-raw, width=802, height=600; video/x-raw, width=400, height=304;"
                           "video/x-raw, width=800, height=600");
    caps = fixateOutput(caps, View::quad, Mount::ceiling, {1280, 1280});
    GstCaps* expected = capsOf("video/x-raw, width=400, height=304");
    EXPECT_TRUE(gst_caps_is_equal(caps, expected));
    gst_caps_unref(caps);
    gst_caps_unref(expected);
}

TEST(Caps, ASizeThatCannotBeIsLeftAsItIs)
{
    EXPECT_EQ(fixated("width=802, height=600", View::quad), (Size{802, 600}));
    EXPECT_EQ(fixated("width=1600, height=1200", View::quad), (Size{1600, 1200}));
    EXPECT_EQ(fixated("width=802, height=600", View::single), (Size{802, 600}));
}

} // namespace
} // namespace lumofe
