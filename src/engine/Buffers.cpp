// Sizing, obtaining and releasing the working buffers.
#include "engine/Buffers.h"

#include "engine/Numeric.h"
#include "views/TableForms.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <new>

namespace fe {

namespace {

// Calls f with the engine's pointer for the buffer.
template <class Engine, class F>
auto withPointer(Engine& e, Buffer buffer, F f)
{
    switch (buffer) {
    case kStaged:
        return f(e.m_pStaged);
    case kSubMapA:
        return f(e.m_pSubMapA);
    case kSubMapB:
        return f(e.m_pSubMapB);
    case kMapTable:
        return f(e.m_pMapTable);
    case kPanoImage:
        return f(e.m_pPanoImage);
    case kViewImage:
        return f(e.m_pViewImage);
    case kWorkImageA:
        return f(e.m_pWorkImageA);
    default:
        return f(e.m_pMapWork);
    }
}

struct FromHeap {
    template <class T>
    T* operator()(std::size_t bytes) const
    {
        return new (std::nothrow) T[(bytes + sizeof(T) - 1) / sizeof(T)];
    }
};

// Cuts a host's block into pieces, without alignment.
struct FromBlock {
    unsigned char* cursor;
    unsigned char* end;

    // Kept: a piece that would reach the block's very end is refused.
    template <class T>
    T* operator()(std::size_t bytes)
    {
        if (bytes >= std::size_t(end - cursor)) return nullptr;
        void* piece = cursor;
        cursor += bytes;
        return static_cast<T*>(piece);
    }
};

bool isCarved(const FEDSP& e, const void* p)
{
    const std::less<const void*> before;
    return e.m_pBlock && !before(p, e.m_pBlock) && before(p, e.m_pBlock + e.m_nBlockSize);
}

template <class T>
void release(FEDSP& e, T*& p)
{
    if (!isCarved(e, p)) delete[] p;
    p = nullptr;
}

// Obtains the buffer unless it is there already. False when there is no room for it.
template <class Source>
bool obtain(FEDSP& e, Buffer buffer, std::int64_t bytes, Source& source)
{
    return withPointer(e, buffer, [&]<class T>(T*& p) {
        if (p) return true;
        p = source.template operator()<T>(std::size_t(bytes));
        if (p) e.m_nCapacity[buffer] = std::size_t(bytes);
        return p != nullptr;
    });
}

} // namespace

std::optional<std::array<BufferSize, kBufferCount>> planBuffers(FEDSP& e, int inW, int inH,
                                                                int screenW, int screenH)
{
    constexpr std::int64_t kLargest = std::numeric_limits<int>::max();
    constexpr std::int64_t kSlack = 64; // mirrors and packed rows reach a few bytes further

    const std::int64_t W = inW, H = inH, sW = screenW, sH = screenH;
    const int panoWidth = std::max(e.m_nRadius, trunc32(inW * 0.5 * 1.25));
    e.m_nPanoH = trunc32(e.m_nPanoBase * 1.5);
    (inW <= 1280 ? e.m_nPanoHSmall : e.m_nPanoHLarge) = e.m_nPanoH;
    e.m_nPanoH0 = e.m_nPanoBase;
    if (W < 0 || H < 0 || sW < 0 || sH < 0) return std::nullopt;

    const bool exceeds = sW > W || sH > H;
    const std::int64_t boxW = exceeds ? W : sW;
    const std::int64_t boxH = exceeds ? H : sH;
    const std::int64_t subArea = sH * 2 / 3 * (sW / 2);
    const std::int64_t panoH = std::max(e.m_nPanoH, 0);
    const std::int64_t panoArea = std::max(panoH * panoWidth, boxW * boxH);

    // The carved sizes leave no room for packed 24-bit input, for screens larger than the input or
    // upright, and for views rounded up to multiples of 4. The heap sizes do.
    const std::int64_t longSide = std::max({W, H, std::int64_t(1024)});
    const std::int64_t frameArea = (std::max(sW, W) + 8) * (std::max(sH, H) + 8);
    // No product of two sizes overflows. Those below do not for areas of this size.
    for (std::int64_t area : {W * H, sW * sH, boxW * boxW, panoArea, panoH * longSide, frameArea})
        if (area > kLargest) return std::nullopt;

    const std::int64_t subEntries =
        std::max({subArea, (sW / 2 + 4) * (sH * 2 / 3 + 4), W * H / 3 + W + H});
    const std::int64_t mapEntries = std::max({panoArea, sW * sH, panoH * longSide}) + 16;
    const std::int64_t frameBytes = 2 * frameArea;

    const std::array<BufferSize, kBufferCount> plan{{
        {W * H * 2, W * H * 3 + kSlack, -1},
        {subArea * 8, subEntries * 8, -1},
        {subArea * 8, subEntries * 8, -1},
        {panoArea * 8, mapEntries * 8, -1},
        {panoArea * 2, std::max(panoArea * 2, panoH * longSide * 3 / 2) + kSlack, -1},
        {boxW * boxW * 2, std::max(boxW * boxW * 2, frameBytes) + kSlack, -1},
        {panoArea * 2, std::max(panoArea * 2, frameBytes) + kSlack, -1},
        {panoArea * 24, std::max(panoArea * 24, (mapEntries + 2 * subEntries) * 8), panoArea * 8},
    }};
    for (const BufferSize& size : plan)
        if (size.heap > kLargest) return std::nullopt;
    return plan;
}

void* bufferAddress(const FEDSP& e, Buffer buffer)
{
    return withPointer(e, buffer, [](auto* p) -> void* { return p; });
}

void fillBuffer(FEDSP& e, Buffer buffer, std::int64_t bytes, unsigned char value)
{
    void* p = bufferAddress(e, buffer);
    if (!p || bytes <= 0) return;
    std::memset(p, value, std::size_t(std::min(bytes, std::int64_t(e.m_nCapacity[buffer]))));
}

bool hasBuffers(const FEDSP& e)
{
    for (int b = 0; b < kBufferCount; ++b)
        if (!bufferAddress(e, Buffer(b))) return false;
    return true;
}

} // namespace fe

