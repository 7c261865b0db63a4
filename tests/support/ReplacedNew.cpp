#include "ReplacedNew.h"

#include <new>

namespace {

void* allocateOrThrow(std::size_t size)
{
    if (void* block = allocateBlock(size)) return block;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size)
{
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocateBlock(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocateBlock(size);
}
void operator delete(void* block) noexcept
{
    releaseBlock(block);
}
void operator delete[](void* block) noexcept
{
    releaseBlock(block);
}
void operator delete(void* block, std::size_t) noexcept
{
    releaseBlock(block);
}
void operator delete[](void* block, std::size_t) noexcept
{
    releaseBlock(block);
}
