#include "OutputFile.h"

#include "ToolTestSupport.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lumofe {
namespace {

using test::bytesOf;
using test::errorOf;
using test::readFile;
using test::ScratchFolder;
using Names = std::vector<std::string>;

TEST(OutputFile, AppearsOnlyWhenCommitted)
{
    const ScratchFolder folder;
    OutputFile output(folder.file("a.png"), STDOUT_FILENO);
    output.write("hello");
    output.flush();
    EXPECT_FALSE(std::filesystem::exists(folder.file("a.png")));
    EXPECT_EQ(folder.contents().size(), 1u);
    output.commit();
    EXPECT_EQ(folder.contents(), Names{"a.png"});
    EXPECT_EQ(readFile(folder.file("a.png")), bytesOf("hello"));
}

TEST(OutputFile, WithoutCommitTheOldFileStays)
{
    const ScratchFolder folder;
    test::writeFile(folder.file("a.png"), bytesOf("old"));
    {
        OutputFile output(folder.file("a.png"), STDOUT_FILENO);
        output.write("new");
    }
    EXPECT_EQ(folder.contents(), Names{"a.png"});
    EXPECT_EQ(readFile(folder.file("a.png")), bytesOf("old"));
}

TEST(OutputFile, IsRemovedWhenASignalEndsTheProcess)
{
    const ScratchFolder folder;
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const pid_t child = fork();
        if (child == 0) {
            OutputFile output(folder.file("a.png"), STDOUT_FILENO);
            output.write("half");
            output.flush();
            raise(signal);
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << signal;
        EXPECT_EQ(folder.contents(), Names{}) << signal;
    }
}

TEST(OutputFile, HasTheModeOfAnOrdinaryNewFile)
{
    const ScratchFolder folder;
    test::writeFile(folder.file("ordinary"), {});
    OutputFile(folder.file("a.png"), STDOUT_FILENO).commit();
    struct stat ordinary, written;
    ASSERT_EQ(stat(folder.file("ordinary").c_str(), &ordinary), 0);
    ASSERT_EQ(stat(folder.file("a.png").c_str(), &written), 0);
    EXPECT_EQ(written.st_mode, ordinary.st_mode);
}

TEST(OutputFile, LinksStayLinks)
{
    const ScratchFolder folder;
    test::writeFile(folder.file("real.png"), bytesOf("old"));
    std::filesystem::create_symlink("real.png", folder.file("link.png"));
    OutputFile output(folder.file("link.png"), STDOUT_FILENO);
    output.write("new");
    output.commit();
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link.png")));
    EXPECT_EQ(readFile(folder.file("real.png")), bytesOf("new"));
    EXPECT_EQ(folder.contents(), (Names{"link.png", "real.png"}));
}

TEST(OutputFile, DevicesAreWrittenDirectly)
{
    OutputFile output("/dev/null", STDOUT_FILENO);
    output.write("gone");
    output.commit();
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(OutputFile, FullDiskIsReported)
{
    OutputFile output("/dev/full", STDOUT_FILENO);
    output.write("lost");
    EXPECT_NE(errorOf([&] { output.commit(); }).find("/dev/full: cannot be written"),
              std::string::npos);
}

TEST(OutputFile, UnusablePathsAreNamed)
{
    const ScratchFolder folder;
    const std::string missing = folder.file("none/a.png"), directory = folder.file(".");
    EXPECT_EQ(errorOf([&] {
                  OutputFile output(missing, STDOUT_FILENO);
              }).rfind(missing + ": cannot be created", 0),
              0u);
    EXPECT_NE(errorOf([&] { OutputFile output(directory, STDOUT_FILENO); }).find("is a directory"),
              std::string::npos);
    EXPECT_NE(errorOf([] { OutputFile output("-", -1); }).find("standard output"),
              std::string::npos);
}

} // namespace
} // namespace lumofe
