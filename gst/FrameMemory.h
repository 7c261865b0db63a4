// GStreamer's frames and the library's, whose rows and planes follow one another without a gap.
#ifndef LUMOFE_GST_FRAME_MEMORY_H
#define LUMOFE_GST_FRAME_MEMORY_H

#include <cstdint>
#include <gst/video/video.h>

namespace lumofe {

// Whether a mapped frame lies in memory as the library has it.
bool isTight(const GstVideoFrame& frame);

// Copies a mapped frame into the library's layout, and from it.
void packFrame(const GstVideoFrame& frame, std::uint8_t* tight);
void unpackFrame(const std::uint8_t* tight, GstVideoFrame& frame);

} // namespace lumofe

#endif
