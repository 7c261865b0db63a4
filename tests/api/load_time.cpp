// Loads the library and says how long that took: load_time LIBRARY. Fails from 50 ms on.
#include <chrono>
#include <cstdio>
#include <dlfcn.h>

int main(int argc, char** argv)
{
    if (argc != 2) return 2;
    const auto start = std::chrono::steady_clock::now();
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    if (!library || !dlsym(library, "FMMTbl")) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    std::printf("%.2f ms\n", time.count());
    return time.count() < 50 ? 0 : 1;
}
