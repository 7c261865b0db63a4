#include "media/InputStream.h"

#include "ToolTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::Bytes;
using test::bytesOf;
using test::errorOf;
using test::ScratchFolder;

class InputStreamTest : public testing::Test {
protected:
    std::string with(const Bytes& content)
    {
        test::writeFile(folder_.file("in"), content);
        return folder_.file("in");
    }

    ScratchFolder folder_;
};

TEST_F(InputStreamTest, LookingAheadTakesNothing)
{
    InputStream input(with(bytesOf("abcdef")));
    EXPECT_TRUE(input.startsWith("abc"));
    EXPECT_FALSE(input.startsWith("abd"));
    EXPECT_FALSE(input.startsWith("abcdefg"));
    EXPECT_EQ(input.readAll(100), bytesOf("abcdef"));
}

TEST_F(InputStreamTest, ReadsAcrossTheBytesLookedAt)
{
    InputStream input(with(bytesOf("abcdef")));
    input.startsWith("abc");
    Bytes four(4);
    EXPECT_EQ(input.read(four.data(), 4), 4u);
    EXPECT_EQ(four, bytesOf("abcd"));
    EXPECT_EQ(input.read(four.data(), 4), 2u);
    EXPECT_EQ(input.read(four.data(), 4), 0u);
}

TEST_F(InputStreamTest, LinesAreBounded)
{
    InputStream input(with(bytesOf("12345\n\n123456\n")));
    std::string line;
    EXPECT_TRUE(input.readLine(line, 5));
    EXPECT_EQ(line, "12345");
    EXPECT_TRUE(input.readLine(line, 5));
    EXPECT_EQ(line, "");
    EXPECT_NE(errorOf([&] { input.readLine(line, 5); }).find("longer than 5"), std::string::npos);
}

TEST_F(InputStreamTest, HugeFilesAreRefused)
{
    const std::string path = with(Bytes((3 << 20) + 1, 7));
    InputStream small(path), large(path);
    EXPECT_NE(errorOf([&] { small.readAll(3 << 20); }).find("larger than 3 MiB"),
              std::string::npos);
    EXPECT_EQ(large.readAll((3 << 20) + 1).size(), std::size_t(3 << 20) + 1);
}

TEST_F(InputStreamTest, MissingFileAndFolderAreNamed)
{
    EXPECT_EQ(errorOf([&] {
                  InputStream input(folder_.file("none"));
              }).rfind(folder_.file("none") + ": cannot be opened", 0),
              0u);
    EXPECT_NE(errorOf([&] {
                  InputStream input(folder_.file("."));
                  input.startsWith("x");
              }).find("cannot be read"),
              std::string::npos);
}

} // namespace
} // namespace lumofe
