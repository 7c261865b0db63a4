#include "FrameQueue.h"

#include <gtest/gtest.h>
#include <thread>

using namespace lumofe::viewer;
using WhenFull = FrameQueue::WhenFull;

TEST(FrameQueue, HandsFramesOnInOrder)
{
    FrameQueue queue(3, WhenFull::wait);
    for (std::uint8_t i = 1; i <= 3; ++i) {
        Frame frame{i};
        EXPECT_TRUE(queue.push(frame));
    }
    Frame shown;
    for (std::uint8_t i = 1; i <= 3; ++i) {
        ASSERT_TRUE(queue.take(shown));
        EXPECT_EQ(shown, Frame{i});
    }
    EXPECT_FALSE(queue.take(shown));
    EXPECT_EQ(shown, Frame{3});
}

TEST(FrameQueue, ExchangesFramesInsteadOfCopyingThem)
{
    FrameQueue queue(2, WhenFull::wait);
    Frame written(100, 1), shown(100, 2);
    const std::uint8_t* const writtenBytes = written.data();
    const std::uint8_t* const shownBytes = shown.data();
    queue.push(written);
    ASSERT_TRUE(queue.take(shown));
    EXPECT_EQ(shown.data(), writtenBytes);
    Frame other(100, 3);
    queue.push(other); // gets what was shown before
    EXPECT_EQ(other.data(), shownBytes);
}

TEST(FrameQueue, KeepsTheNewestFrameOfALiveSource)
{
    FrameQueue queue(1, WhenFull::keepNewest);
    for (std::uint8_t i = 1; i <= 5; ++i) {
        Frame frame{i};
        EXPECT_TRUE(queue.push(frame));
    }
    Frame shown;
    ASSERT_TRUE(queue.take(shown));
    EXPECT_EQ(shown, Frame{5});
    EXPECT_FALSE(queue.take(shown));
}

TEST(FrameQueue, TheDecoderWaitsForRoom)
{
    FrameQueue queue(1, WhenFull::wait);
    Frame first{1}, shown;
    queue.push(first);
    std::thread decoder([&] {
        Frame second{2};
        EXPECT_TRUE(queue.push(second));
    });
    ASSERT_TRUE(queue.take(shown));
    decoder.join();
    ASSERT_TRUE(queue.take(shown));
    EXPECT_EQ(shown, Frame{2});
}

TEST(FrameQueue, CloseEndsTheWait)
{
    FrameQueue queue(1, WhenFull::wait);
    Frame first{1};
    queue.push(first);
    std::thread decoder([&] {
        Frame second{2};
        EXPECT_FALSE(queue.push(second));
        EXPECT_EQ(second, Frame{2});
    });
    queue.close();
    decoder.join();
}
