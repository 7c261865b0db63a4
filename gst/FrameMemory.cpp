// GStreamer's frames and the library's, whose rows and planes follow one another without a gap.
#include "FrameMemory.h"

#include <cstddef>
#include <cstring>

namespace lumofe {
namespace {

struct Plane {
    std::uint8_t* data;
    std::ptrdiff_t stride;
    std::size_t rowBytes;
    int rows;
};

int planes(const GstVideoFrame& frame)
{
    return int(GST_VIDEO_FRAME_N_PLANES(&frame));
}

Plane plane(const GstVideoFrame& frame, int number)
{
    gint components[GST_VIDEO_MAX_COMPONENTS];
    gst_video_format_info_component(frame.info.finfo, guint(number), components);
    const int first = components[0];
    return {static_cast<std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, number)),
            GST_VIDEO_FRAME_PLANE_STRIDE(&frame, number),
            std::size_t(GST_VIDEO_FRAME_COMP_WIDTH(&frame, first)) *
                std::size_t(GST_VIDEO_FRAME_COMP_PSTRIDE(&frame, first)),
            GST_VIDEO_FRAME_COMP_HEIGHT(&frame, first)};
}

} // namespace

bool isTight(const GstVideoFrame& frame)
{
    const std::uint8_t* next = plane(frame, 0).data;
    for (int i = 0; i < planes(frame); ++i) {
        const Plane p = plane(frame, i);
        if (p.data != next || p.stride != std::ptrdiff_t(p.rowBytes)) return false;
        next += p.rowBytes * std::size_t(p.rows);
    }
    return true;
}

void packFrame(const GstVideoFrame& frame, std::uint8_t* tight)
{
    for (int i = 0; i < planes(frame); ++i) {
        const Plane p = plane(frame, i);
        for (int row = 0; row < p.rows; ++row, tight += p.rowBytes)
            std::memcpy(tight, p.data + row * p.stride, p.rowBytes);
    }
}

void unpackFrame(const std::uint8_t* tight, GstVideoFrame& frame)
{
    for (int i = 0; i < planes(frame); ++i) {
        const Plane p = plane(frame, i);
        for (int row = 0; row < p.rows; ++row, tight += p.rowBytes)
            std::memcpy(p.data + row * p.stride, tight, p.rowBytes);
    }
}

} // namespace lumofe
