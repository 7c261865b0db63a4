#include "kernels/ScalePlane.h"

#include "Frames.h"
#include "GuardedBuffer.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <random>

using namespace fe;

namespace {

constexpr float kOne = 65536; // of the values between the passes

struct Variant {
    const char* name;
    Isa isa;
    const ScaleOps& ops;
};
const Variant kVariants[] = {{"sse2", Isa::sse2, kScaleSse2}, {"avx2", Isa::avx2, kScaleAvx2}};

class ScaleOpsOf : public testing::TestWithParam<Variant> {
protected:
    void SetUp() override
    {
        if (GetParam().isa > bestIsa()) GTEST_SKIP() << "this processor has no " << GetParam().name;
    }
    int below(int end) { return int(std::uint32_t(random()) % std::uint32_t(end)); }
    // The fraction of a position of 0 or at least 1/64.
    float someWeight()
    {
        const float some[] = {0, 0.5f, 1.0f / 64, std::nextafter(1.0f, 0.0f)};
        if (below(3) == 0) return some[below(4)];
        const float y = float(1 + below(1000)) * (float(1 + below(100)) / float(1 + below(135)));
        const float fraction = y - std::floor(y);
        return y >= 1 || fraction >= 1.0f / 64 ? fraction : 0;
    }
    // In 1/65536.
    float someSample()
    {
        if (below(2) == 0) return float(below(255 * 32 + 1)) * (kOne / 32);
        return std::ldexp(float(below(255 << 16)), -below(20));
    }

    std::mt19937 random{7};
};

struct alignas(32) Row {
    float values[kScaleBlock];
};

// As the affine warpers interpolate between rows.
int between(float top, float bottom, double weight)
{
    return int((1 - weight) * double(top / kOne) + weight * double(bottom / kOne));
}

} // namespace

// A few samples are chosen so that the result is next to an integer, on either side of it. More of
// them would make every step a doubtful one.
TEST_P(ScaleOpsOf, DownTellsResultsFromTheirNeighbours)
{
    Row top, bottom;
    unsigned char out[kScaleBlock];
    for (int round = 0; round < 2000; ++round) {
        const float weight = someWeight();
        for (int i = 0; i < kScaleBlock; ++i) {
            const float t = top.values[i] = someSample();
            bottom.values[i] = below(4) == 0 ? t : someSample();
            float b = (float(below(256)) * kOne - (1 - weight) * t) / weight;
            if (below(48) != 0 || !(b >= 1 && b <= 255 * kOne - 4)) continue;
            for (int steps = below(4); steps > 0; --steps)
                b = std::nextafter(b, round % 2 == 0 ? 0 : 256 * kOne);
            bottom.values[i] = b;
        }
        const int count = round % 4 == 0 ? kScaleBlock : below(kScaleBlock);
        std::fill(std::begin(out), std::end(out), static_cast<unsigned char>(0xA5));
        GetParam().ops.down({top.values, bottom.values, weight}, out, count);
        for (int i = 0; i < kScaleBlock; ++i) {
            const float t = top.values[i], b = bottom.values[i];
            ASSERT_EQ(out[i], i < count ? between(t, b, double(weight)) : 0xA5)
                << t << " " << b << " " << weight;
        }
    }
}

TEST_P(ScaleOpsOf, DownLeavesTheRoundingModeAsItWas)
{
    const Row row{};
    unsigned char out[40];
    volatile float one = 1, three = 3;
    const float third = one / three;
    GetParam().ops.down({row.values, row.values, 0.25f}, out, 40);
    EXPECT_EQ(one / three, third);
    EXPECT_EQ(-one / three, -third);
}

