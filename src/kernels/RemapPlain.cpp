// The inner loops that define what the remapping kernels read and write.
#include "kernels/RemapOps.h"
#include "kernels/Sampling.h"

namespace fe {

namespace {

void luma(const unsigned char* src, unsigned char* dst, const int* table, std::size_t count,
          int stride, std::int32_t, std::size_t)
{
    for (std::size_t k = 0; k < count; ++k) {
        const MapEntry entry = loadEntry(table, k);
        dst[k] = Bilinear(entry, 1, stride)(src + entry.index);
    }
}

// Output byte c comes from source byte order[c].
void mapPacked(const unsigned char* src, unsigned char* dst, const int* table, std::size_t count,
               std::ptrdiff_t rowBytes, const int (&order)[3])
{
    for (std::size_t k = 0; k < count; ++k, dst += 3) {
        const MapEntry entry = loadEntry(table, k);
        const Bilinear sample(entry, 3, rowBytes);
        for (int c = 0; c < 3; ++c)
            dst[c] = sample(src + entry.index + order[c]);
    }
}

void packed(const unsigned char* src, unsigned char* dst, const int* table, std::size_t count,
            std::ptrdiff_t rowBytes, std::int32_t, std::size_t)
{
    mapPacked(src, dst, table, count, rowBytes, {0, 1, 2});
}

void packedSwapped(const unsigned char* src, unsigned char* dst, const int* table,
                   std::size_t count, std::ptrdiff_t rowBytes, std::int32_t, std::size_t)
{
    mapPacked(src, dst, table, count, rowBytes, {2, 1, 0});
}

void chromaIndices(std::int32_t* indices, const int* table, std::size_t count,
                   const Divider& divider)
{
    for (std::size_t k = 0; k < count; ++k)
        indices[k] = std::int32_t(chromaIndex(loadEntry(table, 2 * k).index, divider.stride));
}

} // namespace

const RemapOps kRemapPlain{luma, packed, packedSwapped, chromaIndices, nullptr};

} // namespace fe
