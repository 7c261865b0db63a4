// The command that puts pictures side by side, with captions.
#include "SheetCommand.h"

#include "Error.h"
#include "StillFile.h"
#include "TemporaryFile.h"
#include "media/Drawing.h"
#include "media/ImageFile.h"
#include "media/InputStream.h"

#include <algorithm>
#include <filesystem>

namespace lumofe {
namespace {

constexpr std::size_t kMaxImages = 400;
constexpr int kMinWidth = 32, kMaxWidth = 2048, kMaxColumns = 20;
constexpr int kMaxSide = 16384; // of the sheet, pixels
constexpr int kGap = 12, kTextScale = 2, kTextRow = kTextHeight * kTextScale;
constexpr Rgb kPaper{245, 245, 242}, kInk{40, 40, 40};

void checkNumber(const char* option, int value, int low, int high)
{
    if (value >= low && value <= high) return;
    throw Error(std::string(option) + ": " + std::to_string(value) + " is outside " +
                std::to_string(low) + " to " + std::to_string(high));
}

void checkOptions(const SheetOptions& options)
{
    checkNumber("--columns", options.columns, 1, kMaxColumns);
    checkNumber("--width", options.width, kMinWidth, kMaxWidth);
    if (options.captions.size() > options.images.size())
        throw Error("--caption: given " + std::to_string(options.captions.size()) + " times for " +
                    std::to_string(options.images.size()) + " pictures");
    if (options.images.size() > kMaxImages)
        throw Error("sheet: at most " + std::to_string(kMaxImages) + " pictures fit");
}

Image thumbnail(const std::string& path, int width)
{
    InputStream input(path);
    const Image image = decodeImage(input.readAll(kLargestImageFile), input.name(), {1, 1});
    const int height = std::max(1, int(std::int64_t(width) * image.size.height / image.size.width));
    if (height > kMaxSide) throw Error(input.name() + ": is too narrow for a sheet; leave it out");
    return scaled(image, {width, height});
}

std::string captionOf(const SheetOptions& options, std::size_t i)
{
    if (i < options.captions.size()) return options.captions[i];
    return std::filesystem::path(options.images[i]).filename().string();
}

// One row of thumbnails of equal width, each under its caption.
Image sheetRow(const SheetOptions& options, std::size_t first, std::size_t last, int rowWidth)
{
    std::vector<Image> thumbnails;
    int height = 0;
    for (std::size_t i = first; i < last; ++i) {
        thumbnails.push_back(thumbnail(options.images[i], options.width));
        height = std::max(height, thumbnails.back().size.height);
    }
    Image row = filled({rowWidth, kTextRow + height + kGap}, kPaper);
    for (std::size_t i = first; i < last; ++i) {
        const int x = kGap + int(i - first) * (options.width + kGap);
        Image caption = filled({options.width, kTextRow}, kPaper);
        drawText(caption, 0, 0, kTextScale, captionOf(options, i), kInk);
        paste(row, caption, x, 0);
        paste(row, thumbnails[i - first], x, kTextRow);
    }
    return row;
}

} // namespace

void runSheet(const SheetOptions& options)
{
    checkStillName(options.output, "a sheet");
    checkAbsent(options.output, options.force);
    checkOptions(options);

    const std::size_t count = options.images.size();
    const std::size_t columns = std::min(count, std::size_t(options.columns));
    Image sheet = filled({kGap + int(columns) * (options.width + kGap), kGap}, kPaper);
    for (std::size_t first = 0; first < count; first += columns) {
        const Image row =
            sheetRow(options, first, std::min(first + columns, count), sheet.size.width);
        sheet.bytes.insert(sheet.bytes.end(), row.bytes.begin(), row.bytes.end());
        sheet.size.height += row.size.height;
        if (sheet.size.height > kMaxSide || sheet.size.width > kMaxSide)
            throw Error("sheet: comes out larger than 16384 pixels; choose a smaller --width");
    }

    writeStill(options.output, sheet);
}

} // namespace lumofe
