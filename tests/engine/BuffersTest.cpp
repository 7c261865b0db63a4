#include "engine/Buffers.h"

#include "Frames.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <malloc.h>

using namespace fe;

namespace {

FEDSP& initialised(FEDSP& e, int inW, int inH)
{
    e.FE_Initialize(0, inW, inH, 4);
    return e;
}

std::array<BufferSize, kBufferCount> planFor(int inW, int inH, int screenW, int screenH)
{
    FEDSP e;
    return planBuffers(initialised(e, inW, inH), inW, inH, screenW, screenH).value();
}

// Leaves freed blocks of all sizes behind whose bytes are not 0, and has the allocator reuse them
// rather than ask the system for clean pages.
void dirtyTheHeap()
{
    mallopt(M_MMAP_THRESHOLD, 1 << 28);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    for (int round = 0; round < 2; ++round) {
        std::vector<Bytes> blocks;
        for (std::size_t size = 1 << 16; size <= 1 << 23; size *= 2)
            for (int i = 0; i < 3; ++i)
                blocks.emplace_back(size, static_cast<unsigned char>(0xD1));
    }
}

// An engine that frees its buffers.
struct OwningEngine : FEDSP {
    ~OwningEngine() { DeleteAccess_ctr_Mem(); }
};

} // namespace

TEST(Buffers, SizesFor1280x1024On800x600)
{
    const auto plan = planFor(1280, 1024, 800, 600);
    EXPECT_EQ(plan[kStaged].carved, 1280 * 1024 * 2);
    EXPECT_EQ(plan[kSubMapA].carved, 160000 * 8);
    EXPECT_EQ(plan[kSubMapB].carved, 160000 * 8);
    EXPECT_EQ(plan[kMapTable].carved, 864000 * 8); // 1080 * 800
    EXPECT_EQ(plan[kPanoImage].carved, 864000 * 2);
    EXPECT_EQ(plan[kViewImage].carved, 800 * 800 * 2);
    EXPECT_EQ(plan[kWorkImageA].carved, 864000 * 2);
    EXPECT_EQ(plan[kMapWork].carved, 864000 * 24);
}

TEST(Buffers, AScreenLargerThanTheInputFallsBackToTheInputsSize)
{
    const auto plan = planFor(1280, 1024, 1920, 1080);
    EXPECT_EQ(plan[kViewImage].carved, 1280 * 1280 * 2);
    EXPECT_EQ(plan[kMapTable].carved, 1280 * 1024 * 8);
    // Taller alone is enough.
    EXPECT_EQ(planFor(1280, 720, 1024, 768)[kViewImage].carved, 1280 * 1280 * 2);
}

TEST(Buffers, AreasRoundDown)
{
    const auto plan = planFor(1280, 1024, 801, 601);
    EXPECT_EQ(plan[kSubMapA].carved, (601 * 2 / 3) * 400 * 8);
}

TEST(Buffers, ALargeRadiusWidensThePanorama)
{
    FEDSP e;
    initialised(e, 1280, 1024).m_nRadius = 900;
    EXPECT_EQ(planBuffers(e, 1280, 1024, 800, 600).value()[kMapTable].carved, 1080 * 900 * 8);
    e.m_nRadius = 799;
    EXPECT_EQ(planBuffers(e, 1280, 1024, 800, 600).value()[kMapTable].carved, 1080 * 800 * 8);
}

TEST(Buffers, PanoramaHeightsBySizeOfTheInput)
{
    FEDSP small, large;
    planBuffers(initialised(small, 1280, 1024), 1280, 1024, 800, 600);
    EXPECT_EQ(small.m_nPanoHSmall, 1080);
    EXPECT_EQ(small.m_nPanoHLarge, 0);
    EXPECT_EQ(small.m_nPanoH, 1080);
    EXPECT_EQ(small.m_nPanoH0, 720);
    planBuffers(initialised(large, 1281, 1024), 1281, 1024, 800, 600);
    EXPECT_EQ(large.m_nPanoHSmall, 0);
    EXPECT_EQ(large.m_nPanoHLarge, 1080);
    EXPECT_EQ(large.m_nPanoH, 1080);
}

TEST(Buffers, HeapBuffersHoldWhatCarvedOnesDoAndMore)
{
    for (auto [inW, inH] : {std::pair{320, 240}, {1280, 1024}, {1281, 721}, {4096, 4096}})
        for (auto [screenW, screenH] :
             {std::pair{0, 0}, {1, 1}, {800, 600}, {1080, 1920}, {4096, 4096}})
            for (const BufferSize& size : planFor(inW, inH, screenW, screenH))
                EXPECT_GE(size.heap, size.carved);
}

