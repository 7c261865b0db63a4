#include "StepQueue.h"

#include <gtest/gtest.h>

using lumofe::viewer::StepQueue;

TEST(StepQueue, IsEmptyAtFirst)
{
    StepQueue queue;
    EXPECT_FALSE(queue.pending());
    EXPECT_FALSE(queue.next());
}

TEST(StepQueue, FractionsAddUpToWholeSteps)
{
    StepQueue queue;
    queue.add(1, 0.75, 0, 0);
    EXPECT_FALSE(queue.pending());
    queue.add(1, 0.75, 0, 0);
    EXPECT_TRUE(queue.pending());
    const auto step = queue.next();
    ASSERT_TRUE(step);
    EXPECT_EQ(step->view, 1);
    EXPECT_EQ(step->step.pan, 1);
    EXPECT_FALSE(queue.next());
    queue.add(1, 0.5, 0, 0); // half a step was left
    EXPECT_EQ(queue.next()->step.pan, 1);
}

TEST(StepQueue, TheSmallerOfPanAndTiltWaitsForTheNextFrame)
{
    StepQueue queue;
    queue.add(1, 3, -5, 2);
    const auto first = queue.next(), second = queue.next();
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->step.pan, 0);
    EXPECT_EQ(first->step.tilt, -5);
    EXPECT_EQ(first->step.zoom, 2);
    EXPECT_EQ(second->step.pan, 3);
    EXPECT_EQ(second->step.tilt, 0);
    EXPECT_EQ(second->step.zoom, 0);
    EXPECT_FALSE(queue.pending());
}

TEST(StepQueue, GivesOneViewAFrame)
{
    StepQueue queue;
    queue.add(4, 1, 0, 0);
    queue.add(2, 0, 1, 0);
    EXPECT_EQ(queue.next()->view, 2);
    EXPECT_EQ(queue.next()->view, 4);
    EXPECT_FALSE(queue.next());
}

TEST(StepQueue, HugeAmountsFitALibraryStep)
{
    StepQueue queue;
    queue.add(1, 1e9, 0, -1e9);
    const auto step = queue.next();
    EXPECT_EQ(step->step.pan, 1000);
    EXPECT_EQ(step->step.zoom, -1000);
}

TEST(StepQueue, ClearForgetsFractionsToo)
{
    StepQueue queue;
    queue.add(1, 1.5, 0.75, 0);
    queue.clear();
    queue.add(1, 0.5, 0.25, 0);
    EXPECT_FALSE(queue.pending());
}
