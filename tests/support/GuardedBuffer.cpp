#include "GuardedBuffer.h"

#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

GuardedBuffer::GuardedBuffer(std::size_t size) : size_(size)
{
    const std::size_t page = std::size_t(sysconf(_SC_PAGESIZE));
    const std::size_t used = (size + page - 1) / page * page;
    mapped_ = used + page;
    void* p = mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) throw std::runtime_error("mmap failed");
    base_ = static_cast<unsigned char*>(p);
    mprotect(base_ + used, page, PROT_NONE);
    data_ = base_ + used - size;
}

GuardedBuffer::~GuardedBuffer()
{
    munmap(base_, mapped_);
}
