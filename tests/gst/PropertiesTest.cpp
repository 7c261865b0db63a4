#include "Properties.h"

#include "GstTestSupport.h"

#include <gtest/gtest.h>
#include <map>

namespace lumofe {
namespace {

TEST(Properties, EveryOneIsDescribedAndChangesWhilePlaying)
{
    test::Pipeline pipeline;
    guint count = 0, ours = 0;
    GParamSpec** specs =
        g_object_class_list_properties(G_OBJECT_GET_CLASS(pipeline.element()), &count);
    for (guint i = 0; i < count; ++i) {
        if (specs[i]->owner_type != G_OBJECT_TYPE(pipeline.element())) continue;
        ++ours;
        EXPECT_GT(std::string(g_param_spec_get_blurb(specs[i])).size(), 15u) << specs[i]->name;
        EXPECT_TRUE(specs[i]->flags & GST_PARAM_MUTABLE_PLAYING) << specs[i]->name;
        const bool number = G_IS_PARAM_SPEC_INT(specs[i]) || G_IS_PARAM_SPEC_DOUBLE(specs[i]);
        EXPECT_EQ(bool(specs[i]->flags & GST_PARAM_CONTROLLABLE), number) << specs[i]->name;
    }
    g_free(specs);
    EXPECT_EQ(ours, 20u);
}

TEST(Properties, ReadBackAsTheyWereSet)
{
    test::Pipeline pipeline("layout=360 mount=floor circle-x=10 circle-y=20 circle-radius=30 "
                            "panorama-offset=-40 pan1=50.5 tilt2=-60 zoom1=70");
    const std::map<const char*, double> expected = {
        {"layout", 2},    {"mount", 2},          {"circle-x", 10},
        {"circle-y", 20}, {"circle-radius", 30}, {"pan1", 50.5},
        {"tilt2", -60},   {"zoom1", 70},         {"panorama-offset", -40}};
    for (const auto& [name, value] : expected)
        EXPECT_EQ(pipeline.number(name), value) << name;
}

TEST(Properties, LayoutsGoByTheirNames)
{
    const std::map<const char*, View> layouts = {{"single", View::single},
                                                 {"quad", View::quad},
                                                 {"360", View::ptz360},
                                                 {"180", View::half180}};
    for (const auto& [name, view] : layouts) {
        test::Pipeline pipeline(std::string("layout=") + name);
        EXPECT_EQ(pipeline.number("layout"), int(view)) << name;
    }
}

TEST(Properties, UntilTheyAreSetTheyTellWhereTheLayoutLooks)
{
    test::Pipeline pipeline("layout=quad mount=floor");
    EXPECT_EQ(pipeline.number("pan2"), 270);
    EXPECT_EQ(pipeline.number("tilt4"), -80);
    EXPECT_EQ(pipeline.number("circle-x"), -1);
    pipeline.set("layout", 8);
    EXPECT_EQ(pipeline.number("tilt1"), -70);
}

TEST(Properties, TheCircleCanBeAutomaticAgain)
{
    test::Pipeline pipeline("circle-radius=300");
    pipeline.set("circle-radius", 5);
    EXPECT_EQ(pipeline.number("circle-radius"), 16) << "the smallest";
    pipeline.set("circle-radius", -1);
    EXPECT_EQ(pipeline.number("circle-radius"), -1);
}

} // namespace
} // namespace lumofe
