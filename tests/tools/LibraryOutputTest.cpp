#include "LibraryOutput.h"

#include "OutputFile.h"
#include "ToolTestSupport.h"

#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <unistd.h>

namespace lumofe {
namespace {

using test::bytesOf;
using test::readFile;
using test::ScratchFolder;

// Runs the action with standard output led to a file; returns what arrived there.
test::Bytes captured(const std::function<void()>& action)
{
    const ScratchFolder folder;
    std::fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    const int file = open(folder.file("out").c_str(), O_WRONLY | O_CREAT, 0600);
    dup2(file, STDOUT_FILENO);
    action();
    std::fflush(stdout);
    dup2(saved, STDOUT_FILENO);
    close(saved);
    close(file);
    return readFile(folder.file("out"));
}

TEST(LibraryOutput, PrintedLinesAreDroppedAndOwnOutputArrives)
{
    const test::Bytes out = captured([] {
        std::printf("before ");
        {
            const LibraryOutput library(LibraryOutput::Target::discard);
            std::printf("noise ");
            OutputFile output("-", library.ownOutput());
            output.write("own ");
            output.commit();
            std::printf("noise ");
        }
        std::printf("after");
    });
    EXPECT_EQ(out, bytesOf("before own after"));
}

} // namespace
} // namespace lumofe
