#include "video/Interruption.h"

#include "ToolTestSupport.h"
#include "video/Transfers.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>

namespace lumofe {
namespace {

TEST(Interruption, TheFirstSignalIsTakenNoteOf)
{
    for (int signal : {SIGINT, SIGTERM}) {
        const Interruption interruption;
        pollfd waiting{interruption.descriptor(), POLLIN, 0};
        EXPECT_FALSE(interruption.requested());
        EXPECT_EQ(poll(&waiting, 1, 0), 0);
        raise(signal);
        EXPECT_TRUE(interruption.requested());
        EXPECT_EQ(poll(&waiting, 1, 0), 1);
    }
}

TEST(Interruption, TheSecondSignalDoesWhatItDidBefore)
{
    const pid_t child = fork();
    if (child == 0) {
        const Interruption interruption;
        raise(SIGINT);
        raise(SIGINT);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT);
}

TEST(Interruption, IgnoredSignalsStayIgnored)
{
    std::signal(SIGTERM, SIG_IGN);
    {
        const Interruption interruption;
        raise(SIGTERM);
        EXPECT_FALSE(interruption.requested());
    }
    EXPECT_EQ(std::signal(SIGTERM, SIG_DFL), SIG_IGN);
}

TEST(Interruption, CallsReadingOffButNotWriting)
{
    const Interruption interruption;
    ChildProcess silent({"sleep", "100"}, {.output = true});
    ChildProcess sink({"/bin/sh", "-c", "sleep 0.1; cat >/dev/null"}, {.input = true});
    test::Bytes in(10), out(3'000'000);
    Transfer read{silent.output(), Transfer::Direction::read, in.data(), in.size()};
    Transfer write{sink.input(), Transfer::Direction::write, out.data(), out.size()};
    Transfer* transfers[] = {&read, &write};
    TransferTimes times;
    raise(SIGINT);
    carryOut(transfers, {}, interruption.descriptor(), times);
    EXPECT_TRUE(read.ended);
    EXPECT_EQ(write.done, out.size());
}

} // namespace
} // namespace lumofe
