#include "Frames.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>

namespace {

Bytes counting(std::size_t size)
{
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(1));
    return bytes;
}

} // namespace

TEST(FECopypIn, CopiesPlanarFramesUnchangedWhateverTheFlip)
{
    for (FORMAT format : {FORMAT_NV12, FORMAT_YV12})
        for (bool flip : {false, true}) {
            FEDSP e;
            Bytes in = counting(24), out(26, 0xEE);
            e.AccessCtr_FECopypIn(in.data(), out.data(), 4, 4, format, flip);
            EXPECT_TRUE(std::equal(in.begin(), in.end(), out.begin()));
            EXPECT_EQ(out[24], 0xEE);
        }
}

TEST(FECopypIn, RoundsOddPlanarSizesDown)
{
    FEDSP e;
    Bytes in = counting(24), out(24, 0xEE);
    e.AccessCtr_FECopypIn(in.data(), out.data(), 3, 5, FORMAT_NV12, false); // 22.5 bytes
    EXPECT_EQ(out[21], 22);
    EXPECT_EQ(out[22], 0xEE);
}

TEST(FECopypIn, LaterBandsDoNotStagePlanarFrames)
{
    FEDSP e;
    Bytes in = counting(24), out(24, 0xEE);
    e.m_nLineIndex = 1;
    e.AccessCtr_FECopypIn(in.data(), out.data(), 4, 4, FORMAT_NV12, false);
    EXPECT_EQ(out, Bytes(24, 0xEE));
    e.m_nLineIndex = 0;
    e.AccessCtr_FECopypIn(in.data(), out.data(), 4, 4, FORMAT_NV12, false);
    EXPECT_EQ(out, in);
}

TEST(FECopypIn, OtherFormatsAreNotStaged)
{
    for (int format : {0, 4, -1, 99}) {
        FEDSP e;
        Bytes in = counting(48), out(48, 0xEE);
        e.AccessCtr_FECopypIn(in.data(), out.data(), 4, 4, FORMAT(format), true);
        EXPECT_EQ(out, Bytes(48, 0xEE)) << format;
    }
}

TEST(FECopypIn, RgbIsStagedUpsideDownOrWithoutItsLastRow)
{
    FEDSP e;
    Bytes in = counting(18), out(18, 0xEE);
    e.AccessCtr_FECopypIn(in.data(), out.data(), 2, 3, FORMAT_RGB, true);
    EXPECT_EQ(out, (Bytes{13, 14, 15, 16, 17, 18, 7, 8, 9, 10, 11, 12, 1, 2, 3, 4, 5, 6}));
    out.assign(18, 0xEE);
    e.AccessCtr_FECopypIn(in.data(), out.data(), 2, 3, FORMAT_RGB, false);
    EXPECT_EQ(out,
              (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE}));
}

TEST(TransferButtomToUp, EmptyImagesAreIgnored)
{
    FEDSP e;
    unsigned char byte = 5;
    e.TransferButtomToUp(&byte, &byte, 0, 5, true);
    e.TransferButtomToUp(&byte, &byte, 5, 0, false);
    e.TransferButtomToUpPlanar(&byte, &byte, -2, 2, true);
    EXPECT_EQ(byte, 5);
}

TEST(TransferButtomToUpPlanar, TurnsSemiPlanarImagesUpsideDown)
{
    FEDSP e;
    e.m_nFormat = FORMAT_NV12;
    Bytes in = counting(24), out(24);
    e.TransferButtomToUpPlanar(in.data(), out.data(), 4, 4, true);
    EXPECT_EQ(out, (Bytes{13, 14, 15, 16, 9,  10, 11, 12, 5,  6,  7,  8,
                          1,  2,  3,  4,  21, 22, 23, 24, 17, 18, 19, 20}));
}

TEST(TransferButtomToUpPlanar, TurnsThreePlanesUpsideDown)
{
    FEDSP e;
    e.m_nFormat = FORMAT_YV12;
    Bytes in = counting(24), out(24);
    e.TransferButtomToUpPlanar(in.data(), out.data(), 4, 4, true);
    EXPECT_EQ(out, (Bytes{13, 14, 15, 16, 9,  10, 11, 12, 5,  6,  7,  8,
                          1,  2,  3,  4,  19, 20, 17, 18, 23, 24, 21, 22}));
}

TEST(TransferButtomToUpPlanar, MirrorsWithAnOffsetOfOneElement)
{
    FEDSP e;
    Bytes in = counting(26), out(24); // the mirror reads one chroma pair past the image
    e.m_nFormat = FORMAT_NV12;
    e.TransferButtomToUpPlanar(in.data(), out.data(), 4, 4, false);
    EXPECT_EQ(out, (Bytes{5,  4,  3,  2,  9,  8,  7,  6,  13, 12, 11, 10,
                          17, 16, 15, 14, 21, 22, 19, 20, 25, 26, 23, 24}));
    e.m_nFormat = FORMAT_YV12;
    e.TransferButtomToUpPlanar(in.data(), out.data(), 4, 4, false);
    EXPECT_EQ(out, (Bytes{5,  4,  3,  2,  9,  8,  7,  6,  13, 12, 11, 10,
                          17, 16, 15, 14, 19, 18, 21, 20, 23, 22, 25, 24}));
}
