#include "mapping/LensRows.h"

#include "FEDSP.h"
#include "kernels/Isa.h"
#include "mapping/LensRowsSimd.h"
#include "mapping/MapEntry.h"

#include "GuardedBuffer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

using namespace fe;

namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// ---- the angle ----

struct OneDouble {
    using Doubles = double;
    static double all(double x) { return x; }
};

float angleInVectors(float t)
{
    if (t > 1)
        return float(kRightAngle - complementOf<OneDouble>(double(std::min(t, kFarAway)), //
                                                           double(1 / std::min(t, kFarAway))));
    return float(angleOf<OneDouble>(double(t)));
}

float angleAsDefined(float t)
{
    return float(FastAtan(double(t)) * double(kDegrees));
}

// Compares both for every step-th float from 0 to infinity.
void expectEqualAngles(std::uint32_t step)
{
    constexpr auto end = std::bit_cast<std::uint32_t>(kInf);
    for (std::uint32_t bits = 0; bits <= end; bits += std::min(step, end + 1 - bits)) {
        const auto t = std::bit_cast<float>(bits);
        ASSERT_EQ(std::bit_cast<std::uint32_t>(angleInVectors(t)),
                  std::bit_cast<std::uint32_t>(angleAsDefined(t)))
            << t;
    }
}

// ---- rows ----

using Mapper = decltype(&mapLensRow);

class LensRows : public testing::TestWithParam<Isa> {
protected:
    void SetUp() override
    {
        if (GetParam() > bestIsa()) GTEST_SKIP() << "no " << nameOf(GetParam()) << " here";
    }
    Mapper variant() const { return GetParam() == Isa::avx2 ? mapLensRowAvx2 : mapLensRowSse2; }

    int between(int low, int high) { return std::uniform_int_distribution(low, high)(random); }
    template <class T, std::size_t n>
    T oneOf(const T (&values)[n])
    {
        return values[std::size_t(between(0, n - 1))];
    }
    bool onceIn(int n) { return between(1, n) == 1; }
    float anyFloat() { return std::bit_cast<float>(std::uint32_t(random())); }

    // A view of a camera's picture, of which some pixels lie outside the circle or the input.
    LensView someView()
    {
        const int width = oneOf({320, 1280, 2048, 4096, 70000});
        const float turn = float(between(0, 1439)) * 0.25f * 0.01745f;
        const float si = onceIn(4) ? 0 : std::sin(turn), co = onceIn(4) ? 1 : std::cos(turn);
        const int centre = width / 2;
        const float originX = -float(between(1, centre)), originY = -float(between(1, centre));
        return {.si = si,
                .co = co,
                .P = originX * co - originY * si,
                .Q = originY * co + originX * si,
                .centreRow = float(centre),
                .centreCol = float(centre),
                .Lr = onceIn(4) ? between(1, width) : centre,
                .halfWidth = float(onceIn(4) ? between(1, width) : centre),
                .lastRow = float(onceIn(4) ? between(-2, width) : width - 2),
                .lastCol = float(onceIn(4) ? between(-2, width) : width - 2),
                .lens = onceIn(2) ? kLens : kLargeInputLens,
                .pitch = onceIn(4) ? 1000 : width};
    }
    // Gives it a value that no camera has.
    void spoil(LensView& view)
    {
        const int ints[] = {0,          1,      -1,    2,         1000,     32767,
                            32768,      65536,  46341, (1 << 24), 16777219, -1000000,
                            2147483647, -32768, -7,    -640,      -32769,   -2147483647 - 1};
        const float floats[] = {0.0f,   -0.0f, 1e-40f, -1e-40f, 1e-30f,    1e30f,
                                -3e38f, kInf,  -kInf,  kNaN,    anyFloat()};
        float* const fields[] = {&view.si,        &view.co,        &view.P,        &view.Q,
                                 &view.centreRow, &view.centreCol, &view.halfWidth};
        switch (between(0, 5)) {
        case 0:
            view.Lr = oneOf(ints);
            break;
        case 1:
            view.pitch = oneOf(ints);
            break;
        case 2:
            view.lastRow = float(oneOf(ints));
            break;
        case 3:
            view.lastCol = float(oneOf(ints));
            break;
        default:
            *oneOf(fields) = oneOf(floats);
        }
    }
    float someKeystone()
    {
        const float odd[] = {0.0f,    -0.0f, -1.0f, 0x1p-20f, 0x1p-21f, 1e-40f,
                             0x1p20f, 1e30f, kInf,  -kInf,    kNaN};
        if (onceIn(3)) return 1;
        if (onceIn(4)) return oneOf(odd);
        return float(between(-1000, 3000)) / 1000;
    }

    // Maps `count` pixels with the variant and as it is defined, into tables of equal content.
    void expectEqualRows(const LensView& view, const LensRow& row, const std::vector<float>& places)
    {
        const std::size_t bytes = places.size() * kMapEntryBytes;
        const std::size_t offset = std::size_t(between(0, 15));
        constexpr std::size_t kAround = 64;
        expected.resize(offset + bytes + kAround);
        for (auto& byte : expected)
            byte = static_cast<unsigned char>(random());
        actual = expected;
        const int count = int(places.size());
        const bool without = mapLensRow(view, row, places.data(), count, expected.data() + offset);
        ASSERT_EQ(variant()(view, row, places.data(), count, actual.data() + offset), without);
        ASSERT_EQ(actual, expected) << "Ra " << row.Ra << ", m " << row.m << ", " << count;
    }
    std::vector<float> somePlaces(int count)
    {
        std::vector<float> places(static_cast<std::size_t>(count));
        float place = float(between(-100, 100));
        const float step = oneOf({0.25f, 1.0f, 0.4167f, 3.9f, -1.0f, 20.0f});
        for (float& p : places) {
            p = place;
            place = place + step;
        }
        return places;
    }

