#include "OutputKind.h"

#include "ToolTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::errorOf;

TEST(OutputKind, FollowsTheExtension)
{
    EXPECT_EQ(outputKind("a.png"), OutputKind::png);
    EXPECT_EQ(outputKind("dir.y4m/a.JPG"), OutputKind::jpeg);
    EXPECT_EQ(outputKind("a.jpeg"), OutputKind::jpeg);
    EXPECT_EQ(outputKind("a.bmp"), OutputKind::bmp);
    EXPECT_EQ(outputKind("a.Y4M"), OutputKind::video);
    EXPECT_EQ(outputKind("-"), OutputKind::sameAsInput);
    for (const char* name : {"a.gif", "png", "a.", "a"})
        EXPECT_NE(errorOf([&] { outputKind(name); }).find("end the name in"), std::string::npos);
}

} // namespace
} // namespace lumofe
