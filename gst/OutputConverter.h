// Gives the library's pictures in formats that it does not write, by GStreamer's own conversion.
#ifndef LUMOFE_GST_OUTPUT_CONVERTER_H
#define LUMOFE_GST_OUTPUT_CONVERTER_H

#include <gst/video/video.h>

namespace lumofe {

// Used by one thread at a time. Frames do not allocate.
class OutputConverter {
public:
    OutputConverter() = default;
    ~OutputConverter() { close(); }
    OutputConverter(const OutputConverter&) = delete;
    OutputConverter& operator=(const OutputConverter&) = delete;

    // Makes room for one picture of the output's size, in the format that the library writes for
    // the input and in the input's colorimetry, until close(). Throws Error when GStreamer does not
    // convert such a picture to the output, or there is no memory.
    void open(const GstVideoInfo& input, const GstVideoInfo& output);
    void close();
    bool isOpen() const { return converter_ != nullptr; }

    // Of an open converter: where the library writes; mapped.
    GstVideoFrame& picture() { return picture_; }

    // Of an open converter: the picture as it is now, into a mapped frame of the output.
    void convert(GstVideoFrame& output);

private:
    GstVideoConverter* converter_ = nullptr;
    GstVideoFrame picture_{};
};

} // namespace lumofe

#endif
