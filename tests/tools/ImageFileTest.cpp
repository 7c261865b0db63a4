#include "media/ImageFile.h"

#include "ToolTestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::Bytes;
using test::bytesOf;
using test::errorOf;

TEST(ImageFile, PngAndBmpKeepEveryByte)
{
    const Image image = test::gradient({333, 241});
    for (ImageKind kind : {ImageKind::png, ImageKind::bmp}) {
        const Image back = decodeImage(encodeImage(image, kind), "picture");
        EXPECT_EQ(back.size, image.size);
        EXPECT_EQ(back.bytes, image.bytes);
    }
}

// Measured 52.0 dB.
TEST(ImageFile, JpegKeepsTheLook)
{
    const Image image = test::gradient({336, 240});
    EXPECT_GT(test::psnr(image, decodeImage(encodeImage(image, ImageKind::jpeg), "picture")), 48);
}

TEST(ImageFile, KindsDiffer)
{
    const Image image = test::gradient({320, 240});
    EXPECT_EQ(encodeImage(image, ImageKind::png)[1], 'P');
    EXPECT_EQ(encodeImage(image, ImageKind::jpeg)[0], 0xFF);
    EXPECT_EQ(encodeImage(image, ImageKind::bmp)[0], 'B');
}

TEST(ImageFile, FourthChannelIsDropped)
{
    // A BMP with 32 bits a pixel: blue, green, red, alpha.
    constexpr int kWidth = 320, kHeight = 240;
    constexpr std::uint32_t kHeader = 14 + 108;
    Bytes file(kHeader + std::size_t(4) * kWidth * kHeight, 0);
    const auto put = [&file](std::size_t at, std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file[at + std::size_t(i)] = std::uint8_t(value >> (8 * i));
    };
    file[0] = 'B';
    file[1] = 'M';
    put(10, kHeader, 4);
    put(14, 108, 4);
    put(18, kWidth, 4);
    put(22, kHeight, 4);
    put(26, 1, 2);
    put(28, 32, 2);
    put(30, 3, 4);
    put(54, 0x00FF0000, 4);
    put(58, 0x0000FF00, 4);
    put(62, 0x000000FF, 4);
    put(66, 0xFF000000, 4);
    for (std::size_t i = kHeader; i < file.size(); i += 4)
        put(i, 0x40102030, 4);
    const Image image = decodeImage(file, "picture");
    EXPECT_EQ(image.bytes.size(), std::size_t(3) * kWidth * kHeight);
    EXPECT_EQ(Bytes(image.pixel(7, 7), image.pixel(7, 7) + 3), (Bytes{0x10, 0x20, 0x30}));
}

TEST(ImageFile, OtherContentIsRefusedByName)
{
    EXPECT_NE(errorOf([] { decodeImage(bytesOf("hello"), "notes.txt"); }).find("notes.txt"),
              std::string::npos);
    EXPECT_NE(errorOf([] { decodeImage({}, "empty.png"); }).find("empty.png: is empty"),
              std::string::npos);
}

TEST(ImageFile, TruncatedPngIsRefused)
{
    Bytes file = encodeImage(test::gradient({320, 240}), ImageKind::png);
    file.resize(file.size() / 2);
    EXPECT_NE(errorOf([&] { decodeImage(file, "half.png"); }).find("half.png: damaged"),
              std::string::npos);
}

TEST(ImageFile, AJpegWithTooManyHuffmanCodesIsRefused)
{
    Bytes file = encodeImage(test::gradient({320, 240}), ImageKind::jpeg);
    const Bytes marker{0xFF, 0xC4};
    const auto table = std::search(file.begin(), file.end(), marker.begin(), marker.end());
    ASSERT_LT(table + 21, file.end());
    std::fill_n(table + 5, 16, std::uint8_t(255)); // codes of each length
    EXPECT_NE(errorOf([&] { decodeImage(file, "odd.jpg"); }).find("odd.jpg: "), std::string::npos);
}

