#include "OutputConverter.h"

#include "Error.h"
#include "GstTestSupport.h"

#include <array>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::Bytes;
using test::infoOf;
using test::kInput;

constexpr Size kOutput{64, 48};

// A frame of its own, mapped.
struct Frame {
    explicit Frame(const GstVideoInfo& info)
    {
        GstBuffer* buffer = gst_buffer_new_allocate(nullptr, GST_VIDEO_INFO_SIZE(&info), nullptr);
        EXPECT_TRUE(gst_video_frame_map(&frame, &info, buffer, GST_MAP_READWRITE));
        gst_buffer_unref(buffer);
    }
    ~Frame() { gst_video_frame_unmap(&frame); }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    GstVideoFrame frame;
};

// Every row of a plane with these bytes again and again.
void fill(GstVideoFrame& frame, int plane, const std::vector<int>& bytes)
{
    auto* data = static_cast<std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, plane));
    const int stride = GST_VIDEO_FRAME_PLANE_STRIDE(&frame, plane);
    for (int row = 0; row < GST_VIDEO_FRAME_COMP_HEIGHT(&frame, plane); ++row)
        for (int i = 0; i < stride; ++i)
            data[row * stride + i] = std::uint8_t(bytes[std::size_t(i) % bytes.size()]);
}

// Red, green and blue of a pixel in the middle.
std::array<int, 3> middle(const GstVideoFrame& frame)
{
    std::array<int, 3> rgb{};
    for (int component = 0; component < 3; ++component)
        rgb[std::size_t(component)] = static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_COMP_DATA(
            &frame,
            component))[kOutput.height / 2 * GST_VIDEO_FRAME_COMP_STRIDE(&frame, component) +
                        kOutput.width / 2 * GST_VIDEO_FRAME_COMP_PSTRIDE(&frame, component)];
    return rgb;
}

void expectColour(const std::array<int, 3>& rgb, const std::array<int, 3>& expected)
{
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(rgb[i], expected[i], 2) << "component " << i;
}

TEST(OutputConverter, ThePictureIsOfTheOutputsSizeInTheFormatThatTheLibraryWrites)
{
    for (const auto& [in, written] : {std::pair(GST_VIDEO_FORMAT_NV12, GST_VIDEO_FORMAT_NV12),
                                      {GST_VIDEO_FORMAT_I420, GST_VIDEO_FORMAT_I420},
                                      {GST_VIDEO_FORMAT_YV12, GST_VIDEO_FORMAT_YV12},
                                      {GST_VIDEO_FORMAT_RGB, GST_VIDEO_FORMAT_BGR},
                                      {GST_VIDEO_FORMAT_BGR, GST_VIDEO_FORMAT_RGB}}) {
        OutputConverter converter;
        converter.open(infoOf(in, kInput), infoOf(GST_VIDEO_FORMAT_BGRx, kOutput));
        const GstVideoFrame& picture = converter.picture();
        EXPECT_EQ(GST_VIDEO_FRAME_FORMAT(&picture), written);
        EXPECT_EQ(GST_VIDEO_FRAME_WIDTH(&picture), kOutput.width);
        EXPECT_EQ(GST_VIDEO_FRAME_HEIGHT(&picture), kOutput.height);
    }
}

TEST(OutputConverter, ColoursAreThoseOfTheInputsColorimetry)
{
    struct Red {
        const char* colorimetry;
        Size input;
        int y, u, v;
    };
    // Without a colorimetry of its own, what is usual for the input's size, not for the output's.
    for (const Red& red : {Red{"bt601", kInput, 81, 90, 240}, Red{"bt709", kInput, 63, 102, 240},
                           Red{"", {640, 480}, 81, 90, 240}, Red{"", {720, 720}, 63, 102, 240}}) {
        SCOPED_TRACE(std::string(red.colorimetry) + " " + std::to_string(red.input.height));
        const GstVideoInfo output = infoOf(GST_VIDEO_FORMAT_BGRx, kOutput);
        OutputConverter converter;
        converter.open(infoOf(GST_VIDEO_FORMAT_NV12, red.input, red.colorimetry), output);
        fill(converter.picture(), 0, {red.y});
        fill(converter.picture(), 1, {red.u, red.v});
        Frame frame(output);
        converter.convert(frame.frame);
        expectColour(middle(frame.frame), {255, 0, 0});
    }
}

TEST(OutputConverter, RedAndBlueStayApartInRgb)
{
    const GstVideoInfo output = infoOf(GST_VIDEO_FORMAT_RGB, kOutput);
    OutputConverter converter;
    converter.open(infoOf(GST_VIDEO_FORMAT_RGB, kInput), output);
    fill(converter.picture(), 0, {10, 100, 200}); // blue comes first
    Frame frame(output);
    converter.convert(frame.frame);
    EXPECT_EQ(middle(frame.frame), (std::array{200, 100, 10}));
}

TEST(OutputConverter, ThePictureStaysWhereItIsFromFrameToFrame)
{
    const GstVideoInfo output = infoOf(GST_VIDEO_FORMAT_BGRA, kOutput);
    OutputConverter converter;
    converter.open(infoOf(GST_VIDEO_FORMAT_I420, kInput, "bt601"), output);
    const void* place = GST_VIDEO_FRAME_PLANE_DATA(&converter.picture(), 0);
    Frame frame(output);
    for (const auto& [luma, grey] : {std::pair(16, 0), {235, 255}, {126, 128}}) {
        EXPECT_EQ(GST_VIDEO_FRAME_PLANE_DATA(&converter.picture(), 0), place);
        fill(converter.picture(), 0, {luma});
        fill(converter.picture(), 1, {128});
        fill(converter.picture(), 2, {128});
        converter.convert(frame.frame);
        expectColour(middle(frame.frame), {grey, grey, grey});
    }
}

TEST(OutputConverter, OpensAnewForOthersAndCloses)
{
    OutputConverter converter;
    EXPECT_FALSE(converter.isOpen());
    const GstVideoInfo nv12 = infoOf(GST_VIDEO_FORMAT_NV12, kInput);
    converter.open(nv12, infoOf(GST_VIDEO_FORMAT_BGRx, kOutput));
    converter.open(nv12, infoOf(GST_VIDEO_FORMAT_I420, {32, 32}));
    EXPECT_TRUE(converter.isOpen());
    EXPECT_EQ(GST_VIDEO_FRAME_WIDTH(&converter.picture()), 32);
    converter.close();
    EXPECT_FALSE(converter.isOpen());
    converter.close();
}

TEST(OutputConverter, TakesInterlacedOutputsAndAnyRate)
{
    GstVideoInfo output;
    gst_video_info_set_interlaced_format(&output, GST_VIDEO_FORMAT_BGRx,
                                         GST_VIDEO_INTERLACE_MODE_INTERLEAVED, 64, 48);
    output.fps_n = 30000;
    output.fps_d = 1001;
    OutputConverter converter;
    converter.open(infoOf(GST_VIDEO_FORMAT_NV12, kInput), output);
    EXPECT_TRUE(converter.isOpen());
}

} // namespace
} // namespace lumofe
