// Outputs that the library does not write itself.
#include "Caps.h"
#include "GstTestSupport.h"
#include "LumofeElement.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::Bytes;
using test::capsText;
using test::converted;
using test::frameBytes;
using test::infoOf;
using test::kInput;
using test::kInputBytes;
using test::Pipeline;
using test::usual;

constexpr const char* kBgrx = "video/x-raw, format=BGRx";

struct Direct {
    const char* in;
    const char* out;
    PixelFormat fed;
};
constexpr Direct kDirect[] = {{"NV12", "NV12", PixelFormat::nv12},
                              {"I420", "I420", PixelFormat::yv12},
                              {"YV12", "YV12", PixelFormat::yv12},
                              {"RGB", "BGR", PixelFormat::rgb},
                              {"BGR", "RGB", PixelFormat::rgb}};

Bytes inputFrame(PixelFormat fed, int number = 0)
{
    return frameBytes(fed == PixelFormat::rgb ? kInputBytes * 2 : kInputBytes, number);
}

// The library's picture of the first frame, as GStreamer converts it. Without a colorimetry it is
// the usual one, which is the same for kInput and what comes of it.
Bytes expected(View view, const char* in, const Bytes& frame, const GstVideoInfo& output,
               const char* colorimetry = "")
{
    const GstVideoFormat format = gst_video_format_from_string(in);
    const Size size = defaultOutputSize(view, Mount::ceiling, kInput);
    return converted(usual(view, Mount::ceiling, frame, fedAs(format)),
                     infoOf(writtenFormat(format), size, colorimetry), output);
}

TEST(ElementOutput, WhatNeedsNoConversionIsTakenWhateverElseTheSinkTakes)
{
    for (const Direct& direct : kDirect) {
        SCOPED_TRACE(direct.in);
        const Bytes input = inputFrame(direct.fed);
        for (const char* others : {"BGRx, %, RGB16", "BGRx, NV12, I420, YV12, RGB, BGR", "%"}) {
            std::string formats = others;
            if (const auto place = formats.find('%'); place != std::string::npos)
                formats.replace(place, 1, direct.out);
            Pipeline pipeline;
            pipeline.acceptOutput("video/x-raw, format={ " + formats + " }");
            pipeline.input(direct.in);
            EXPECT_EQ(pipeline.dewarp(input),
                      usual(View::single, Mount::ceiling, input, direct.fed));
            EXPECT_EQ(pipeline.outputFormat(), direct.out) << formats;
        }
        Pipeline pipeline;
        pipeline.acceptOutput(std::string("video/x-raw, format=BGRx; video/x-raw, format=") +
                              direct.out);
        pipeline.input(direct.in);
        pipeline.dewarp(input);
        EXPECT_EQ(pipeline.outputFormat(), direct.out);
    }
}

// A sink that takes both, and does not care in which order it is asked.
gboolean answerBgrxFirst(GstPad* pad, GstObject* parent, GstQuery* query)
{
    if (GST_QUERY_TYPE(query) != GST_QUERY_CAPS) return gst_pad_query_default(pad, parent, query);
    GstCaps* caps = gst_caps_from_string("video/x-raw, format=BGRx; video/x-raw, format=NV12");
    gst_query_set_caps_result(query, caps);
    gst_caps_unref(caps);
    return true;
}

TEST(ElementOutput, SinksThatPreferAnotherFormatGetWhatNeedsNoConversion)
{
    const Bytes input = frameBytes(kInputBytes);
    Pipeline pipeline;
    gst_pad_set_query_function(pipeline.harness()->sinkpad, answerBgrxFirst);
    pipeline.input("NV12");
    EXPECT_EQ(pipeline.dewarp(input), usual(View::single, Mount::ceiling, input));
    EXPECT_EQ(pipeline.outputFormat(), "NV12");
}

TEST(ElementOutput, SinksOfEveryFormatGetTheLibrarysPictureConverted)
{
    GstCaps* caps = templateCaps(GST_PAD_SRC);
    const GValue* formats = gst_structure_get_value(gst_caps_get_structure(caps, 0), "format");
    for (guint i = 0; i < gst_value_list_get_size(formats); ++i)
        for (const Direct& direct : kDirect) {
            const std::string format = g_value_get_string(gst_value_list_get_value(formats, i));
            if (format == direct.out) continue;
            SCOPED_TRACE(direct.in + (" to " + format));
            const Bytes input = inputFrame(direct.fed);
            Pipeline pipeline;
            pipeline.acceptOutput("video/x-raw, format=" + format);
            pipeline.input(direct.in);
            const Bytes output = pipeline.dewarp(input);
            ASSERT_EQ(pipeline.outputFormat(), format);
            EXPECT_EQ(pipeline.outputSize(),
                      defaultOutputSize(View::single, Mount::ceiling, kInput));
            EXPECT_EQ(output, expected(View::single, direct.in, input, pipeline.outputInfo()));
        }
    gst_caps_unref(caps);
}

