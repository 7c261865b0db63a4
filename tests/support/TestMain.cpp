// The library prints while it works. Tests that look at its lines capture them; elsewhere they
// would bury the test report, so the report goes to the original output and the lines nowhere.
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

// Prints a line for each test that failed or was skipped, and the totals.
class Report : public testing::EmptyTestEventListener {
public:
    explicit Report(std::FILE* out) : out_(out) {}

    void OnTestPartResult(const testing::TestPartResult& result) override
    {
        if (result.type() == testing::TestPartResult::kSuccess) return;
        std::fprintf(out_, "%s:%d: %s\n", result.file_name() ? result.file_name() : "?",
                     result.line_number(), result.message());
    }
    void OnTestEnd(const testing::TestInfo& test) override
    {
        const testing::TestResult& result = *test.result();
        if (result.Passed()) return;
        std::fprintf(out_, "%s %s.%s\n", result.Skipped() ? "SKIPPED" : "FAILED",
                     test.test_suite_name(), test.name());
        std::fflush(out_);
    }
    void OnTestProgramEnd(const testing::UnitTest& unit) override
    {
        std::fprintf(out_, "%d passed, %d failed, %d skipped\n", unit.successful_test_count(),
                     unit.failed_test_count(), unit.skipped_test_count());
        std::fflush(out_);
    }

private:
    std::FILE* out_;
};

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests)) {
        std::FILE* out = fdopen(dup(1), "w");
        const int null = open("/dev/null", O_WRONLY);
        if (!out || null < 0) return 2;
        dup2(null, 1);
        close(null);
        testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
        delete listeners.Release(listeners.default_result_printer());
        listeners.Append(new Report(out));
    }
    const int result = RUN_ALL_TESTS();
    const bool ranNone = testing::UnitTest::GetInstance()->test_to_run_count() == 0;
    return result != 0 || (ranNone && !testing::GTEST_FLAG(list_tests)) ? 1 : 0;
}
