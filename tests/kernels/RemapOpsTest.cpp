#include "kernels/RemapOps.h"

#include "GuardedBuffer.h"
#include "mapping/MapEntry.h"

#include <gtest/gtest.h>
#include <random>

using namespace fe;

namespace {

// std::mt19937 in 32 bits everywhere.
class Random {
public:
    explicit Random(std::uint32_t seed) : engine_(seed) {}
    std::uint32_t operator()() { return std::uint32_t(engine_()); }

private:
    std::mt19937 engine_;
};

int between(Random& random, int low, int high)
{
    return low + int(random() % std::uint32_t(high - low + 1));
}

// Tables that a kernel may meet: how their fractions and indices are drawn.
enum class Kind { legal, edges, illegal, blank, high };
constexpr Kind kKinds[] = {Kind::legal, Kind::edges, Kind::illegal, Kind::blank, Kind::high};

std::uint32_t drawFraction(Random& random, Kind kind)
{
    constexpr std::uint32_t kEdges[] = {0, 0, 1, 128, 255, 256};
    switch (kind) {
    case Kind::edges:
        return kEdges[random() % 6];
    case Kind::illegal:
        return random() & 0xFFFF;
    default:
        return random() % 257;
    }
}

// Source and table of one call. Both end at an unreadable page, the source right behind the last
// byte that has a weight; the table's address is odd.
class Call {
public:
    // `pixel` bytes a pixel, rows of `rowBytes`.
    Call(Random& random, Kind kind, int count, int pixel, int rowBytes, int rows)
        : count_(std::size_t(count)), table_(std::size_t(count) * kMapEntryBytes + 1),
          source_(std::size_t(rows * rowBytes))
    {
        const int samples = rows * rowBytes / pixel;
        for (std::size_t k = 0; k < count_; ++k) {
            std::uint32_t fx = drawFraction(random, kind), fy = drawFraction(random, kind);
            const int lowest = kind == Kind::high ? std::max(0, samples - rowBytes / pixel - 4) : 0;
            const int sample = between(random, lowest, samples - 1);
            if (sample + 1 >= samples) fx = 0;
            if (sample + rowBytes / pixel + (fx ? 1 : 0) >= samples) fy = 0;
            if (kind == Kind::blank && random() % 4 != 0)
                storeEntry(table(), k, {0, 0});
            else
                storeEntry(table(), k, {fy | fx << 16, sample * pixel});
        }
        for (std::size_t i = 0; i < source_.size(); ++i)
            source_[i] = static_cast<unsigned char>(random() % 3 ? random() : 255);
    }
    int* table() { return static_cast<int*>(static_cast<void*>(table_.data() + 1)); }
    const unsigned char* source() { return source_.data(); }
    std::int32_t reach() { return reachOf(table(), count_); }

private:
    std::size_t count_;
    GuardedBuffer table_, source_;
};

// For each instruction set beyond the plain code.
class RemapVariants : public testing::TestWithParam<Isa> {
protected:
    void SetUp() override
    {
        if (GetParam() > bestIsa()) GTEST_SKIP() << "no " << nameOf(GetParam()) << " here";
    }
    const RemapOps& ops() const { return remapOps(GetParam()); }

    // Compares run(ops, dst) of this variant and of the plain code, for outputs of so many bytes.
    template <class Run>
    void expectSame(std::size_t size, Run run)
    {
        GuardedBuffer expected(size), actual(size);
        std::fill_n(expected.data(), size, static_cast<unsigned char>(1));
        std::fill_n(actual.data(), size, static_cast<unsigned char>(2));
        run(kRemapPlain, expected.data());
        run(ops(), actual.data());
        for (std::size_t i = 0; i < size; ++i)
            ASSERT_EQ(int(actual[i]), int(expected[i])) << "byte " << i << " of " << size;
    }
};

INSTANTIATE_TEST_SUITE_P(Isas, RemapVariants, testing::Values(Isa::sse2, Isa::ssse3, Isa::avx2),
                         [](const auto& each) { return std::string(nameOf(each.param)); });

} // namespace

TEST_P(RemapVariants, LumaIsThatOfThePlainCode)
{
    Random random(1);
    for (const Kind kind : kKinds)
        for (int count = 0; count <= 67; ++count) {
            SCOPED_TRACE(testing::Message() << int(kind) << " " << count);
            const int stride = between(random, 1, 40);
            // The last entry whose samples are fetched ahead is the table's last.
            const int further = count % 7;
            Call call(random, kind, count + further, 1, stride, between(random, 1, 30));
            const auto n = std::size_t(count), ahead = std::size_t(further) * kMapEntryBytes;
            expectSame(n, [&](const RemapOps& ops, unsigned char* dst) {
                ops.luma(call.source(), dst, call.table(), n, stride, call.reach(), ahead);
            });
            if (HasFatalFailure()) return;
        }
}

