// The bodies of the stb headers, compiled once.
#include <algorithm>
#include <cstddef>
#include <new>

namespace {

// Cleared, since damaged files leave parts of a picture unwritten.
void* allocate(std::size_t size)
{
    return new (std::nothrow) unsigned char[size]();
}

void release(void* block)
{
    delete[] static_cast<unsigned char*>(block);
}

void* grow(void* block, std::size_t oldSize, std::size_t newSize)
{
    void* grown = allocate(newSize);
    if (!grown) return nullptr;
    std::copy_n(static_cast<unsigned char*>(block), std::min(oldSize, newSize),
                static_cast<unsigned char*>(grown));
    release(block);
    return grown;
}

} // namespace

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_MALLOC(size) allocate(size)
#define STBI_REALLOC_SIZED(block, oldSize, newSize) grow(block, oldSize, newSize)
#define STBI_FREE(block) release(block)
#define STBI_NO_STDIO
#define STBI_WRITE_NO_STDIO
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_ONLY_BMP

#include <stb_image.h>
#include <stb_image_write.h>
