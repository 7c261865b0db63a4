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

// Formats of each structure in their order, as in "NV12 I420 | BGRx".
std::string formatsIn(const GstCaps* caps)
{
    std::string found;
    const auto add = [&](const GValue* format) {
        found += (found.empty() || found.ends_with(' ') ? "" : " ");
        found += g_value_get_string(format);
    };
    for (guint i = 0; i < gst_caps_get_size(caps); ++i) {
        const GValue* formats = gst_structure_get_value(gst_caps_get_structure(caps, i), "format");
        if (i > 0) found += " | ";
        if (G_VALUE_HOLDS_STRING(formats)) add(formats);
        for (guint k = 0; GST_VALUE_HOLDS_LIST(formats) && k < gst_value_list_get_size(formats);
             ++k)
            add(gst_value_list_get_value(formats, k));
    }
    return found;
}

std::string formatsBehind(View view, GstPadDirection direction, const char* text,
                          const char* filterText = nullptr)
{
    GstCaps* caps = capsOf(text);
    GstCaps* filter = filterText ? capsOf(filterText) : nullptr;
    GstCaps* other = capsOfOtherPad(view, direction, caps, filter);
    const std::string formats = formatsIn(other);
    gst_caps_unref(caps);
    gst_clear_caps(&filter);
    gst_caps_unref(other);
    return formats;
}

TEST(Caps, LayoutsTakeTheFormatsThatTheyDoNotGarble)
{
    for (const char* output : {"video/x-raw", "video/x-raw, format=BGRx"}) {
        const bool any = !std::string(output).ends_with("BGRx");
        EXPECT_EQ(formatsBehind(View::single, GST_PAD_SRC, output).substr(0, 22),
                  any ? "NV12 I420 YV12 BGR RGB" : "NV12 I420 YV12 RGB BGR");
        EXPECT_EQ(formatsBehind(View::quad, GST_PAD_SRC, output).substr(0, 14), "NV12 I420 YV12");
        EXPECT_EQ(formatsBehind(View::quad, GST_PAD_SRC, output).find("RGB"), std::string::npos);
        for (View view : {View::ptz360, View::half180})
            EXPECT_EQ(formatsBehind(view, GST_PAD_SRC, output), "NV12");
    }
    EXPECT_EQ(formatsBehind(View::quad, GST_PAD_SINK, "video/x-raw, format=RGB"), "");
    EXPECT_EQ(formatsBehind(View::ptz360, GST_PAD_SINK, "video/x-raw, format=I420"), "");
    EXPECT_EQ(formatsBehind(View::single, GST_PAD_SINK, "video/x-raw, format=YUY2"), "");
}

TEST(Caps, WhatTheLibraryWritesComesFirstAndConversionsOfItFollow)
{
    const std::string yuv = " NV21 YUY2 UYVY Y42B Y444", rgb = " BGRx RGBx xRGB xBGR ",
                      alpha = " BGRA RGBA ARGB ABGR RGB16 RGB15";
    const auto behind = [](const std::string& format, View view = View::single) {
        return formatsBehind(view, GST_PAD_SINK, ("video/x-raw, format=" + format).c_str());
    };
    EXPECT_EQ(behind("NV12"), "NV12 | I420 YV12" + yuv + rgb + "RGB BGR" + alpha);
    EXPECT_EQ(behind("I420"), "I420 | NV12 YV12" + yuv + rgb + "RGB BGR" + alpha);
    EXPECT_EQ(behind("YV12"), "YV12 | NV12 I420" + yuv + rgb + "RGB BGR" + alpha);
    // The library exchanges red and blue.
    EXPECT_EQ(behind("RGB"), "BGR | NV12 I420 YV12" + yuv + rgb + "RGB" + alpha);
    EXPECT_EQ(behind("BGR"), "RGB | NV12 I420 YV12" + yuv + rgb + "BGR" + alpha);
    for (View view : {View::quad, View::ptz360, View::half180})
        EXPECT_EQ(behind("NV12", view), behind("NV12"));
}

TEST(Caps, InputsThatNeedNoConversionAreOfferedAloneToWhoCanGiveThem)
{
    const auto inputs = [](const char* output, const char* filter) {
        return formatsBehind(View::single, GST_PAD_SRC, output, filter);
    };
    constexpr const char* kNv12 = "video/x-raw, format=NV12";
    EXPECT_EQ(inputs(kNv12, nullptr), "NV12 | I420 YV12 RGB BGR");
    EXPECT_EQ(inputs(kNv12, "video/x-raw, format={ I420, YUY2, NV12 }"), "NV12");
    EXPECT_EQ(inputs(kNv12, "video/x-raw, format={ I420, YUY2 }"), "I420");
    EXPECT_EQ(inputs(kNv12, "video/x-raw, format=YUY2"), "");
    EXPECT_EQ(inputs("video/x-raw, format={ BGRx, RGB }", "video/x-raw, format={ RGB, BGR }"),
              "BGR");
    EXPECT_EQ(inputs("video/x-raw, format=BGRx", "video/x-raw, format={ RGB, I420 }"), "RGB I420");
    // Behind the element the choice is made by orderFormats().
    EXPECT_EQ(formatsBehind(View::single, GST_PAD_SINK, kNv12, "video/x-raw, format={BGRx, NV12}"),
              "NV12 | BGRx");
}

