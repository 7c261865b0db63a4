#include "video/ChildProcess.h"

#include "ToolTestSupport.h"
#include "video/Transfers.h"

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace lumofe {
namespace {

using Bytes = test::Bytes;
using Direction = Transfer::Direction;

std::vector<std::string> shell(const std::string& script)
{
    return {"/bin/sh", "-c", script};
}

TEST(ChildProcess, TakesItsInputAndGivesItsOutput)
{
    ChildProcess child(shell("cat; echo err >&2"), {.input = true, .output = true});
    // More than both pipes hold: reading and writing must go on at once.
    Bytes sent(5'000'000), got(sent.size());
    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i] = std::uint8_t(i * 7 + i / 1000);
    Transfer write{child.input(), Direction::write, sent.data(), sent.size()};
    Transfer read{child.output(), Direction::read, got.data(), got.size()};
    Transfer* transfers[] = {&write, &read};
    ChildProcess* programs[] = {&child};
    TransferTimes times;
    carryOut(transfers, programs, -1, times);
    EXPECT_EQ(got, sent);
    EXPECT_FALSE(read.ended || write.ended);
    EXPECT_GT(times.calls.wall, 0);
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(child.log(), "err\n");
}

TEST(ChildProcess, TellsExitStatusAndProcessorTime)
{
    ChildProcess child(shell("i=0; while [ $i -lt 20000 ]; do i=$((i+1)); done; exit 7"), {});
    EXPECT_EQ(child.wait(), 7);
    EXPECT_EQ(child.wait(), 7);
    EXPECT_GT(child.processorSeconds(), 0);
    ChildProcess killed(shell("kill -TERM $$"), {});
    EXPECT_EQ(killed.wait(), 128 + SIGTERM);
}

TEST(ChildProcess, TakesSignalsThatThisProgramHoldsBack)
{
    sigset_t held, before;
    sigemptyset(&held);
    sigaddset(&held, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &held, &before);
    ChildProcess child(shell("kill -TERM $$"), {});
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(child.wait(), 128 + SIGTERM);
}

TEST(ChildProcess, MissingProgramsAreNamed)
{
    const std::string error = test::errorOf([] { ChildProcess({"/none/ffmpeg", "-x"}, {}); });
    EXPECT_EQ(error.rfind("/none/ffmpeg: cannot be run (No such file", 0), 0u) << error;
    EXPECT_NE(error.find("--ffmpeg"), std::string::npos);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1); // no process is left behind
}

TEST(ChildProcess, LongLogsKeepTheirEnds)
{
    ChildProcess child(
        shell("echo begin >&2; head -c 3000000 /dev/zero | tr '\\0' x >&2; echo end >&2"), {});
    EXPECT_EQ(child.wait(), 0);
    EXPECT_LE(child.log().size(), 100'000u);
    EXPECT_TRUE(child.log().starts_with("begin\n"));
    EXPECT_TRUE(child.log().ends_with("end\n"));
}

TEST(ChildProcess, DescriptorThreeNeverHoldsItUp)
{
    ChildProcess child(shell("echo head >&3; head -c 3000000 /dev/zero >&3; echo out"),
                       {.output = true, .third = true});
    char text[4] = {};
    Transfer read{child.output(), Direction::read, reinterpret_cast<std::uint8_t*>(text), 4};
    Transfer* transfer = &read;
    ChildProcess* program = &child;
    TransferTimes times;
    carryOut({&transfer, 1}, {&program, 1}, -1, times);
    EXPECT_EQ(std::string(text, 4), "out\n");
    EXPECT_EQ(child.head().substr(0, 5), "head\n");
    EXPECT_LE(child.head().size(), 5000u);
}

TEST(ChildProcess, WritingToAnEndedProgramEndsTheTransfer)
{
    ChildProcess child(shell("exec <&-; sleep 0.05"), {.input = true});
    Bytes bytes(3'000'000);
    Transfer write{child.input(), Direction::write, bytes.data(), bytes.size()};
    Transfer* transfer = &write;
    ChildProcess* program = &child;
    TransferTimes times;
    carryOut({&transfer, 1}, {&program, 1}, -1, times);
    EXPECT_TRUE(write.ended);
    EXPECT_FALSE(write.pending());
}

TEST(ChildProcess, IsInAGroupOfItsOwnAndEndsWithItsObject)
{
    const test::ScratchFolder folder;
    const std::string file = folder.file("group");
    pid_t group = 0;
    {
        ChildProcess child(shell("ps -o pgid= -p $$ 2>/dev/null || awk '{print $5}' /proc/$$/stat;"
                                 " exec sleep 100"),
                           {.output = true});
        std::uint8_t text[16] = {};
        Transfer read{child.output(), Direction::read, text, 2};
        Transfer* transfer = &read;
        TransferTimes times;
        carryOut({&transfer, 1}, {}, -1, times);
        const ssize_t more = ::read(child.output(), text + 2, sizeof text - 3);
        ASSERT_GE(more, 0);
        group = pid_t(std::stol(std::string(reinterpret_cast<char*>(text))));
        EXPECT_NE(group, getpgrp());
        EXPECT_EQ(kill(group, 0), 0);
    }
    EXPECT_NE(kill(group, 0), 0);
}

TEST(ChildProcess, IsKilledWhenPatienceEnds)
{
    ChildProcess child(shell("trap '' TERM; echo; while :; do sleep 0.01; done"), {.output = true});
    std::uint8_t ready = 0;
    Transfer read{child.output(), Direction::read, &ready, 1};
    Transfer* transfer = &read;
    TransferTimes times;
    carryOut({&transfer, 1}, {}, -1, times);
    child.signal(SIGTERM);
    EXPECT_EQ(child.wait(100), 128 + SIGKILL);
}

} // namespace
} // namespace lumofe
