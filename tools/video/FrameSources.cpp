// Videos that need no decoder: YUV4MPEG2, and a still picture that stays.
#include "video/FrameSources.h"

#include "media/Pixels.h"

#include <algorithm>
#include <utility>

namespace lumofe {

Y4mSource::Y4mSource(InputStream input)
    : input_(std::move(input)), reader_(input_), read_(reader_.header().size)
{
    format_.size = evenSize(read_.size);
    format_.tags = reader_.header().tags;
}

Transfer* Y4mSource::request(std::uint8_t* frame)
{
    target_ = frame;
    return nullptr;
}

bool Y4mSource::received()
{
    if (!reader_.read(read_)) return false;
    if (read_.size == format_.size)
        std::ranges::copy(read_.bytes, target_);
    else
        std::ranges::copy(cropToEven(read_).bytes, target_);
    return true;
}

std::string StillSource::tags()
{
    return " F" + std::to_string(kRate) + ":1 Ip A1:1 C420jpeg XCOLORRANGE=FULL";
}

StillSource::StillSource(const Image& picture, int frames)
    : picture_(toFrame420(cropToEven(picture))), left_(frames)
{
    format_.size = picture_.size;
    format_.tags = tags();
    format_.frames = frames;
}

Transfer* StillSource::request(std::uint8_t* frame)
{
    target_ = frame;
    return nullptr;
}

bool StillSource::received()
{
    if (left_ == 0) return false;
    --left_;
    std::ranges::copy(picture_.bytes, target_);
    return true;
}

} // namespace lumofe
