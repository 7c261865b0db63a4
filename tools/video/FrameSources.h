// Videos that need no decoder: YUV4MPEG2, and a still picture that stays.
#ifndef LUMOFE_TOOLS_FRAME_SOURCES_H
#define LUMOFE_TOOLS_FRAME_SOURCES_H

#include "media/InputStream.h"
#include "media/Y4m.h"
#include "video/VideoSource.h"

namespace lumofe {

// Planar frames, cropped to an even size.
class Y4mSource : public VideoSource {
public:
    explicit Y4mSource(InputStream input);

    Transfer* request(std::uint8_t* frame) override;
    bool received() override;

private:
    InputStream input_;
    Y4mReader reader_;
    Frame420 read_;
    std::uint8_t* target_ = nullptr;
};

// The same picture, cropped to an even size, `frames` times.
class StillSource : public VideoSource {
public:
    static constexpr int kRate = 25; // frames a second

    // Of a YUV4MPEG2 header, for pictures as they are decoded here.
    static std::string tags();

    StillSource(const Image& picture, int frames);

    Transfer* request(std::uint8_t* frame) override;
    bool received() override;

private:
    Frame420 picture_;
    std::uint8_t* target_ = nullptr;
    long left_;
};

} // namespace lumofe

#endif
