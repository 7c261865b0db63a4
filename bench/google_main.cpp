// The library's cases under Google Benchmark, with each instruction set that the processor has.
#include "Camera.h"
#include "Case.h"
#include "kernels/Isa.h"

#include <benchmark/benchmark.h>

namespace {

void run(benchmark::State& state, const bench::Case& c, fe::Isa isa)
{
    const bench::QuietStdout quiet;
    fe::limitIsa(isa);
    const bench::Work work = c.setUp();
    for (auto _ : state)
        work();
    // Printed as the time of one: "p" is pico, so 900p is 0.9 ns.
    state.counters["s/pixel"] = benchmark::Counter(
        c.pixels, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    for (const bench::Case& c : bench::ourCases())
        for (const fe::Isa isa : fe::kIsas) {
            if (isa > fe::bestIsa()) continue;
            const std::string name = c.name + "@" + fe::nameOf(isa);
            benchmark::RegisterBenchmark(name.c_str(),
                                         [c, isa](benchmark::State& state) { run(state, c, isa); })
                ->Unit(benchmark::kMillisecond)
                ->MeasureProcessCPUTime()
                ->UseRealTime();
        }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
