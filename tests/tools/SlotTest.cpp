#include "Slot.h"

#include "ToolTestSupport.h"

#include <LumoFESDK.h>
#include <gtest/gtest.h>
#include <optional>

namespace lumofe {
namespace {

TEST(Slot, TakesTheLowestFreeOne)
{
    std::optional<Slot> first(std::in_place), second(std::in_place);
    EXPECT_EQ(first->number(), 0);
    EXPECT_EQ(second->number(), 1);
    first.reset();
    EXPECT_EQ(Slot().number(), 0);
    EXPECT_EQ(Slot().number(), 0);
}

TEST(Slot, ClosesTheCamera)
{
    {
        const Slot slot;
        ASSERT_EQ(Initialize(slot.number(), 640, 480, 320, 240, FORMAT_NV12), FE_STATUS_OK);
        EXPECT_NE(m_FEDSP[slot.number()], nullptr);
    }
    EXPECT_EQ(m_FEDSP[0], nullptr);
    EXPECT_EQ(m_EventParam[0], nullptr);
    EXPECT_EQ(m_ViewParam[0], nullptr);
}

TEST(Slot, StaysHeldWhenItsCameraIsClosed)
{
    Slot slot;
    ASSERT_EQ(Initialize(slot.number(), 640, 480, 320, 240, FORMAT_NV12), FE_STATUS_OK);
    slot.close();
    EXPECT_EQ(m_FEDSP[0], nullptr);
    EXPECT_EQ(Slot().number(), 1);
}

TEST(Slot, TheSeventeenthIsRefused)
{
    std::optional<Slot> slots[FE_MAX_CAMERAS];
    for (std::optional<Slot>& slot : slots)
        slot.emplace();
    EXPECT_EQ(test::errorOf([] { Slot one; }),
              "all 16 camera slots of this process are in use; stop another camera first");
    slots[7].reset();
    EXPECT_EQ(Slot().number(), 7);
}

} // namespace
} // namespace lumofe
