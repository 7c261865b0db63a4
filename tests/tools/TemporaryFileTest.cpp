#include "TemporaryFile.h"

#include "ToolTestSupport.h"

#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

namespace lumofe {
namespace {

using test::bytesOf;
using test::errorOf;
using test::ScratchFolder;
using Names = std::vector<std::string>;

TEST(TemporaryFile, IsBesideItsTargetWithItsExtension)
{
    const ScratchFolder folder;
    TemporaryFile file(folder.file("a.b.mp4"));
    EXPECT_NE(file.path(), folder.file("a.b.mp4"));
    EXPECT_TRUE(file.path().starts_with(folder.file("a.b.")));
    EXPECT_TRUE(file.path().ends_with(".mp4"));
    test::writeFile(file.path(), bytesOf("new"));
    file.commit();
    EXPECT_EQ(folder.contents(), Names{"a.b.mp4"});
    EXPECT_EQ(test::readFile(folder.file("a.b.mp4")), bytesOf("new"));
}

TEST(TemporaryFile, AllAreRemovedWhenASignalEndsTheProcess)
{
    const ScratchFolder folder;
    const pid_t child = fork();
    if (child == 0) {
        std::vector<std::unique_ptr<TemporaryFile>> files;
        for (int i = 0; i < 4; ++i)
            files.push_back(
                std::make_unique<TemporaryFile>(folder.file(std::to_string(i) + ".mp4")));
        files[1]->commit();
        raise(SIGTERM);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_EQ(folder.contents(), Names{"1.mp4"});
}

TEST(TemporaryFile, TheLastOneGivesSignalsBack)
{
    const ScratchFolder folder;
    {
        TemporaryFile a(folder.file("a"));
        {
            TemporaryFile b(folder.file("b"));
        }
        const auto handler = std::signal(SIGINT, SIG_DFL);
        EXPECT_NE(handler, SIG_DFL);
        std::signal(SIGINT, handler);
    }
    EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_DFL);
    EXPECT_EQ(folder.contents(), Names{});
}

TEST(CheckAbsent, RefusesFilesWithoutForceOnly)
{
    const ScratchFolder folder;
    test::writeFile(folder.file("a"), {});
    EXPECT_EQ(errorOf([&] { checkAbsent(folder.file("a"), false); }),
              folder.file("a") + ": exists already; give another name, or --force to replace it");
    EXPECT_EQ(errorOf([&] { checkAbsent(folder.file("a"), true); }), "");
    for (const std::string& path : {folder.file("b"), std::string("-"), std::string("/dev/null")})
        EXPECT_EQ(errorOf([&] { checkAbsent(path, false); }), "");
}

} // namespace
} // namespace lumofe
