// Every large allocation ends at an unreadable page, as a check that needs no sanitizer.
#include "ReplacedNew.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>

namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kLarge = 1024; // smaller ones come from malloc
constexpr std::size_t kAlignment = 16;
constexpr std::uint64_t kMark = 0x6C756D6F67756172;

// Lies in front of each block.
struct alignas(kAlignment) Header {
    std::uint64_t mark;
    void* base;
    std::size_t mapped;
};

} // namespace

void* allocateBlock(std::size_t size)
{
    if (size > SIZE_MAX / 4) return nullptr;
    const std::size_t total = size + sizeof(Header);
    char* base;
    std::size_t mapped = 0;
    char* block;
    if (size < kLarge) {
        base = static_cast<char*>(std::malloc(total));
        if (!base) return nullptr;
        block = base + sizeof(Header);
    } else {
        // The end may lie up to 15 bytes before the page: objects want their alignment.
        const std::size_t used = (total + kAlignment + kPage - 1) / kPage * kPage;
        mapped = used + kPage;
        void* p = mmap(nullptr, mapped, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (p == MAP_FAILED) return nullptr;
        base = static_cast<char*>(p);
        mprotect(base + used, kPage, PROT_NONE);
        block = base + (used - size) / kAlignment * kAlignment;
    }
    const Header header{kMark, base, mapped};
    std::memcpy(block - sizeof header, &header, sizeof header);
    return block;
}

void releaseBlock(void* block)
{
    if (!block) return;
    Header header;
    std::memcpy(&header, static_cast<char*>(block) - sizeof header, sizeof header);
    if (header.mark != kMark) std::abort();
    if (header.mapped)
        munmap(header.base, header.mapped);
    else
        std::free(header.base);
}
