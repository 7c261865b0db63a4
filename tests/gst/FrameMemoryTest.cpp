#include "FrameMemory.h"

#include "GstTestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>

namespace lumofe {
namespace {

using test::Bytes;

// A mapped frame in memory of its own, whose planes begin `gap` bytes behind one another and whose
// rows have `padding` bytes at their end.
class TestFrame {
public:
    TestFrame(GstVideoFormat format, Size size, int padding, int gap)
    {
        test::useGStreamer();
        gst_video_info_set_format(&frame.info, format, guint(size.width), guint(size.height));
        const bool planar = format != GST_VIDEO_FORMAT_RGB;
        const int planes = int(GST_VIDEO_INFO_N_PLANES(&frame.info));
        std::size_t end = 0;
        for (int i = 0; i < planes; ++i) {
            const int row = !planar                 ? 3 * size.width
                            : i == 0 || planes == 2 ? size.width
                                                    : size.width / 2;
            GST_VIDEO_INFO_PLANE_STRIDE(&frame.info, i) = row + padding;
            offsets[i] = end;
            end +=
                std::size_t(row + padding) * std::size_t(i == 0 ? size.height : size.height / 2) +
                std::size_t(gap);
        }
        memory.resize(end, 0xEE);
        for (int i = 0; i < planes; ++i)
            frame.data[i] = memory.data() + offsets[i];
    }

    GstVideoFrame frame{};
    std::size_t offsets[GST_VIDEO_MAX_PLANES] = {};
    Bytes memory;
};

constexpr GstVideoFormat kFormats[] = {GST_VIDEO_FORMAT_NV12, GST_VIDEO_FORMAT_I420,
                                       GST_VIDEO_FORMAT_YV12, GST_VIDEO_FORMAT_RGB};

std::size_t tightBytes(GstVideoFormat format, Size size)
{
    return std::size_t(size.width * size.height) * (format == GST_VIDEO_FORMAT_RGB ? 6 : 3) / 2;
}

Bytes counted(std::size_t count)
{
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t(1));
    return bytes;
}

TEST(FrameMemory, GStreamersOwnLayoutIsTightWhereWidthsAre)
{
    test::useGStreamer();
    for (GstVideoFormat format : kFormats)
        for (int width : {320, 322, 324, 326, 328}) {
            GstVideoInfo info;
            gst_video_info_set_format(&info, format, guint(width), 240);
            GstBuffer* buffer = gst_buffer_new_allocate(nullptr, info.size, nullptr);
            GstVideoFrame frame;
            ASSERT_TRUE(gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ));
            // The chroma planes of I420 have rows of half the width, rounded up to multiples of 4.
            const bool planar = format == GST_VIDEO_FORMAT_I420 || format == GST_VIDEO_FORMAT_YV12;
            EXPECT_EQ(isTight(frame), width % (planar ? 8 : 4) == 0)
                << gst_video_format_to_string(format) << " " << width;
            gst_video_frame_unmap(&frame);
            gst_buffer_unref(buffer);
        }
}

TEST(FrameMemory, PaddedRowsAndDistantPlanesAreNotTight)
{
    for (GstVideoFormat format : kFormats) {
        EXPECT_TRUE(isTight(TestFrame(format, {8, 4}, 0, 0).frame));
        EXPECT_FALSE(isTight(TestFrame(format, {8, 4}, 2, 0).frame));
        const bool onePlane = format == GST_VIDEO_FORMAT_RGB;
        EXPECT_EQ(isTight(TestFrame(format, {8, 4}, 0, 2).frame), onePlane);
    }
}

TEST(FrameMemory, PackingLeavesOutWhatIsBetweenRowsAndPlanes)
{
    for (GstVideoFormat format : kFormats) {
        constexpr Size kSize{12, 6};
        const Bytes content = counted(tightBytes(format, kSize));
        TestFrame padded(format, kSize, 4, 3), tight(format, kSize, 0, 0);
        unpackFrame(content.data(), padded.frame);
        unpackFrame(content.data(), tight.frame);
        EXPECT_EQ(tight.memory, content);
        EXPECT_EQ(std::size_t(std::ranges::count(padded.memory, 0xEE)),
                  padded.memory.size() - content.size());

        Bytes packed(content.size());
        packFrame(padded.frame, packed.data());
        EXPECT_EQ(packed, content) << gst_video_format_to_string(format);
    }
}

} // namespace
} // namespace lumofe
