#include "Worker.h"

#include "Camera.h"
#include "kernels/Isa.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <exception>
#include <iostream>
#include <iterator>
#include <map>
#include <stdexcept>

namespace bench {

namespace {

constexpr double kRoundMs = 8; // what is short of it is run several times

// Processor time of the process, which other programs on the machine disturb less than the clock.
double processorMs()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) * 1e-6;
}

double millisecondsOf(const Work& work, int runs)
{
    const double start = processorMs();
    for (int i = 0; i < runs; ++i)
        work();
    return (processorMs() - start) / runs;
}

fe::Isa isaNamed(const std::string& name)
{
    const auto isa = std::find_if(std::begin(fe::kIsas), std::end(fe::kIsas),
                                  [&](fe::Isa i) { return name == fe::nameOf(i); });
    if (isa == std::end(fe::kIsas)) throw std::runtime_error("no instruction set " + name);
    if (*isa > fe::bestIsa()) throw std::runtime_error("not on this processor");
    return *isa;
}

// A case that is set up.
struct Open {
    fe::Isa isa;
    Work work;
    int runs;
};

Open open(const Cases& cases, const std::string& request)
{
    const std::size_t at = request.find('@');
    const std::string name = request.substr(0, at);
    const auto found =
        std::find_if(cases.begin(), cases.end(), [&](const Case& c) { return c.name == name; });
    if (found == cases.end()) throw std::runtime_error("no case " + name);

    Open result{at == std::string::npos ? fe::bestIsa() : isaNamed(request.substr(at + 1)), {}, 1};
    fe::limitIsa(result.isa);
    result.work = found->setUp();
    const double first = millisecondsOf(result.work, 1);
    result.runs = std::clamp(int(std::ceil(kRoundMs / first)), 1, 100);
    return result;
}

} // namespace

int serve(const Cases& cases)
{
    std::map<std::string, Open> opened;
    for (std::string request; std::getline(std::cin, request);) {
        if (request == "close") {
            opened.clear();
            std::cout << "closed" << std::endl;
            continue;
        }
        try {
            double ms = 0;
            {
                const QuietStdout quiet;
                auto it = opened.find(request);
                if (it == opened.end()) it = opened.emplace(request, open(cases, request)).first;
                fe::limitIsa(it->second.isa);
                millisecondsOf(it->second.work, 1); // the other processes have used the caches
                ms = millisecondsOf(it->second.work, it->second.runs);
            }
            std::cout << ms << std::endl;
        } catch (const std::exception& e) {
            std::cout << "error: " << e.what() << std::endl;
        }
    }
    return 0;
}

} // namespace bench
