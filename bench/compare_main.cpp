// Times the library's cases against others' in turn and prints a table:
//
//     bench_compare [--rounds N] [--page FILE] OURS_64 OURS_32 PEERS [ROW...]
//
// The first three are the programs that serve the cases. Rows are chosen by name; without any, all
// are measured. --page writes the page of results.
#include "Process.h"
#include "Results.h"
#include "Rows.h"
#include "V360.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace {

using namespace bench;

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Options {
    int rounds = 25;
    std::string page;
    std::vector<std::string> programs;
    std::vector<const Row*> rows;
};

const Row* rowNamed(const std::string& name)
{
    const auto row =
        std::find_if(kRows.begin(), kRows.end(), [&](const Row& r) { return name == r.name; });
    if (row != kRows.end()) return &*row;
    std::string names;
    for (const Row& r : kRows)
        names += std::string(" ") + r.name;
    throw UsageError("there is no row " + name + "; the rows are" + names);
}

Options parse(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const bool isOption = argument == "--rounds" || argument == "--page";
        if (isOption && i + 1 == argc) throw UsageError(argument + " needs a value");
        if (argument == "--rounds") {
            options.rounds = std::atoi(argv[++i]);
            if (options.rounds < 1)
                throw UsageError(std::string("--rounds needs a number from 1 on, not ") + argv[i]);
        } else if (argument == "--page") {
            options.page = argv[++i];
        } else if (options.programs.size() < 3) {
            options.programs.push_back(argument);
        } else {
            options.rows.push_back(rowNamed(argument));
        }
    }
    if (options.programs.size() < 3) throw UsageError("three programs are needed");
    if (!options.page.empty() && !options.rows.empty())
        throw UsageError("--page needs all rows; leave out their names");
    if (options.rows.empty())
        for (const Row& row : kRows)
            options.rows.push_back(&row);
    return options;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

class Comparison {
public:
    Comparison(const std::vector<std::string>& programs, int rounds)
        : ours64_(programs[0]), ours32_(programs[1]), peers_(programs[2]), rounds_(rounds)
    {
    }

    Measured measure(const Row& row)
    {
        Measured result{&row, {}, {}};
        std::vector<Runner> runners{
            {&result.times64.ours, &result.times64, asks(ours64_, row.ours)},
            {&result.times32.ours, &result.times32, asks(ours32_, row.ours)}};
        int rounds = rounds_;
        switch (row.against) {
        case Against::itself:
            runners.push_back({&result.times64.theirs, &result.times64, asks(ours64_, row.theirs)});
            runners.push_back({&result.times32.theirs, &result.times32, asks(ours32_, row.theirs)});
            break;
        case Against::opencv:
            runners.push_back({&result.times64.theirs, nullptr, asks(peers_, row.theirs)});
            break;
        case Against::v360:
            runners.push_back({&result.times64.theirs, nullptr,
                               [this, &row] { return v360_.milliseconds(row.theirs); }});
            rounds = std::min(rounds, 5); // of some seconds each
            break;
        }
        runRounds(runners, rounds);
        if (row.against != Against::itself) result.times32.theirs = result.times64.theirs;
        for (Worker* worker : {&ours64_, &ours32_, &peers_})
            worker->ask("close");
        return result;
    }

private:
    struct Runner {
        double* median;
        Times* ours; // what lacks when it cannot run; null: nothing may lack
        std::function<double()> run;
        std::vector<double> times = {};
    };

    static std::function<double()> asks(Worker& worker, const std::string& request)
    {
        return [&worker, request] { return worker.milliseconds(request); };
    }

    // The first round only sets up.
    static void runRounds(std::vector<Runner>& runners, int rounds)
    {
        for (int round = 0; round <= rounds; ++round)
            for (Runner& runner : runners) {
                if (runner.ours && !runner.ours->missing.empty()) continue;
                try {
                    const double time = runner.run();
                    if (round > 0) runner.times.push_back(time);
                } catch (const std::runtime_error& e) {
                    if (round > 0 || !runner.ours) throw;
                    runner.ours->missing = e.what();
                }
            }
        for (Runner& runner : runners)
            if (!runner.times.empty()) *runner.median = median(runner.times);
    }

    Worker ours64_, ours32_, peers_;
    V360 v360_;
    int rounds_;
};

void run(const Options& options)
{
    // "ffmpeg version 5.1 Copyright ..."
    std::istringstream ffmpeg(firstLineOf({"ffmpeg", "-version"}));
    std::string version;
    ffmpeg >> version >> version >> version;
    const std::string peers =
        "OpenCV " + firstLineOf({options.programs[2], "--version"}) + " and FFmpeg " + version;
    std::vector<Measured> measured;
    Comparison comparison(options.programs, options.rounds);
    for (const Row* row : options.rows) {
        std::cerr << "measuring " << row->name << '\n';
        measured.push_back(comparison.measure(*row));
    }
    std::cout << tableOf(measured);
    if (options.page.empty()) return;
    std::ofstream page(options.page);
    page << pageOf(measured, peers);
    if (!page.flush()) throw std::runtime_error("cannot write " + options.page);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        run(parse(argc, argv));
        return 0;
    } catch (const UsageError& e) {
        std::cerr << "bench_compare: " << e.what()
                  << "\nusage: bench_compare [--rounds N] [--page FILE] OURS_64 OURS_32 PEERS "
                     "[ROW...]\n";
        return 2;
    } catch (const std::exception& e) {
        std::cerr << "bench_compare: " << e.what() << '\n';
        return 1;
    }
}