int FEDSP::MemoryAllocated_AccessCtr(int nInW, int nInH, int nScreenW, int nScreenH)
{
    m_nScreenW = nScreenW;
    m_nScreenH = nScreenH;
    m_fScreenScaleX = float(nScreenW / 800.0);
    m_fScreenScaleY = float(nScreenH / 600.0);
    const auto plan = fe::planBuffers(*this, nInW, nInH, nScreenW, nScreenH);
    if (!plan) return 1;

    fe::tablesChanged(*this);
    fe::FromHeap heap;
    for (int b = 0; b < fe::kBufferCount; ++b) {
        const fe::BufferSize& size = (*plan)[std::size_t(b)];
        if (!fe::obtain(*this, fe::Buffer(b), size.heap, heap)) return 1;
        fe::fillBuffer(*this, fe::Buffer(b), size.cleared < 0 ? size.heap : size.cleared, 0);
    }
    return 0;
}

int FEDSP::MemoryAllocated_AccessCtr_DSP(int nInW, int nInH, int nScreenW, int nScreenH,
                                         unsigned char* pBlock, unsigned int nBlockSize)
{
    m_nScreenW = nScreenW;
    m_nScreenH = nScreenH;
    const auto plan = fe::planBuffers(*this, nInW, nInH, nScreenW, nScreenH);
    if (!plan || !pBlock) return 1;

    fe::tablesChanged(*this);
    m_pBlock = pBlock;
    m_nBlockSize = nBlockSize;
    fe::FromBlock block{pBlock, pBlock + nBlockSize};
    for (int b = 0; b < fe::kBufferCount; ++b) {
        const fe::BufferSize& size = (*plan)[std::size_t(b)];
        if (!fe::obtain(*this, fe::Buffer(b), size.carved, block)) return 1;
        if (b != fe::kMapWork) fe::fillBuffer(*this, fe::Buffer(b), size.carved, 0);
    }
    return 0;
}

int FEDSP::MemoryAllocated_DSPBuff_Estimate(int nInW, int nInH, int nScreenW, int nScreenH)
{
    m_nScreenW = nScreenW;
    m_nScreenH = nScreenH;
    const auto plan = fe::planBuffers(*this, nInW, nInH, nScreenW, nScreenH);
    if (!plan) return -1;

    // Kept: the estimate leaves out m_pMapWork.
    std::int64_t bytes = 0;
    for (int b = 0; b < fe::kMapWork; ++b)
        bytes += (*plan)[std::size_t(b)].carved;
    return bytes > std::numeric_limits<int>::max() ? -1 : int(bytes);
}

void FEDSP::DeleteAccess_ctr_Mem()
{
    fe::release(*this, m_pStaged);
    fe::release(*this, m_pPanoImage);
    fe::release(*this, m_pSubMapA);
    fe::release(*this, m_pSubMapB);
    fe::release(*this, m_pMapTable);
    fe::release(*this, m_pViewImage);
    fe::release(*this, m_pWorkImageA);
    fe::release(*this, m_pMapWork);
    for (unsigned char*& spare : m_pSpare)
        fe::release(*this, spare);
    std::fill(std::begin(m_nCapacity), std::end(m_nCapacity), std::size_t(0));
    m_pBlock = nullptr;
    m_nBlockSize = 0;
    fe::tablesChanged(*this);
}