TEST(Caps, TemplatesHoldTheFormatsThatCanBeHad)
{
    test::useGStreamer();
    for (GstPadDirection direction : {GST_PAD_SINK, GST_PAD_SRC}) {
        GstCaps* caps = templateCaps(direction);
        const std::string formats = formatsIn(caps);
        EXPECT_EQ(formats, direction == GST_PAD_SINK
                               ? "NV12 I420 YV12 RGB BGR"
                               : "NV12 I420 YV12 NV21 YUY2 UYVY Y42B Y444 BGRx RGBx xRGB xBGR RGB "
                                 "BGR BGRA RGBA ARGB ABGR RGB16 RGB15");
        gst_caps_unref(caps);
    }
}

template <class Describe>
std::string ordered(const char* text, const GstVideoInfo& input, Describe describe)
{
    GstCaps* caps = orderFormats(capsOf(text), input);
    const std::string order = describe(caps);
    gst_caps_unref(caps);
    return order;
}

std::string colorimetryIn(const GstCaps* caps)
{
    const char* text = gst_structure_get_string(gst_caps_get_structure(caps, 0), "colorimetry");
    return text ? text : "";
}

TEST(Caps, OutputsWithoutAConversionArePreferredThenThoseOfTheSameColourSpace)
{
    const GstVideoInfo nv12 = test::infoOf(GST_VIDEO_FORMAT_NV12, test::kInput, "bt709");
    const GstVideoInfo rgb = test::infoOf(GST_VIDEO_FORMAT_RGB, test::kInput);
    const auto formats = [](const char* text, const GstVideoInfo& input) {
        return ordered(text, input, formatsIn);
    };
    constexpr const char* kSink =
        "video/x-raw, format={ RGB16, BGRx, YUY2, I420 }; video/x-raw, format={ BGR, RGB, NV12 }";
    EXPECT_EQ(formats(kSink, nv12), "NV12 | I420 | YUY2 | BGRx | RGB | BGR | RGB16");
    EXPECT_EQ(formats(kSink, rgb), "BGR | BGRx | RGB | RGB16 | NV12 | I420 | YUY2");
    EXPECT_EQ(formats("video/x-raw", nv12).substr(0, 11), "NV12 | I420");
    EXPECT_EQ(formats("video/x-raw, width=1, format=NV12; video/x-raw, width=2, format=NV12", nv12),
              "NV12 | NV12");
}

TEST(Caps, ConvertedFormatsOfTheSameColourSpaceKeepTheColorimetry)
{
    const GstVideoInfo nv12 = test::infoOf(GST_VIDEO_FORMAT_NV12, test::kInput, "bt709");
    const auto colorimetry = [&](const char* text) { return ordered(text, nv12, colorimetryIn); };
    EXPECT_EQ(colorimetry("video/x-raw, format=I420"), "bt709");
    EXPECT_EQ(colorimetry("video/x-raw, format=I420, colorimetry={ bt601, bt709 }"), "bt709");
    EXPECT_EQ(colorimetry("video/x-raw, format=I420, colorimetry=bt601"), "bt601");
    EXPECT_EQ(colorimetry("video/x-raw, format=NV12"), "") << "it needs no conversion";
    EXPECT_EQ(colorimetry("video/x-raw, format=BGRx"), "");
}

TEST(Caps, OtherFieldsPassAndPixelsAreSquare)
{
    GstCaps* caps =
        capsOf("video/x-raw(memory:Some), format=NV12, width=640, height=480, framerate=25/2, "
               "colorimetry=bt709, pixel-aspect-ratio=4/3");
    GstCaps* filter = capsOf("video/x-raw(memory:Some), format={ NV12, BGRx }");
    GstCaps* other = capsOfOtherPad(View::single, GST_PAD_SINK, caps, filter);
    // The colorimetry of YUV is none of RGB.
    GstCaps* expected =
        capsOf("video/x-raw(memory:Some), format=NV12, width=[16,4096], height=[16,4096], "
               "framerate=25/2, colorimetry=bt709, pixel-aspect-ratio=1/1;"
               "video/x-raw(memory:Some), format=BGRx, width=[16,4096], height=[16,4096], "
               "framerate=25/2, pixel-aspect-ratio=1/1");
    EXPECT_TRUE(gst_caps_is_equal(other, expected));
    for (GstCaps* c : {caps, filter, other, expected})
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
