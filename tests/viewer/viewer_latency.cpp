// Measures the milliseconds from a turn of the wheel to the changed picture on the screen:
// viewer_latency INPUT [OPTION OF LUMOFE-VIEW...]
//
// A private X server is the screen: no graphics processor, no waiting for its refresh. The time of
// looking at the screen is part of the figures.
#include "ViewerRun.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

using namespace lumofe::test;

int main(int argc, char** argv)
{
    using namespace std::chrono_literals;
    using Clock = std::chrono::steady_clock;
    constexpr int kTurns = 60;

    Desktop desktop;
    const ViewerRun run(desktop, std::vector<std::string>(argv + 1, argv + argc));
    std::this_thread::sleep_for(1s);
    const lumofe::Size size = desktop.windowSize();
    desktop.move(size.width / 4, size.height / 4); // a view in every layout but 180
    desktop.press("space"); // so that nothing but the wheel changes the picture
    std::vector<double> times;
    for (int i = 0; i < kTurns; ++i) {
        std::this_thread::sleep_for(150ms);
        // Away from the lines of text.
        const auto before = desktop.row(size.height / 4).bytes;
        const auto begin = Clock::now();
        desktop.turnWheel(i / 5 % 2 == 0 ? 1 : -1);
        while (desktop.row(size.height / 4).bytes == before && Clock::now() - begin < 1s) {
        }
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    std::ranges::sort(times);
    std::printf("%dx%d: median %.1f ms, 90th percentile %.1f ms, worst %.1f ms of %d\n", size.width,
                size.height, times[kTurns / 2], times[kTurns * 9 / 10], times.back(), kTurns);
    return 0;
}