TEST_P(RemapVariants, PackedPixelsAreThoseOfThePlainCode)
{
    Random random(2);
    for (const Kind kind : kKinds)
        for (int count = 0; count <= 67; ++count) {
            SCOPED_TRACE(testing::Message() << int(kind) << " " << count);
            const int rowBytes = 3 * between(random, 1, 40);
            const int further = count % 7;
            Call call(random, kind, count + further, 3, rowBytes, between(random, 1, 30));
            const auto n = std::size_t(count), ahead = std::size_t(further) * kMapEntryBytes;
            expectSame(3 * n, [&](const RemapOps& ops, unsigned char* dst) {
                ops.packed(call.source(), dst, call.table(), n, rowBytes, call.reach(), ahead);
            });
            expectSame(3 * n, [&](const RemapOps& ops, unsigned char* dst) {
                ops.packedSwapped(call.source(), dst, call.table(), n, rowBytes, call.reach(),
                                  ahead);
            });
            if (HasFatalFailure()) return;
        }
}

// All weights of a block, with the values that overflow first.
TEST_P(RemapVariants, EveryPairOfFractionsIsExact)
{
    const unsigned char sources[][4] = {{255, 255, 255, 255},
                                        {0, 255, 255, 0},
                                        {255, 0, 0, 255},
                                        {0, 0, 255, 255},
                                        {1, 254, 3, 200}};
    for (const auto& samples : sources) {
        unsigned char source[20];
        std::copy_n(samples, 2, source + 4); // away from the first bytes
        std::copy_n(samples + 2, 2, source + 12);
        std::vector<int> table(2 * 257 * 257);
        std::size_t k = 0;
        for (std::uint32_t fy = 0; fy <= 256; ++fy)
            for (std::uint32_t fx = 0; fx <= 256; ++fx)
                storeEntry(table.data(), k++, {fy | fx << 16, 4});
        expectSame(k, [&](const RemapOps& ops, unsigned char* dst) {
            ops.luma(source, dst, table.data(), k, 8, reachOf(table.data(), k), 0);
        });
        if (HasFatalFailure()) return;
    }
}

TEST_P(RemapVariants, ChromaIndicesAreThoseOfADivision)
{
    Random random(3);
    for (int round = 0; round < 400; ++round) {
        const int shift = between(random, 0, 30);
        const int stride = round < 40 ? round + 1 : 1 + int(random() >> (1 + shift));
        const std::size_t count = random() % 68;
        std::vector<int> table(4 * count + 2);
        for (std::size_t k = 0; k < 2 * count; ++k) {
            const auto any = std::int32_t(random());
            // Around the ends of rows, or anywhere.
            const std::int64_t row =
                std::int64_t(random() % 4096) * stride + between(random, -1, 1);
            const bool near = random() % 2 && row >= 0 && row <= 0x7FFFFFFF;
            const int index = near ? int(row) : (random() % 50 ? any & 0x7FFFFFFF : any);
            storeEntry(table.data(), k, {0, index});
        }
        // One entry short of two for each: the last one may be missing.
        GuardedBuffer exact(count ? (2 * count - 1) * kMapEntryBytes : 0);
        if (count)
            std::copy_n(reinterpret_cast<const unsigned char*>(table.data()), exact.size(),
                        exact.data());
        const auto* entries = static_cast<const int*>(static_cast<const void*>(exact.data()));
        std::vector<std::int32_t> expected(count, -5), actual(count, -6);
        kRemapPlain.chromaIndices(expected.data(), entries, count, Divider(stride));
        ops().chromaIndices(actual.data(), entries, count, Divider(stride));
        ASSERT_EQ(actual, expected) << "stride " << stride;
    }
}

TEST(RemapOps, ReachIsAnIndexThatIsReadWithAllItsNeighbours)
{
    std::vector<int> table(2 * 3);
    storeEntry(table.data(), 0, {0x00010000u, 500});
    storeEntry(table.data(), 1, {0x00010001u, 40});
    storeEntry(table.data(), 2, {0x00000001u, 600});
    EXPECT_EQ(reachOf(table.data(), 3), 40);
    EXPECT_EQ(reachOf(table.data(), 1), -1);
    EXPECT_EQ(reachOf(table.data(), 0), -1);
}
