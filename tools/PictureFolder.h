// The stills of a folder.
#ifndef LUMOFE_TOOLS_PICTURE_FOLDER_H
#define LUMOFE_TOOLS_PICTURE_FOLDER_H

#include "media/Pixels.h"
#include "video/VideoSource.h"

#include <string>
#include <vector>

namespace lumofe {

// Paths of the folder's PNG, JPEG and BMP files, in the order of names. Throws Error when there is
// none, or when the folder cannot be read.
std::vector<std::string> picturesIn(const std::string& folder);

// The folder's pictures one after the other, each for some time, cropped to an even size.
class FolderSource : public VideoSource {
public:
    static constexpr int kFramesEach = 50; // two seconds

    // Throws Error as picturesIn() does, and for a first picture that cannot be read.
    explicit FolderSource(const std::string& folder);

    Transfer* request(std::uint8_t* frame) override;
    // Throws Error for a picture that cannot be read or has another size than the first.
    bool received() override;

private:
    const std::vector<std::string> paths_;
    std::size_t next_ = 0; // picture to read
    Frame420 picture_;
    int left_ = 0; // frames of the picture
    std::uint8_t* target_ = nullptr;

    void readNext();
};

} // namespace lumofe

#endif
