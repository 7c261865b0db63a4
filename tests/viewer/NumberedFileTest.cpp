#include "NumberedFile.h"

#include "ToolTestSupport.h"

#include <gtest/gtest.h>

using namespace lumofe::test;
using lumofe::viewer::createNumbered;

TEST(NumberedFile, CountsUpAndLeavesWhatIsThere)
{
    const ScratchFolder folder;
    writeFile(folder.file("lumofe-view-0002.png"), bytesOf("mine"));
    EXPECT_EQ(createNumbered(folder.file(""), ".png"), folder.file("lumofe-view-0001.png"));
    EXPECT_EQ(createNumbered(folder.file(""), ".png"), folder.file("lumofe-view-0003.png"));
    EXPECT_EQ(createNumbered(folder.file(""), ".mp4"), folder.file("lumofe-view-0001.mp4"));
    EXPECT_EQ(readFile(folder.file("lumofe-view-0002.png")), bytesOf("mine"));
}

TEST(NumberedFile, SaysWhereItCannotWrite)
{
    const std::string error = errorOf([] { createNumbered("/no/such/folder", ".png"); });
    EXPECT_NE(error.find("/no/such/folder/lumofe-view-0001.png: cannot be created"),
              std::string::npos);
    EXPECT_NE(error.find("--save-to"), std::string::npos);
}