    std::mt19937 random{1};
    std::vector<unsigned char> expected, actual;
};

INSTANTIATE_TEST_SUITE_P(Variants, LensRows, testing::Values(Isa::sse2, Isa::avx2),
                         [](const auto& isa) { return nameOf(isa.param); });

} // namespace

TEST(LensAngle, OfAFloatIsThatOfFastAtan)
{
    expectEqualAngles(1009);
}

// Takes half a minute: `mapping_tests --gtest_also_run_disabled_tests
// --gtest_filter='LensAngle.*'`.
TEST(LensAngle, DISABLED_OfEveryFloatIsThatOfFastAtan)
{
    expectEqualAngles(1);
}

TEST_P(LensRows, AreThoseOfThePlainCode)
{
    for (int count = 1; count <= 67; ++count)
        for (int n = 0; n < 30; ++n) {
            LensView view = someView();
            if (onceIn(3)) spoil(view);
            const LensRow row{onceIn(20) ? anyFloat() : float(between(-100, 1000)), someKeystone()};
            expectEqualRows(view, row, somePlaces(count));
        }
}

TEST_P(LensRows, OfManyColumnsAreThoseOfThePlainCode)
{
    for (int count : {255, 256, 257, 511, 512, 520, 1000, 1920})
        for (int n = 0; n < 10; ++n)
            expectEqualRows(someView(), {float(between(-100, 1000)), someKeystone()},
                            somePlaces(count));
}

TEST_P(LensRows, MayHaveAnyPlaces)
{
    for (int n = 0; n < 500; ++n) {
        std::vector<float> places(static_cast<std::size_t>(between(8, 24)));
        for (float& place : places)
            place = onceIn(2) ? anyFloat() : float(between(-2000, 2000));
        expectEqualRows(someView(), {float(between(-100, 1000)), someKeystone()}, places);
    }
}

// Where the offset is 0 the radius is minus infinity, and the source the centre.
TEST_P(LensRows, HitTheOpticalAxis)
{
    for (const float m : {1.0f, 0.5f, -0.5f, 1.75f})
        for (const float centre : {0.0f, 640.0f})
            for (const float offset : {0.0f, 1e-30f, 1e-18f, 1e-6f}) {
                LensView view = someView();
                view.si = 0;
                view.co = 1;
                view.P = view.Q = view.centreRow = view.centreCol = centre;
                std::vector<float> places(16);
                for (std::size_t j = 0; j < places.size(); ++j)
                    places[j] = float(int(j) - 5) * offset;
                expectEqualRows(view, {0.0f, m}, places);
            }
}

// Rows and columns of more than 15 bits, and of more than 16.
TEST_P(LensRows, ReachPositionsOfAnySize)
{
    for (const float row : {500.0f, 32700.0f, 32768.0f, 40000.0f, 65500.0f, 100000.0f})
        for (const float col : {500.0f, 32700.0f, 32768.0f, 40000.0f, 65500.0f, 100000.0f}) {
            const LensView view{.si = 0,
                                .co = 1,
                                .P = col,
                                .Q = row,
                                .centreRow = row,
                                .centreCol = col,
                                .Lr = 2000,
                                .halfWidth = 2000,
                                .lastRow = row + 60,
                                .lastCol = col + 60,
                                .lens = kLens,
                                .pitch = 1000};
            for (const float Ra : {-70.0f, 0.5f, 70.0f})
                expectEqualRows(view, {Ra, 1.0f}, somePlaces(200));
        }
}

// A radius counts with its whole pixels, and three more.
TEST_P(LensRows, EndAtTheSameRadius)
{
    for (const int Lr :
         {10, 640, 1024, 1025, 1027, 1 << 22, 1 << 24, (1 << 24) + 1, (1 << 26) + 3}) {
        LensView view{};
        view.co = 1;
        view.Lr = Lr;
        view.lens = kLens;
        // Nothing lies in this input, so the result says whether the place is inside the circle.
        const LensRow row{0, 1};
        const auto inside = [&](float place) { return mapLensRow(view, row, &place, 1, nullptr); };
        float near = float(Lr) * 0.5f, far = float(Lr);
        ASSERT_TRUE(inside(near)) << Lr;
        ASSERT_FALSE(inside(far)) << Lr;
        while (std::nextafter(near, far) < far) {
            const float middle = near + (far - near) / 2;
            (inside(middle) ? near : far) = middle;
        }
        float place = near;
        for (int n = 0; n < 40; ++n)
            place = std::nextafter(place, 0.0f);
        for (int n = 0; n < 80; ++n, place = std::nextafter(place, kInf))
            expectEqualRows(view, row, std::vector<float>(8, place));
    }
}

TEST_P(LensRows, TouchNoByteAroundTheTable)
{
    for (int count : {1, 7, 8, 9, 31, 64, 300}) {
        const std::vector<float> places = somePlaces(count);
        GuardedBuffer table(places.size() * kMapEntryBytes);
        GuardedBuffer input(places.size() * sizeof(float));
        std::memcpy(input.data(), places.data(), input.size());
        const auto* Ca = static_cast<const float*>(static_cast<const void*>(input.data()));
        for (int n = 0; n < 20; ++n)
            variant()(someView(), {float(between(0, 500)), someKeystone()}, Ca, count,
                      table.data());
    }
}
