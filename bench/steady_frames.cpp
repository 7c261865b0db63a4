// One steady frame of each layout, small enough to be run on an emulated processor:
//
//     steady_frames [ISA]    with instruction sets up to this one, such as SSSE3; all by default
//
// Prints each layout's name and the hash of its frame. countedFrame is where tools start counting.
#include "Camera.h"
#include "kernels/Isa.h"

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <iterator>
#include <string>
#include <utility>

extern "C" [[gnu::noinline]] void countedFrame(bench::Camera& camera)
{
    camera.feed();
}

namespace {

// FNV-1a, 64 bits.
std::uint64_t hashOf(const bench::Bytes& bytes)
{
    std::uint64_t hash = 14695981039346656037u;
    for (const unsigned char b : bytes)
        hash = (hash ^ b) * 1099511628211u;
    return hash;
}

std::uint64_t hashOfFrame(bench::Layout layout)
{
    const bench::QuietStdout quiet;
    bench::Camera camera({.layout = layout, .input = {480, 480}, .screen = {480, 360}});
    for (int i = 0; i < 2; ++i) // which must take the same
        countedFrame(camera);
    return hashOf(camera.output());
}

} // namespace

int main(int argc, char** argv)
{
    const std::string name = argc > 1 ? argv[1] : fe::nameOf(fe::bestIsa());
    const auto isa = std::find_if(std::begin(fe::kIsas), std::end(fe::kIsas),
                                  [&](fe::Isa i) { return name == fe::nameOf(i); });
    if (isa == std::end(fe::kIsas)) {
        std::fprintf(stderr, "steady_frames: there is no instruction set %s\n", name.c_str());
        return 2;
    }
    if (*isa > fe::bestIsa()) {
        std::fprintf(stderr, "steady_frames: this processor has no %s\n", name.c_str());
        return 3;
    }
    fe::limitIsa(*isa);
    try {
        for (const auto& [layout, layoutName] : {std::pair{bench::kSingle, "single"},
                                                 {bench::kQuad, "quad"},
                                                 {bench::k360, "360"},
                                                 {bench::k180, "180"}})
            std::printf("%s %016" PRIx64 "\n", layoutName, hashOfFrame(layout));
    } catch (const std::exception& e) {
        std::fprintf(stderr, "steady_frames: %s\n", e.what());
        return 1;
    }
    return 0;
}
