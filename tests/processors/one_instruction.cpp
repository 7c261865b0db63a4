// Executes an instruction of an instruction set, whether or not the processor has it:
// one_instruction SSSE3|AVX2. Shows that an emulated processor stops at what it does not have.
#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "SSSE3") == 0) {
        asm volatile("pshufb %%xmm0, %%xmm0" : : : "xmm0");
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "AVX2") == 0) {
        asm volatile("vpaddd %%ymm0, %%ymm0, %%ymm0" : : : "xmm0");
        return 0;
    }
    std::fprintf(stderr, "usage: one_instruction SSSE3|AVX2\n");
    return 2;
}
