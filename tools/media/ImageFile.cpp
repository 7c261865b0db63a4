// Still picture files, by way of the stb headers.
#include "media/ImageFile.h"

#include "Error.h"

#include <memory>
#include <stb_image.h>
#include <stb_image_write.h>

namespace lumofe {
namespace {

void append(void* context, void* data, int size)
{
    auto& file = *static_cast<std::vector<std::uint8_t>*>(context);
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    file.insert(file.end(), bytes, bytes + size);
}

} // namespace

void checkInputSize(Size size, const std::string& name, Size smallest)
{
    if (size.width >= smallest.width && size.width <= kLargestInput.width &&
        size.height >= smallest.height && size.height <= kLargestInput.height)
        return;
    throw Error(name + ": " + std::to_string(size.width) + "x" + std::to_string(size.height) +
                " is outside " + std::to_string(smallest.width) + "x" +
                std::to_string(smallest.height) + " to 4096x4096; scale it first");
}

Image decodeImage(const std::vector<std::uint8_t>& file, const std::string& name, Size smallest)
{
    if (file.empty()) throw Error(name + ": is empty; give a picture or a Y4M video");
    const int bytes = int(file.size());
    Size size;
    int channels = 0;
    if (!stbi_info_from_memory(file.data(), bytes, &size.width, &size.height, &channels))
        throw Error(name + ": is neither PNG, JPEG or BMP nor YUV4MPEG2 video; convert it first");
    checkInputSize(size, name, smallest);

    const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
        stbi_load_from_memory(file.data(), bytes, &size.width, &size.height, &channels, 3),
        stbi_image_free);
    if (!pixels)
        throw Error(name + ": damaged picture (" + stbi_failure_reason() + "); save it again");
    Image image(size);
    image.bytes.assign(pixels.get(), pixels.get() + image.bytes.size());
    return image;
}

std::vector<std::uint8_t> encodeImage(const Image& image, ImageKind kind, int jpegQuality)
{
    std::vector<std::uint8_t> file;
    const int w = image.size.width, h = image.size.height;
    const std::uint8_t* pixels = image.bytes.data();
    int ok = 0;
    switch (kind) {
    case ImageKind::png:
        ok = stbi_write_png_to_func(append, &file, w, h, 3, pixels, 3 * w);
        break;
    case ImageKind::jpeg:
        ok = stbi_write_jpg_to_func(append, &file, w, h, 3, pixels, jpegQuality);
        break;
    case ImageKind::bmp:
        ok = stbi_write_bmp_to_func(append, &file, w, h, 3, pixels);
        break;
    }
    if (!ok) throw Error("the picture could not be encoded; is there enough memory?");
    return file;
}

} // namespace lumofe
