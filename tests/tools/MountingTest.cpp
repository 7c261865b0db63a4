#include "Mounting.h"

#include "Parse.h"
#include "ToolTestSupport.h"

#include <gtest/gtest.h>
#include <limits>

namespace lumofe {
namespace {

using test::errorOf;

TEST(Mounting, RulesStandAtTheirMount)
{
    for (Mount mount : {Mount::ceiling, Mount::wall, Mount::floor}) {
        const MountRule& rule = mountRule(mount);
        EXPECT_EQ(rule.mount, mount);
        EXPECT_EQ(parseMount(rule.name), mount);
        EXPECT_EQ(errorOf([&] { checkAim({0, rule.defaultTilt, 0}, mount); }), "");
    }
}

TEST(Mounting, RangesDependOnTheMount)
{
    EXPECT_EQ(errorOf([] { checkAim({-22.5, 90, 100}, Mount::ceiling); }), "");
    EXPECT_EQ(errorOf([] { checkAim({360, -90, 0}, Mount::floor); }), "");
    EXPECT_EQ(errorOf([] { checkAim({-90, -90, 50}, Mount::wall); }), "");
    EXPECT_EQ(errorOf([] {
                  checkAim({91, 0, 0}, Mount::wall);
              }),
              "--pan: 91 is outside -90 to 90 degrees, the range of --mount wall");
    EXPECT_EQ(errorOf([] {
                  checkAim({0, -1, 0}, Mount::ceiling);
              }),
              "--tilt: -1 is outside 0 to 90 degrees, the range of --mount ceiling");
    EXPECT_EQ(errorOf([] {
                  checkAim({0, 1, 0}, Mount::floor);
              }),
              "--tilt: 1 is outside -90 to 0 degrees, the range of --mount floor");
    EXPECT_EQ(errorOf([] {
                  checkAim({0, 0, 100.5}, Mount::wall);
              }),
              "--zoom: 100.5 is outside 0 to 100 percent");
    EXPECT_EQ(errorOf([] {
                  checkAim({91, 0, 0}, Mount::wall, "--ptz 3, ");
              }),
              "--ptz 3, pan: 91 is outside -90 to 90 degrees, the range of --mount wall");
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_NE(errorOf([] { checkAim({kNan, 0, 0}, Mount::wall); }), "");
    EXPECT_NE(errorOf([] { checkAim({0, kNan, 0}, Mount::wall); }), "");
    EXPECT_NE(errorOf([] { checkAim({0, 0, kNan}, Mount::wall); }), "");
}

} // namespace
} // namespace lumofe
