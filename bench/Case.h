// What the benchmarks time: named pieces of work.
#ifndef LUMOFE_BENCH_CASE_H
#define LUMOFE_BENCH_CASE_H

#include <functional>
#include <string>
#include <vector>

namespace bench {

using Work = std::function<void()>;

struct Case {
    std::string name;            // "frame/quad"
    double pixels;               // that one run makes
    std::function<Work()> setUp; // makes what the work needs; the work owns it
};

using Cases = std::vector<Case>;

constexpr int kClipFrames = 100; // of the case "clip/single"

// The library's own.
Cases kernelCases(); // mapping by a caller's table, building tables, resizing
Cases frameCases();  // views and whole frames of camera slots

// Both of the above.
Cases ourCases();

} // namespace bench

#endif