TEST(Buffers, AllocationClearsEverythingButTheWorkTablesTail)
{
    dirtyTheHeap();
    OwningEngine e;
    initialised(e, 320, 240);
    ASSERT_EQ(e.MemoryAllocated_AccessCtr(320, 240, 400, 300), 0);
    EXPECT_EQ(e.m_nScreenW, 400);
    EXPECT_EQ(e.m_nScreenH, 300);
    EXPECT_EQ(e.m_fScreenScaleX, 0.5f);
    EXPECT_EQ(e.m_fScreenScaleY, 0.5f);
    EXPECT_TRUE(hasBuffers(e));
    for (int b = 0; b < kMapWork; ++b) {
        const auto* p = static_cast<unsigned char*>(bufferAddress(e, Buffer(b)));
        EXPECT_TRUE(std::all_of(p, p + e.m_nCapacity[b], [](unsigned char c) { return c == 0; }))
            << b;
    }
    const auto* work = reinterpret_cast<unsigned char*>(e.m_pMapWork);
    const std::size_t cleared = 8 * 1080 * 200;
    EXPECT_TRUE(std::all_of(work, work + cleared, [](unsigned char c) { return c == 0; }));
}

TEST(Buffers, AllocationKeepsBuffersThatAreThere)
{
    OwningEngine e;
    initialised(e, 320, 240);
    ASSERT_EQ(e.MemoryAllocated_AccessCtr(320, 240, 320, 240), 0);
    unsigned char* const staged = e.m_pStaged;
    const std::size_t capacity = e.m_nCapacity[kStaged];
    ASSERT_EQ(e.MemoryAllocated_AccessCtr(640, 480, 640, 480), 0);
    EXPECT_EQ(e.m_pStaged, staged);
    EXPECT_EQ(e.m_nCapacity[kStaged], capacity);
    EXPECT_EQ(e.m_nScreenW, 640);
}

TEST(Buffers, SizesThatCannotBeServedFail)
{
    for (auto [screenW, screenH] : {std::pair{-800, 600},
                                    {800, -600},
                                    {-800, -600},
                                    {30000, 30000},
                                    {2147483647, 2147483647}}) {
        OwningEngine e;
        initialised(e, 1280, 1024);
        EXPECT_EQ(e.MemoryAllocated_AccessCtr(1280, 1024, screenW, screenH), 1);
        EXPECT_EQ(e.MemoryAllocated_DSPBuff_Estimate(1280, 1024, screenW, screenH), -1);
        EXPECT_FALSE(hasBuffers(e));
    }
}

// Inputs that no slot has, and fields that a host has written to.
TEST(Buffers, SizesWhoseProductsOverflowFail)
{
    constexpr int kMost = 2147483647;
    struct Case {
        int inW, inH, screenW, screenH, panoBase, radius;
    };
    for (const Case& c :
         {Case{kMost, 1, 1, kMost, 720, 640}, Case{1, kMost, kMost, 1, 720, 640},
          Case{kMost, 1, kMost, 1, 720, 640}, Case{1, kMost, 1, 1, 720, 640},
          Case{1280, 1024, 800, 600, kMost, 640}, Case{1280, 1024, 800, 600, kMost, kMost},
          Case{1280, 1024, 800, 600, 720, kMost}}) {
        OwningEngine e;
        initialised(e, 1280, 1024);
        e.m_nPanoBase = c.panoBase;
        e.m_nRadius = c.radius;
        EXPECT_EQ(e.MemoryAllocated_AccessCtr(c.inW, c.inH, c.screenW, c.screenH), 1);
        EXPECT_EQ(e.MemoryAllocated_DSPBuff_Estimate(c.inW, c.inH, c.screenW, c.screenH), -1);
        EXPECT_FALSE(hasBuffers(e));
    }
}

TEST(Buffers, APanoramaOfLessThanNoRowsTakesNoRoom)
{
    FEDSP e;
    initialised(e, 1280, 1024).m_nPanoBase = -2147483647;
    EXPECT_EQ(planBuffers(e, 1280, 1024, 800, 600).value()[kMapTable].carved, 800 * 600 * 8);
}

TEST(Buffers, TheEstimateLeavesOutTheWorkTable)
{
    FEDSP e;
    initialised(e, 1280, 1024);
    EXPECT_EQ(e.MemoryAllocated_DSPBuff_Estimate(1280, 1024, 800, 600),
              2 * (1280 * 1024 + 8 * 160000 + 6 * 864000 + 800 * 800));
    EXPECT_EQ(e.m_nPanoH, 1080);
    EXPECT_EQ(e.m_nScreenW, 800);
}

