// Where the frames of a video go.
#include "video/VideoSink.h"

#include "media/Pixels.h"

#include <algorithm>

namespace lumofe {

Y4mSink::Y4mSink(const std::string& path, int standardOutput, const VideoFormat& format)
    : file_(path, standardOutput), chroma_(format.chroma), frame_(format.size),
      writer_(file_, {format.size, format.tags})
{
}

Transfer* Y4mSink::take(const std::uint8_t* frame)
{
    if (chroma_ == Chroma::pairs)
        separateChroma(frame, frame_.bytes.data(), frame_.size);
    else
        std::copy_n(frame, frame_.bytes.size(), frame_.bytes.data());
    writer_.write(frame_);
    file_.flush();
    return nullptr;
}

void Y4mSink::finish(bool)
{
    file_.commit();
}

} // namespace lumofe