// Part of the pixels that are within `tolerance` of red.
double partOfRed(const Bytes& bgrx, int tolerance)
{
    std::size_t red = 0;
    for (std::size_t i = 0; i < bgrx.size(); i += 4)
        red += bgrx[i] <= tolerance && bgrx[i + 1] <= tolerance && bgrx[i + 2] >= 255 - tolerance;
    return double(red) / (double(bgrx.size()) / 4);
}

// Bytes that fill a plane again and again, so many of them for four pixels.
struct Plane {
    std::size_t size;
    Bytes bytes;
};

Bytes frameOf(const std::vector<Plane>& planes, Size size)
{
    Bytes frame;
    for (const Plane& plane : planes)
        for (std::size_t i = 0; i < std::size_t(size.width * size.height) / 4 * plane.size; ++i)
            frame.push_back(plane.bytes[i % plane.bytes.size()]);
    return frame;
}

TEST(ElementOutput, RedStaysRed)
{
    constexpr Size kLarge{640, 640}; // bt709 unless caps say something else; its output is bt601
    const std::vector<Plane> sd = {{4, {81}}, {2, {90, 240}}}, hd = {{4, {63}}, {2, {102, 240}}};
    struct Red {
        const char* format;
        Size size;
        const char* colorimetry;
        std::vector<Plane> planes;
    };
    for (const Red& red :
         {Red{"NV12", kInput, "", sd}, Red{"NV12", kInput, ", colorimetry=bt709", hd},
          Red{"NV12", kLarge, "", hd}, Red{"NV12", kLarge, ", colorimetry=bt601", sd},
          Red{"I420", kLarge, "", {{4, {63}}, {1, {102}}, {1, {240}}}},
          Red{"YV12", kLarge, "", {{4, {63}}, {1, {240}}, {1, {102}}}},
          Red{"RGB", kInput, "", {{12, {255, 0, 0}}}},
          Red{"BGR", kInput, "", {{12, {0, 0, 255}}}}}) {
        SCOPED_TRACE(std::string(red.format) + std::to_string(red.size.height) + red.colorimetry);
        Pipeline pipeline;
        pipeline.acceptOutput(kBgrx);
        pipeline.inputCaps(capsText(red.format, red.size) + red.colorimetry);
        EXPECT_GT(partOfRed(pipeline.dewarp(frameOf(red.planes, red.size)), 2), 0.9);
        EXPECT_EQ(pipeline.outputFormat(), "BGRx");
    }
}

TEST(ElementOutput, YuvOfAnotherLayoutKeepsTheColorimetry)
{
    Pipeline pipeline;
    pipeline.acceptOutput("video/x-raw, format=I420");
    pipeline.inputCaps(capsText("NV12", kInput) + ", colorimetry=bt709");
    const Bytes input = frameBytes(kInputBytes);
    const Bytes output = pipeline.dewarp(input);
    const GstVideoInfo info = pipeline.outputInfo();
    EXPECT_TRUE(gst_video_colorimetry_matches(&info.colorimetry, "bt709"));
    EXPECT_EQ(output, expected(View::single, "NV12", input, info, "bt709"));
}

// Whether the element takes such an input.
bool takes(Pipeline& pipeline, const char* format)
{
    GstCaps* caps = gst_caps_from_string(capsText(format, kInput).c_str());
    const bool taken = gst_pad_peer_query_accept_caps(pipeline.harness()->srcpad, caps);
    gst_caps_unref(caps);
    return taken;
}

TEST(ElementOutput, EveryInputOfTheLayoutIsTakenForASinkOfRgb)
{
    for (const auto& [layout, formats] : {std::pair("single", "NV12 I420 YV12 RGB BGR"),
                                          {"quad", "NV12 I420 YV12"},
                                          {"360", "NV12"},
                                          {"180", "NV12"}}) {
        Pipeline pipeline(std::string("layout=") + layout);
        pipeline.acceptOutput(kBgrx);
        for (const Direct& direct : kDirect)
            EXPECT_EQ(takes(pipeline, direct.in),
                      std::string_view(formats).find(direct.in) != std::string_view::npos)
                << layout << " " << direct.in;
        EXPECT_FALSE(takes(pipeline, "BGRx"));
    }
}

TEST(ElementOutput, InFrontNothingIsOfferedThatWouldNeedAConversionNeedlessly)
{
    Pipeline pipeline;
    pipeline.acceptOutput("video/x-raw, format={ BGRx, I420 }");
    const auto offers = [&](const char* format, const char* formatsInFront) {
        GstCaps* filter = gst_caps_from_string(
            (std::string("video/x-raw, format={ ") + formatsInFront + " }").c_str());
        GstCaps* one = gst_caps_from_string((std::string("video/x-raw, format=") + format).c_str());
        GstCaps* caps = gst_pad_peer_query_caps(pipeline.harness()->srcpad, filter);
        const bool has = gst_caps_can_intersect(caps, one);
        for (GstCaps* c : {filter, one, caps})
            gst_caps_unref(c);
        return has;
    };
    EXPECT_TRUE(offers("I420", "RGB, NV12, I420"));
    EXPECT_FALSE(offers("NV12", "RGB, NV12, I420"));
    EXPECT_FALSE(offers("RGB", "RGB, NV12, I420"));
    EXPECT_TRUE(offers("RGB", "RGB, YUY2"));
    EXPECT_FALSE(offers("YUY2", "RGB, YUY2"));
    EXPECT_TRUE(takes(pipeline, "NV12"));
}