// A file of this size lies where a 32-bit process has no addresses for the whole chunk.
TEST(ImageFile, APngChunkLongerThanTheFileIsRefused)
{
    const Bytes file = encodeImage(test::gradient({320, 240}), ImageKind::png);
    constexpr std::size_t kFirstChunk = 8 + 25; // behind the signature and IHDR
    for (const char* type : {"IDAT", "tEXt"})
        for (std::uint8_t length : Bytes{0x10, 0x3F, 0x7F, 0xFF}) {
            Bytes odd(file.begin(), file.begin() + kFirstChunk);
            odd.insert(odd.end(), {length, 0xFF, 0xFF, 0xFF});
            odd.insert(odd.end(), type, type + 4);
            odd.insert(odd.end(), file.begin() + kFirstChunk, file.end());
            odd.resize(1 << 20);
            EXPECT_NE(errorOf([&] { decodeImage(odd, "odd.png"); }).find("odd.png: damaged"),
                      std::string::npos)
                << type << " " << int(length);
        }
}

TEST(ImageFile, ABmpWhosePixelsBeginInItsHeaderIsRefused)
{
    Bytes file(14 + 40 + 256 * 4 + 320 * 240, 7);
    const Bytes header{
        'B',  'M',  0, 0, 0,    0, 0, 0, 0, 0, /* pixels at */ 10, 0, 0, 0, 40, 0, 0, 0,
        0x40, 0x01, 0, 0, 0xF0, 0, 0, 0, 1, 0, /* bits */ 8,       0};
    std::fill_n(file.begin(), 54, std::uint8_t(0));
    std::copy(header.begin(), header.end(), file.begin());
    EXPECT_NE(errorOf([&] { decodeImage(file, "odd.bmp"); }).find("odd.bmp: damaged"),
              std::string::npos);
    file[10] = 54;
    file[11] = 4;
    EXPECT_EQ(decodeImage(file, "even.bmp").bytes, Bytes(320 * 240 * 3, 7));
}

TEST(ImageFile, AJpegWithoutItsScanShowsNothingOfOtherPictures)
{
    Bytes file = encodeImage(test::gradient({320, 240}), ImageKind::jpeg);
    decodeImage(file, "whole.jpg"); // leaves freed planes behind
    const Bytes scan{0xFF, 0xDA};
    file.erase(std::search(file.begin(), file.end(), scan.begin(), scan.end()), file.end());
    file.insert(file.end(), {0xFF, 0xD9});
    const Bytes shown = decodeImage(file, "empty.jpg").bytes;
    for (std::size_t i = 3; i < shown.size(); ++i)
        ASSERT_EQ(shown[i], shown[i - 3]);
}

TEST(ImageFile, SizesOutsideTheLibrarysRangeAreRefused)
{
    for (Size size : {Size{318, 240}, Size{320, 238}, Size{4098, 240}, Size{320, 4098}}) {
        const Bytes file = encodeImage(Image(size), ImageKind::png);
        EXPECT_NE(errorOf([&] { decodeImage(file, "x.png"); }).find("scale it first"),
                  std::string::npos)
            << size.width << "x" << size.height;
    }
    EXPECT_EQ(errorOf([] { checkInputSize({320, 240}, "x"); }), "");
    EXPECT_EQ(errorOf([] { checkInputSize({4096, 4096}, "x"); }), "");
}

TEST(ImageFile, SmallerPicturesAreTakenOnRequest)
{
    const Bytes file = encodeImage(Image({5, 3}), ImageKind::png);
    EXPECT_EQ(decodeImage(file, "x.png", {5, 3}).size, (Size{5, 3}));
    EXPECT_EQ(errorOf([&] {
                  decodeImage(file, "x.png", {5, 4});
              }),
              "x.png: 5x3 is outside 5x4 to 4096x4096; scale it first");
}

} // namespace
} // namespace lumofe
