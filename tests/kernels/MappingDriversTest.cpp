#include "Capture.h"
#include "Frames.h"
#include "mapping/MapEntry.h"

#include <gtest/gtest.h>

using namespace fe;

namespace {

constexpr int kInW = 48, kInH = 40, kPitch = 48;
constexpr int kOutW = 24, kOutH = 20;

class MappingDrivers : public testing::Test {
protected:
    MappingDrivers()
        : source(patternFrame(kInW, kInH, FORMAT_RGB)), table(kOutW * kOutH * 2),
          out(kOutW * kOutH * 3, 0xEE), other(out.size(), 0xEE)
    {
        engine.m_nPitch = kPitch;
        for (int k = 0; k < kOutW * kOutH; ++k)
            storeEntry(
                table.data(), std::size_t(k),
                {std::uint32_t(k * 7 % 256) | std::uint32_t(k * 3 % 256) << 16, k + k / kOutW});
    }
    unsigned char* src() { return source.data(); }

    FEDSP engine;
    Bytes source;
    std::vector<int> table;
    Bytes out, other;
};

} // namespace

TEST_F(MappingDrivers, ChooseTheKernelByFormat)
{
    const auto kernelOf = [&](int format) {
        const std::string printed = printedBy([&] {
            engine.FCMapping(FORMAT(format), src(), out.data(), table.data(), kInW, kInH, kOutW,
                             kOutH, true);
        });
        return printed.substr(0, printed.find(':'));
    };
    EXPECT_EQ(kernelOf(0), "Bilinear_NV12_C");
    EXPECT_EQ(kernelOf(1), "");
    EXPECT_EQ(kernelOf(2), "Bilinear_NV12_C");
    EXPECT_EQ(kernelOf(3), "Bilinear_YV12_C");
    EXPECT_EQ(kernelOf(4), "Bilinear_YV12_C");
    EXPECT_EQ(kernelOf(-1), "Bilinear_YV12_C");

    engine.FCMapping(FORMAT_RGB, src(), out.data(), table.data(), kInW, kInH, kOutW, kOutH, true);
    engine.Bilinear_RGB24_C(src(), other.data(), table.data(), kInW, kInH, kOutW, kOutH);
    EXPECT_EQ(out, other);
}

TEST_F(MappingDrivers, PanoramaDriversTakeTheHeightBeforeTheWidth)
{
    for (FORMAT format : {FORMAT_RGB, FORMAT_NV12, FORMAT_YV12}) {
        engine.FCMapping(format, src(), out.data(), table.data(), kInW, kInH, kOutW, kOutH, true);
        engine.CPIMapping(format, src(), other.data(), table.data(), kInW, kInH, kOutH, 7, 9, kOutW,
                          false);
        EXPECT_EQ(out, other);
    }
}

TEST_F(MappingDrivers, WholeFramesUseThePitchAndBandsTheWidth)
{
    engine.m_nPitch = 52;
    engine.FCMapping_NV12(src(), out.data(), table.data(), kInW, kInH, kOutW, kOutH, true);
    engine.Bilinear_NV12_C(src(), other.data(), table.data(), kInW, kInH, kOutW, kOutH, 52);
    EXPECT_EQ(out, other);
    EXPECT_EQ(engine.FCMapping_NV12_line(src(), out.data(), table.data(), kInW, kInH, kOutW, kOutH,
                                         true, 0),
              kOutH);
    engine.Bilinear_NV12_S(src(), other.data(), table.data(), kInW, kInH, kOutW, kOutH, 0);
    EXPECT_EQ(out, other);
}

TEST_F(MappingDrivers, NullTable)
{
    const Bytes before = out;
    EXPECT_EQ(printedBy([&] {
                  for (FORMAT format : {FORMAT_RGB, FORMAT_NV12, FORMAT_YV12}) {
                      engine.FCMapping(format, src(), out.data(), nullptr, kInW, kInH, kOutW, kOutH,
                                       true);
                      engine.CPIMapping(format, src(), out.data(), nullptr, kInW, kInH, kOutH, 0, 0,
                                        kOutW, true);
                      EXPECT_EQ(engine.FCMapping_line(format, src(), out.data(), nullptr, kInW,
                                                      kInH, kOutW, kOutH, true, 0),
                                -1);
                      EXPECT_EQ(engine.CPIMapping_line(format, src(), out.data(), nullptr, kInW,
                                                       kInH, kOutH, 0, 0, kOutW, true, 0),
                                -1);
                  }
                  engine.FCMapping_NV12(src(), out.data(), nullptr, kInW, kInH, kOutW, kOutH, true);
                  EXPECT_EQ(engine.FCMapping_YV12_line(src(), out.data(), nullptr, kInW, kInH,
                                                       kOutW, kOutH, true, 0),
                            -1);
                  EXPECT_EQ(engine.CPIMapping_NV12_line(src(), out.data(), nullptr, kInW, kInH,
                                                        kOutH, 0, 0, kOutW, true, 0),
                            -1);
              }),
              "");
    EXPECT_EQ(out, before);
}

TEST_F(MappingDrivers, LinesOfRgbAreRefused)
{
    const Bytes before = out;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_EQ(engine.FCMapping_line(FORMAT_RGB, src(), out.data(), table.data(), kInW,
                                                  kInH, kOutW, kOutH, true, 0),
                            0);
              }),
              "FORMAT_RGB is Not support \n");
    EXPECT_EQ(printedBy([&] {
                  EXPECT_EQ(engine.CPIMapping_line(FORMAT_RGB, src(), out.data(), table.data(),
                                                   kInW, kInH, kOutH, 0, 0, kOutW, true, 0),
                            0);
              }),
              "FORMAT_RGB is Not support \n");
    EXPECT_EQ(out, before);
}

TEST_F(MappingDrivers, PanoramaLinesExchangeChromaAgainstWholePanoramas)
{
    engine.CPIMapping(FORMAT_NV12, src(), out.data(), table.data(), kInW, kInH, kOutH, 0, 0, kOutW,
                      true);
    engine.CPIMapping_line(FORMAT_NV12, src(), other.data(), table.data(), kInW, kInH, kOutH, 0, 0,
                           kOutW, true, 0);
    const std::size_t luma = kOutW * kOutH;
    for (std::size_t i = luma; i < luma * 3 / 2; i += 2)
        std::swap(out[i], out[i + 1]);
    EXPECT_EQ(out, other);
}

TEST_F(MappingDrivers, FixedThreePlaneDriversRunTheSemiPlanarKernels)
{
    engine.FCMapping_NV12(src(), out.data(), table.data(), kInW, kInH, kOutW, kOutH, true);
    engine.FCMapping_YV12(src(), other.data(), table.data(), kInW, kInH, kOutW, kOutH, true);
    EXPECT_EQ(out, other);
    engine.CPIMapping_YV12(src(), other.data(), table.data(), kInW, kInH, kOutH, 0, 0, kOutW, true);
    EXPECT_EQ(out, other);
    engine.CPIMapping_NV12(src(), other.data(), table.data(), kInW, kInH, kOutH, 0, 0, kOutW, true);
    EXPECT_EQ(out, other);

    engine.FCMapping_NV12_line(src(), out.data(), table.data(), kInW, kInH, kOutW, kOutH, true, 0);
    engine.FCMapping_YV12_line(src(), other.data(), table.data(), kInW, kInH, kOutW, kOutH, true,
                               0);
    EXPECT_EQ(out, other);
    engine.CPIMapping_YV12_line(src(), other.data(), table.data(), kInW, kInH, kOutH, 0, 0, kOutW,
                                true, 0);
    EXPECT_EQ(out, other);
}
