// Has the tool's readers read files as the fuzzer would: parsers_corpus FILE...
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        std::ifstream in(argv[i], std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
        if (!in) {
            std::fprintf(stderr, "parsers_corpus: %s cannot be read\n", argv[i]);
            return 1;
        }
        std::fprintf(stderr, "%s\n", argv[i]);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%d files\n", argc - 1);
    return argc > 1 ? 0 : 1;
}