// Weights have up to 29 bits.
TEST_P(ScaleOpsOf, AcrossRoundsOnce)
{
    auto columns = std::make_unique<ScaleColumns>();
    columns->steps = kScaleBlock / kScaleStep;
    columns->count = kScaleBlock;
    columns->channels = 1;
    columns->windowed = true;
    unsigned char row[256];
    Row out;
    for (int round = 0; round < 400; ++round) {
        double weights[kScaleBlock];
        columns->whole = round % 4 == 0;
        for (int i = 0; i < kScaleBlock; ++i) {
            ScaleGroup& group = columns->groups[i / kScaleGroup];
            const int n = i % kScaleGroup, whole = below(1 << 14);
            const int rest = columns->whole ? 0 : below(1 << 15);
            weights[i] = whole / 16384.0 + rest / 536870912.0;
            group.weights[n] = unsigned((1 << 14) - whole) | unsigned(whole) << 16;
            group.rest[n] = float(rest) / (1 << 13);
            group.index[n] = n;
            group.shuffle[n] = 0x80008000u | unsigned(n) | unsigned(n + 1) << 16;
            columns->window[i / kScaleGroup] = i / kScaleGroup % 15 * 16;
            group.index[n] += columns->window[i / kScaleGroup];
        }
        for (unsigned char& sample : row)
            sample = static_cast<unsigned char>(round % 3 == 0 ? below(2) * 255 : below(256));
        GetParam().ops.across(*columns, row, out.values);
        for (int i = 0; i < kScaleBlock; ++i) {
            const unsigned char* p = row + columns->groups[i / kScaleGroup].index[i % kScaleGroup];
            ASSERT_EQ(out.values[i] / kOne, float((1 - weights[i]) * p[0] + weights[i] * p[1]))
                << int(p[0]) << " " << int(p[1]) << " " << weights[i];
        }
    }
}

// The warpers read neither the last column nor the last row.
TEST_P(ScaleOpsOf, ReadNoFurtherThanTheAffineWarpers)
{
    for (int channels : {1, 2})
        for (int w = 3; w < 70; ++w) {
            const int h = 5, dstW = w + w % 7 * w / 4;
            GuardedBuffer src(std::size_t((h - 1) * w - 1) * std::size_t(channels));
            std::fill_n(src.data(), src.size(), static_cast<unsigned char>(w));
            Bytes out(std::size_t(dstW * h * channels));
            const float step = float(w) / float(dstW);
            ASSERT_TRUE(scalePlane({src.data(), w, h, out.data(), dstW, h, step, 1, channels, 0xEE},
                                   GetParam().isa));
            ASSERT_EQ(out.front(), w);
            ASSERT_EQ(out.back(), 0xEE);
        }
}

INSTANTIATE_TEST_SUITE_P(EveryInstructionSet, ScaleOpsOf, testing::ValuesIn(kVariants),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(ScalePlane, LeavesTheUnusualToTheAffineWarpers)
{
    Bytes pixels(4096, 7);
    const PlaneScaling usual{pixels.data(), 20, 20, pixels.data() + 400, 40, 40, 0.5f, 0.5f, 1, 0};
    const auto refuses = [&](const PlaneScaling& plane, Isa isa = Isa::sse2) {
        const Bytes before = pixels;
        return !scalePlane(plane, isa) && pixels == before;
    };
    EXPECT_TRUE(refuses(usual, Isa::plain));
    PlaneScaling plane = usual;
    plane.dst = pixels.data() + 399; // overlaps
    EXPECT_TRUE(refuses(plane));
    plane.dst = pixels.data() + 2000;
    plane.src = pixels.data() + 3599;
    EXPECT_TRUE(refuses(plane));
    plane = usual;
    plane.stepX = 1.0f / 65;
    EXPECT_TRUE(refuses(plane));
    plane = usual;
    plane.stepY = 1.0f / 65;
    EXPECT_TRUE(refuses(plane));
    plane = usual;
    plane.srcH = (1 << 20) + 1;
    EXPECT_TRUE(refuses(plane));
    plane = usual;
    plane.dstW = 0;
    EXPECT_TRUE(refuses(plane));
    EXPECT_FALSE(refuses(usual));
}
