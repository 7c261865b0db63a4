// The timing lines that the whole-frame kernels print.
#ifndef LUMOFE_TICKLINES_H
#define LUMOFE_TICKLINES_H

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace fe {

inline int ticksSince(std::clock_t start)
{
    return std::abs(int(start - std::clock()));
}

class TickLines {
public:
    explicit TickLines(const char* kernel) : kernel_(kernel), start_(std::clock()) {}

    // Luma and chroma are mapped together, so the first line has the time of both.
    void print() const
    {
        // Kept: nothing counts empty pixels, and the line says so.
        const int emptyPixels = 0;
        std::printf("%s: luma Tick %i, sum_empty_pixel %i\n", kernel_, ticksSince(start_),
                    emptyPixels);
        std::printf("%s: chroma Tick %i\n", kernel_, 0);
    }

private:
    const char* kernel_;
    std::clock_t start_;
};

} // namespace fe

#endif