TEST(ElementOutput, LayoutsAndMountsChangeLive)
{
    const Bytes input = frameBytes(kInputBytes);
    Pipeline pipeline;
    pipeline.acceptOutput(kBgrx);
    pipeline.input("NV12");
    for (View view : {View::quad, View::ptz360, View::half180, View::single}) {
        pipeline.set("layout", int(view));
        const Bytes output = pipeline.dewarp(input);
        EXPECT_EQ(pipeline.outputSize(), defaultOutputSize(view, Mount::ceiling, kInput));
        EXPECT_EQ(output, expected(view, "NV12", input, pipeline.outputInfo()))
            << layoutRule(view).name;
    }
}

TEST(ElementOutput, ALayoutThatNeedsAnotherFormatAsksForIt)
{
    const Bytes planar = frameBytes(kInputBytes), semiPlanar = frameBytes(kInputBytes, 1);
    Pipeline pipeline("layout=quad");
    pipeline.acceptOutput(kBgrx);
    pipeline.input("I420");
    pipeline.dewarp(planar);
    pipeline.set("layout", int(View::ptz360));
    // Frames on their way are still shown as before.
    const Bytes before = pipeline.dewarp(planar);
    EXPECT_EQ(before, expected(View::quad, "I420", planar, pipeline.outputInfo()));
    EXPECT_TRUE(pipeline.sentUpstream(GST_EVENT_RECONFIGURE));
    pipeline.input("NV12");
    const Bytes after = pipeline.dewarp(semiPlanar);
    EXPECT_EQ(after, expected(View::ptz360, "NV12", semiPlanar, pipeline.outputInfo()));
}

TEST(ElementOutput, FormatsOfBothSidesChangeMidStream)
{
    Pipeline pipeline;
    pipeline.acceptOutput(kBgrx);
    for (const Direct& direct : kDirect)
        for (const char* format : {"BGRx", direct.out, "YUY2"}) {
            SCOPED_TRACE(std::string(direct.in) + " to " + format);
            pipeline.input(direct.in);
            pipeline.acceptOutput(std::string("video/x-raw, format=") + format);
            gst_pad_push_event(pipeline.harness()->sinkpad, gst_event_new_reconfigure());
            const Bytes input = inputFrame(direct.fed, 1);
            const Bytes output = pipeline.dewarp(input);
            EXPECT_EQ(pipeline.outputFormat(), format);
            EXPECT_EQ(output, expected(View::single, direct.in, input, pipeline.outputInfo()));
        }
}

TEST(ElementOutput, SizesOfBothSidesChangeMidStream)
{
    Pipeline pipeline("layout=quad");
    pipeline.acceptOutput(kBgrx);
    pipeline.input("NV12");
    pipeline.dewarp(frameBytes(kInputBytes));
    for (Size input : {Size{400, 360}, Size{322, 242}, Size{640, 640}}) {
        pipeline.input("NV12", input);
        const Bytes output =
            pipeline.dewarp(frameBytes(std::size_t(input.width * input.height) * 3 / 2));
        const Size size = pipeline.outputSize();
        EXPECT_EQ(size, defaultOutputSize(View::quad, Mount::ceiling, input));
        EXPECT_EQ(output.size(), std::size_t(size.width * size.height) * 4);
    }
    // Rows that GStreamer pads.
    const Bytes input = frameBytes(kInputBytes);
    Pipeline odd;
    odd.acceptOutput("video/x-raw, format=BGRx, width=250, height=186");
    odd.input("NV12");
    DewarperSetup setup = test::setupOf(View::single, Mount::ceiling, PixelFormat::nv12);
    setup.output = {250, 186};
    const Bytes tight = test::dewarped(setup, test::usualAims(View::single, Mount::ceiling), input);
    const GstVideoInfo info = infoOf(GST_VIDEO_FORMAT_NV12, setup.output);
    Bytes padded(GST_VIDEO_INFO_SIZE(&info));
    for (std::size_t row = 0; row < 186 + 93; ++row)
        std::copy_n(&tight[row * 250], 250, &padded[row * 252]);
    const Bytes output = odd.dewarp(input);
    EXPECT_EQ(output, converted(padded, info, odd.outputInfo()));
}

TEST(ElementOutput, StopsAndStartsAgain)
{
    const Bytes input = frameBytes(kInputBytes);
    Pipeline pipeline;
    pipeline.acceptOutput(kBgrx);
    pipeline.input("NV12");
    const Bytes before = pipeline.dewarp(input);
    EXPECT_FALSE(before.empty());
    pipeline.stop();
    pipeline.restart();
    pipeline.input("NV12");
    EXPECT_EQ(pipeline.dewarp(input), before);
}

} // namespace
} // namespace lumofe
