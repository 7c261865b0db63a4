// The measured rows as a page.
#ifndef LUMOFE_BENCH_RESULTS_H
#define LUMOFE_BENCH_RESULTS_H

#include "Rows.h"

#include <string>

namespace bench {

// What was measured for one word size, medians.
struct Times {
    double ours = 0, theirs = 0; // milliseconds
    std::string missing;         // why there are none; empty: there are
};

struct Measured {
    const Row* row;
    Times times64, times32;
};

// The Markdown table, its ratios first.
std::string tableOf(const std::vector<Measured>& measured);

// The page: machine, compiler, day and table. `peers` names the versions of what was compared with.
std::string pageOf(const std::vector<Measured>& measured, const std::string& peers);

} // namespace bench

#endif
