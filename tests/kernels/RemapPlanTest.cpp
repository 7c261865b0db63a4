#include "kernels/RemapPlan.h"

#include "GuardedBuffer.h"
#include "mapping/MapEntry.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace fe;

namespace {

constexpr int kStride = 200, kRows = 180;
constexpr std::size_t kFrameBytes = kStride * kRows * 3 / 2;

// A table that turns and scales the source about its middle; far entries are blank.
std::vector<int> turned(int w, int h, double scale, double degrees)
{
    std::vector<int> table(2 * std::size_t(w) * std::size_t(h));
    const double c = std::cos(degrees * 0.0174533) * scale,
                 s = std::sin(degrees * 0.0174533) * scale;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const double dx = x - w / 2.0, dy = y - h / 2.0;
            const double row = kRows / 2.0 + dy * c + dx * s, col = kStride / 2.0 + dx * c - dy * s;
            if (row < 1 || col < 1 || row > kRows - 3 || col > kStride - 3) continue;
            storeEntry(table.data(), std::size_t(y) * std::size_t(w) + std::size_t(x),
                       entryAt(float(row), float(col), kStride));
        }
    return table;
}

std::vector<unsigned char> noise()
{
    std::mt19937 random(7);
    std::vector<unsigned char> frame(kFrameBytes);
    for (unsigned char& byte : frame)
        byte = static_cast<unsigned char>(random());
    return frame;
}

struct Planner {
    Planner(int w, int h, std::vector<int> entries)
        : table(std::move(entries)),
          memory(planBytes(w, h)), plan{w, h, kStride, kFrameBytes, memory.data(), 0, 0}
    {
    }
    bool make(std::size_t rows = 10000) { return makePlan(plan, table.data(), kRemapPlain, rows); }

    std::vector<int> table;
    GuardedBuffer memory;
    RemapPlan plan;
};

// The picture by the plain code.
std::vector<unsigned char> mapPlain(const std::vector<int>& table, const unsigned char* src, int w,
                                    int h, int planes)
{
    const std::size_t pixels = std::size_t(w) * std::size_t(h), samples = pixels / 4;
    std::vector<unsigned char> out(pixels * 3 / 2);
    kRemapPlain.luma(src, out.data(), table.data(), pixels, kStride, -1, 0);
    std::vector<std::int32_t> indices(samples);
    for (int y = 0; y < h; y += 2)
        kRemapPlain.chromaIndices(&indices[std::size_t(y / 2 * (w / 2))],
                                  &table[2 * std::size_t(y * w)], std::size_t(w / 2),
                                  Divider(kStride));
    const unsigned char* chroma = src + kStride * kRows;
    for (std::size_t k = 0; k < samples; ++k) {
        const auto i = std::size_t(indices[k]);
        if (planes == 1) {
            out[pixels + 2 * k] = chroma[2 * i];
            out[pixels + 2 * k + 1] = chroma[2 * i + 1];
        } else {
            out[pixels + k] = chroma[i];
            out[pixels + samples + k] = chroma[kStride * kRows / 4 + i];
        }
    }
    return out;
}

// How a picture lies in memory: bytes between its rows, and whether they go upwards.
struct Spread {
    int gap;
    bool upsideDown;
};
constexpr unsigned char kUntouched = 0xA5;

PlanarPicture pictureIn(unsigned char* bytes, int w, int h, int planes, const Spread& spread)
{
    PlanarPicture picture{bytes, w + spread.gap, planes, {}, w / planes + spread.gap};
    unsigned char* chroma = bytes + picture.lumaPitch * h;
    for (int plane = 0; plane < 2; ++plane)
        picture.chroma[plane] = chroma + plane * picture.chromaPitch * (h / 2);
    if (spread.upsideDown) {
        picture.luma += picture.lumaPitch * (h - 1);
        picture.lumaPitch = -picture.lumaPitch;
        for (unsigned char*& plane : picture.chroma)
            plane += picture.chromaPitch * (h / 2 - 1);
        picture.chromaPitch = -picture.chromaPitch;
    }
    return picture;
}