TEST(Buffers, ABlockOfTheEstimatedSizeFailsOnTheWorkTable)
{
    FEDSP e;
    initialised(e, 320, 240);
    const int estimate = e.MemoryAllocated_DSPBuff_Estimate(320, 240, 320, 240);
    Bytes block(std::size_t(estimate), 0xEE);
    EXPECT_EQ(e.MemoryAllocated_AccessCtr_DSP(320, 240, 320, 240, block.data(),
                                              static_cast<unsigned int>(estimate)),
              1);
    EXPECT_EQ(e.m_pMapWork, nullptr);
    EXPECT_EQ(e.m_pWorkImageA, nullptr); // it would end at the block's very end
    EXPECT_NE(e.m_pViewImage, nullptr);
    e.DeleteAccess_ctr_Mem();
}

TEST(Buffers, TheBlockIsCarvedInOrderWithoutGaps)
{
    FEDSP e;
    initialised(e, 320, 240);
    const int estimate = e.MemoryAllocated_DSPBuff_Estimate(320, 240, 320, 240);
    const std::size_t area = 1080 * 200;
    const std::size_t size = std::size_t(estimate) + 24 * area + 1;
    Bytes block(size, 0xEE);
    const auto carve = [&](std::size_t bytes) {
        e.DeleteAccess_ctr_Mem();
        return e.MemoryAllocated_AccessCtr_DSP(320, 240, 320, 240, block.data(),
                                               static_cast<unsigned int>(bytes));
    };
    EXPECT_EQ(carve(size - 1), 1); // the spare byte is needed
    ASSERT_EQ(carve(size), 0);
    const auto offset = [&](Buffer b) {
        return static_cast<unsigned char*>(bufferAddress(e, b)) - block.data();
    };
    const auto plan = planFor(320, 240, 320, 240);
    std::ptrdiff_t expected = 0;
    for (int b = 0; b < kBufferCount; ++b) {
        EXPECT_EQ(offset(Buffer(b)), expected) << b;
        EXPECT_EQ(std::int64_t(e.m_nCapacity[b]), plan[std::size_t(b)].carved);
        expected += std::ptrdiff_t(plan[std::size_t(b)].carved);
    }
    EXPECT_TRUE(std::all_of(block.begin(), block.begin() + offset(kMapWork),
                            [](unsigned char c) { return c == 0; }));
    EXPECT_TRUE(std::all_of(block.begin() + offset(kMapWork), block.end(),
                            [](unsigned char c) { return c == 0xEE; }));
    EXPECT_EQ(e.m_fScreenScaleX, 1.0f); // not set by this variant
    e.DeleteAccess_ctr_Mem();           // forgets them, frees nothing
    EXPECT_EQ(e.m_pStaged, nullptr);
}

TEST(Buffers, NoBlockIsNoSuccess)
{
    FEDSP e;
    initialised(e, 320, 240);
    EXPECT_EQ(e.MemoryAllocated_AccessCtr_DSP(320, 240, 320, 240, nullptr, 0), 1);
}

TEST(Buffers, DeletingTwiceIsHarmlessAndFreesSparePointers)
{
    FEDSP e;
    initialised(e, 320, 240);
    ASSERT_EQ(e.MemoryAllocated_AccessCtr(320, 240, 320, 240), 0);
    for (unsigned char*& spare : e.m_pSpare)
        spare = new unsigned char[10]; // the leak checker sees whether they are freed
    e.DeleteAccess_ctr_Mem();
    for (unsigned char* spare : e.m_pSpare)
        EXPECT_EQ(spare, nullptr);
    EXPECT_FALSE(hasBuffers(e));
    e.DeleteAccess_ctr_Mem();
}

TEST(Buffers, FillingStaysInsideTheBuffer)
{
    OwningEngine e;
    initialised(e, 320, 240);
    fillBuffer(e, kStaged, 100, 7); // not there yet
    ASSERT_EQ(e.MemoryAllocated_AccessCtr(320, 240, 320, 240), 0);
    fillBuffer(e, kStaged, std::int64_t(1) << 40, 7);
    EXPECT_EQ(e.m_pStaged[e.m_nCapacity[kStaged] - 1], 7);
    fillBuffer(e, kStaged, -5, 9);
    EXPECT_EQ(e.m_pStaged[0], 7);
}
