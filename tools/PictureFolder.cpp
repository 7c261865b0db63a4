// The stills of a folder.
#include "PictureFolder.h"

#include "Error.h"
#include "InputKind.h"
#include "media/ImageFile.h"
#include "media/InputStream.h"
#include "video/FrameSources.h"

#include <algorithm>
#include <filesystem>

namespace lumofe {
namespace {

namespace fs = std::filesystem;

std::string textOf(Size size)
{
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

} // namespace

std::vector<std::string> picturesIn(const std::string& folder)
{
    std::vector<std::string> pictures;
    std::error_code error;
    for (fs::directory_iterator it(folder, error); !error && it != fs::directory_iterator();
         it.increment(error))
        if (isPictureName(it->path()) && !it->is_directory()) pictures.push_back(it->path());
    if (error) throw Error(folder + ": cannot be read (" + error.message() + "); check its rights");
    if (pictures.empty())
        throw Error(folder + ": holds no .png, .jpg, .jpeg or .bmp file; give another folder");
    std::ranges::sort(pictures);
    return pictures;
}

FolderSource::FolderSource(const std::string& folder) : paths_(picturesIn(folder))
{
    readNext();
    format_.size = picture_.size;
    format_.tags = StillSource::tags();
    format_.frames = long(paths_.size()) * kFramesEach;
}

Transfer* FolderSource::request(std::uint8_t* frame)
{
    target_ = frame;
    return nullptr;
}

bool FolderSource::received()
{
    if (left_ == 0) {
        if (next_ == paths_.size()) return false;
        readNext();
        if (picture_.size != format_.size)
            throw Error(paths_[next_ - 1] + ": is " + textOf(picture_.size) +
                        " pixels, the first picture of the folder is " + textOf(format_.size) +
                        "; put pictures of other sizes elsewhere");
    }
    --left_;
    std::ranges::copy(picture_.bytes, target_);
    return true;
}

void FolderSource::readNext()
{
    InputStream input(paths_[next_++]);
    const std::string name = input.name();
    picture_ = toFrame420(cropToEven(decodeImage(input.readAll(kLargestImageFile), name)));
    left_ = kFramesEach;
}

} // namespace lumofe