// The picture's rows copied to where they should be.
std::vector<unsigned char> spreadOut(const std::vector<unsigned char>& tight, std::size_t size,
                                     int w, int h, int planes, const Spread& spread)
{
    std::vector<unsigned char> bytes(size, kUntouched);
    const PlanarPicture to = pictureIn(bytes.data(), w, h, planes, spread);
    const unsigned char* src = tight.data();
    for (int y = 0; y < h; ++y, src += w)
        std::copy_n(src, w, to.luma + y * to.lumaPitch);
    for (int plane = 0; plane < planes; ++plane)
        for (int y = 0; y < h / 2; ++y, src += w / planes)
            std::copy_n(src, w / planes, to.chroma[plane] + y * to.chromaPitch);
    return bytes;
}

// For each instruction set that plans are followed with.
class Plans : public testing::TestWithParam<Isa> {
protected:
    void SetUp() override
    {
        if (GetParam() > bestIsa()) GTEST_SKIP() << "no " << nameOf(GetParam()) << " here";
    }
    void expectSame(Planner& planner)
    {
        const int w = planner.plan.w, h = planner.plan.h;
        const std::size_t pixels = std::size_t(w) * std::size_t(h);
        const std::vector<unsigned char> frame = noise();
        GuardedBuffer source(frame.size());
        std::copy(frame.begin(), frame.end(), source.data());
        const unsigned char* chroma = source.data() + kStride * kRows;
        for (const int planes : {1, 2}) {
            const std::vector<unsigned char> tight =
                mapPlain(planner.table, source.data(), w, h, planes);
            for (const Spread& spread : {Spread{0, false}, {0, true}, {5, false}, {5, true}}) {
                GuardedBuffer out(pixels * 3 / 2 + 5 * std::size_t(spread.gap) * std::size_t(h));
                std::fill_n(out.data(), out.size(), kUntouched);
                mapByPlan(planner.plan, planner.table.data(), remapOps(GetParam()),
                          {source.data(), {chroma, chroma + kStride * kRows / 4}},
                          pictureIn(out.data(), w, h, planes, spread));
                ASSERT_EQ(std::vector<unsigned char>(out.data(), out.data() + out.size()),
                          spreadOut(tight, out.size(), w, h, planes, spread))
                    << planes << " planes, gaps of " << spread.gap << ", " << spread.upsideDown;
            }
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Isas, Plans, testing::Values(Isa::ssse3, Isa::avx2),
                         [](const auto& each) { return std::string(nameOf(each.param)); });

} // namespace

TEST_P(Plans, GiveTheBytesOfTheTable)
{
    for (const auto& [w, h] : {std::pair{160, 120}, {64, 2}, {16, 2}, {18, 4}, {94, 38}, {302, 66}})
        for (const double scale : {0.1, 0.4, 0.7, 1.0, 1.3, 1.7, 2.2})
            for (const double degrees : {0.0, 17.0, 45.0, 90.0, 180.0, 251.0}) {
                SCOPED_TRACE(testing::Message()
                             << w << " x " << h << " * " << scale << " at " << degrees);
                Planner planner(w, h, turned(w, h, scale, degrees));
                if (!planner.make()) {
                    EXPECT_GT(scale, 1.5) << "refused";
                    continue;
                }
                ASSERT_TRUE(isComplete(planner.plan));
                expectSame(planner);
                if (HasFatalFailure()) return;
            }
}

TEST_P(Plans, LeaveTilesThatDoNotFitToTheTable)
{
    constexpr int kW = 96, kH = 64;
    std::vector<int> table = turned(kW, kH, 0.6, 30);
    std::mt19937 random(3);
    for (int i = 0; i < 60; ++i) {
        const std::uint32_t fractions =
            random() % 2 ? 0x01000100u : std::uint32_t(random()) & 0x00FF00FFu;
        storeEntry(table.data(), random() % (kW * kH),
                   {fractions, int(random() % (kStride * (kRows - 2)))});
    }
    Planner planner(kW, kH, table);
    ASSERT_TRUE(planner.make());
    EXPECT_GT(planner.plan.oddTiles, 30u);
    expectSame(planner);
}

// The tiles' upper and lower pixels have windows of their own.
TEST_P(Plans, HoldTilesThatAreTooLargeForOneWindow)
{
    for (const double degrees : {30.0, 45.0, 145.0, 300.0}) {
        Planner planner(80, 48, turned(80, 48, 1.7, degrees));
        ASSERT_TRUE(planner.make());
        EXPECT_EQ(planner.plan.oddTiles, 0u);
        expectSame(planner);
    }
}

TEST(RemapPlan, TilesWhoseWindowsAreFarApartAreOdd)
{
    constexpr int kFarStride = 11000;
    for (const int rows : {2, 3}) {
        std::vector<int> table(2 * 16 * 2);
        for (std::size_t k = 16; k < 18; ++k)
            storeEntry(table.data(), k, {0, rows * kFarStride});
        for (std::size_t k = 0; k < 2; ++k)
            storeEntry(table.data(), k, {0, 0});
        Planner planner(16, 2, table);
        planner.plan.stride = kFarStride;
        planner.plan.sourceBytes = 10 * kFarStride;
        ASSERT_TRUE(planner.make());
        EXPECT_EQ(planner.plan.oddTiles, rows == 2 ? 0u : 1u);
    }
}

TEST(RemapPlan, IsMadeInSlices)
{
    Planner planner(160, 120, turned(160, 120, 0.5, 45));
    for (int slice = 0; slice < 3; ++slice) {
        EXPECT_FALSE(isComplete(planner.plan));
        EXPECT_TRUE(planner.make(20));
    }
    EXPECT_TRUE(isComplete(planner.plan));
}

TEST(RemapPlan, WouldNotPayForTablesThatJump)
{
    std::vector<int> table(2 * 64 * 64);
    std::mt19937 random(5);
    for (std::size_t k = 0; k < 64 * 64; ++k)
        storeEntry(table.data(), k, {0, int(random() % (kStride * (kRows - 2)))});
    EXPECT_FALSE(Planner(64, 64, table).make());
    EXPECT_TRUE(Planner(64, 64, std::vector<int>(2 * 64 * 64)).make()) << "all blank";
}

TEST(RemapPlan, OddAndTinySizesHaveNone)
{
    EXPECT_EQ(planBytes(33, 20), 0u);
    EXPECT_EQ(planBytes(32, 21), 0u);
    EXPECT_EQ(planBytes(14, 20), 0u);
    EXPECT_EQ(planBytes(-32, 20), 0u);
    EXPECT_EQ(planBytes(32, 0), 0u);
    EXPECT_GT(planBytes(16, 2), 0u);
}

TEST(RemapPlan, TakesSixBytesAPixelAtMost)
{
    EXPECT_LE(planBytes(1920, 1080), std::size_t(1920 * 1080 * 6));
}

// The last windows would reach behind the source.
TEST(RemapPlan, WindowsStayInTheSource)
{
    constexpr int kW = 64, kH = 32;
    std::vector<int> table(2 * kW * kH);
    for (std::size_t k = 0; k < kW * kH; ++k)
        storeEntry(table.data(), k, {0x00800080u, kStride * (kRows - 2) + int(k % kW)});
    Planner planner(kW, kH, table);
    planner.plan.sourceBytes = kStride * kRows;
    EXPECT_FALSE(planner.make()) << "none of the tiles has a window";
    planner.plan.sourceBytes = kStride * (kRows + 2);
    EXPECT_TRUE(planner.make());
}
