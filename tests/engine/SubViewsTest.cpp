#include "engine/SubViews.h"

#include <gtest/gtest.h>
#include <set>

using namespace fe;

TEST(SubViews, EveryLayoutHasItsOwnViews)
{
    EXPECT_EQ(viewsOfMode(kModeQuad).size(), 4u);
    EXPECT_EQ(viewsOfMode(kMode360).size(), 2u);
    EXPECT_EQ(viewsOfMode(kModeSingle).size(), 1u);
    for (int mode : {0, 3, 4, 5, 16, -1})
        EXPECT_TRUE(viewsOfMode(mode).empty());
    EXPECT_TRUE(quadViews()[2].aux == &FEDSP::m_nQuad3Aux);
    EXPECT_TRUE(ptz360Views()[0].pan == &FEDSP::m_n360View1Pan);
    EXPECT_TRUE(singleView()[0].zoom == &FEDSP::m_nSingleZoom);
}

TEST(SubViews, NoFieldIsListedTwice)
{
    FEDSP e;
    std::set<const int*> fields;
    for (const SubViewFields& view : allViews())
        for (int FEDSP::*field : {view.pan, view.tilt, view.zoom, view.aux})
            EXPECT_TRUE(fields.insert(&(e.*field)).second);
    EXPECT_EQ(fields.size(), 28u);
}

TEST(SubViews, LayoutsExcludeOneAnother)
{
    FEDSP e;
    for (int mode : {kModeQuad, kMode360, kMode180, kModeSingle}) {
        selectLayout(e, mode);
        EXPECT_EQ(currentMode(e), mode);
        EXPECT_EQ(e.m_bQuad + e.m_b360 + e.m_b180 + e.m_bSingle, 1);
        selectLayout(e, 7);
        EXPECT_EQ(currentMode(e), mode);
    }
    EXPECT_EQ(currentMode(FEDSP()), 0);
}
