// Gives the library's pictures in formats that it does not write, by GStreamer's own conversion.
#include "OutputConverter.h"

#include "Caps.h"
#include "Error.h"

#include <string>

namespace lumofe {
namespace {

// What the library writes: as the output, but in format and colours from the input.
GstVideoInfo infoOfPicture(const GstVideoInfo& input, const GstVideoInfo& output)
{
    GstVideoInfo info;
    gst_video_info_set_interlaced_format(
        &info, writtenFormat(GST_VIDEO_INFO_FORMAT(&input)), GST_VIDEO_INFO_INTERLACE_MODE(&output),
        guint(GST_VIDEO_INFO_WIDTH(&output)), guint(GST_VIDEO_INFO_HEIGHT(&output)));
    info.colorimetry = input.colorimetry;
    info.chroma_site = input.chroma_site;
    // The converter refuses other rates than its output's.
    info.fps_n = output.fps_n;
    info.fps_d = output.fps_d;
    return info;
}

} // namespace

void OutputConverter::open(const GstVideoInfo& input, const GstVideoInfo& output)
{
    close();
    const GstVideoInfo info = infoOfPicture(input, output);
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, GST_VIDEO_INFO_SIZE(&info), nullptr);
    const bool mapped = buffer && gst_video_frame_map(&picture_, &info, buffer, GST_MAP_READWRITE);
    if (buffer) gst_buffer_unref(buffer); // the frame holds it
    if (mapped) converter_ = gst_video_converter_new(&info, &output, nullptr);
    if (converter_) return;
    if (mapped) gst_video_frame_unmap(&picture_);
    throw Error(std::string("GStreamer does not convert ") + GST_VIDEO_INFO_NAME(&info) + " to " +
                GST_VIDEO_INFO_NAME(&output) +
                "; ask for another format in the caps behind the "
                "element");
}

void OutputConverter::close()
{
    if (!converter_) return;
    gst_video_converter_free(converter_);
    converter_ = nullptr;
    gst_video_frame_unmap(&picture_);
}

void OutputConverter::convert(GstVideoFrame& output)
{
    gst_video_converter_frame(converter_, &picture_, &output);
}

} // namespace lumofe
