// Exercises of the remapping kernels and the colour conversions.
#include "Exercises.h"
#include "mapping/MapEntry.h"

#include <cstdlib>
#include <memory>

namespace {

// A mapping table at any address, and what its entries make a kernel read.
class Table {
public:
    // Entries lead into a source of rows x stride pixels.
    Table(Draw& draw, std::int64_t entries, int stride, int rows)
        : shift_(std::size_t(draw.below(8))), memory_(bytes(entries) * 8 + shift_)
    {
        const int last = stride * rows - 1;
        for (std::size_t k = 0; k < bytes(entries); ++k) {
            std::uint32_t fx = drawFraction(draw), fy = drawFraction(draw);
            const int index = draw.between(0, last);
            if (index + 1 > last) fx = 0;
            if (index + stride + (fx ? 1 : 0) > last) fy = 0;
            fe::storeEntry(words(), k, {fy | fx << 16, index});
            const std::int64_t sample =
                std::int64_t(stride >> 1) * (index / stride >> 1) + (index % stride >> 1);
            chromaSamples_ = std::max(chromaSamples_, sample + 1);
        }
    }
    int* words() { return static_cast<int*>(static_cast<void*>(memory_.data() + shift_)); }
    std::int64_t chromaSamples() const { return chromaSamples_; }

private:
    static std::uint32_t drawFraction(Draw& draw)
    {
        return std::uint32_t(draw.chance(8) ? draw.between(0, 0xFFFF)
                                            : draw.of({0, 0, 1, 128, 255, 256}));
    }

    std::size_t shift_;
    ExactBuffer memory_;
    std::int64_t chromaSamples_ = 0;
};

} // namespace

void wholeFrameKernels(Draw& draw)
{
    const int stride = draw.between(1, 24), rows = draw.between(1, 24);
    const int outW = drawSide(draw), outH = drawSide(draw);
    const std::int64_t count = area(outW, outH);
    const std::int64_t chroma = count ? std::int64_t((outW + 1) / 2) * ((outH + 1) / 2) : 0;
    const std::int64_t luma = std::int64_t(stride) * rows;
    Table table(draw, count, stride, rows);
    Engine engine(draw);
    engine.m_nPitch = stride;
    const int unused = draw.any();
    const bool setting = draw.chance(2);
    if (draw.chance(2)) {
        Source src(draw, luma + 2 * table.chromaSamples());
        const int kernel = draw.below(3);
        auto map = std::make_unique<FEMM_DATA[]>(bytes(count));
        for (std::size_t k = 0; k < bytes(count); ++k) {
            const fe::MapEntry e = fe::loadEntry(table.words(), k);
            map[k] = {static_cast<unsigned short>(e.fractions),
                      static_cast<unsigned short>(e.fractions >> 16), unsigned(e.index),
                      unsigned(unused)};
        }
        withEveryIsa(count + 2 * chroma, [&](unsigned char* dst) {
            if (kernel == 0)
                engine.Bilinear_NV12_C(src.data(), dst, table.words(), unused, rows, outW, outH,
                                       stride);
            else if (kernel == 1)
                engine.FCMapping_YV12(src.data(), dst, table.words(), unused, rows, outW, outH,
                                      setting);
            else
                engine.invBilinear_NV12_C(src.data(), dst, table.words(), stride, rows, outW, outH,
                                          map.get());
        });
    } else {
        Source src(draw, luma + luma / 4 + std::max(table.chromaSamples(), luma / 4));
        withEveryIsa(count + count / 4 + std::max(chroma, count / 4), [&](unsigned char* dst) {
            engine.FCMapping(FORMAT_YV12, src.data(), dst, table.words(), unused, rows, outW, outH,
                             setting);
        });
    }
}

void packedKernels(Draw& draw)
{
    const int inW = draw.between(1, 16), inH = draw.between(1, 16);
    const int outW = drawSide(draw), outH = drawSide(draw);
    // A table of pixels, its indices turned into byte offsets.
    Table table(draw, area(outW, outH), inW, inH);
    for (std::size_t k = 0; k < bytes(area(outW, outH)); ++k) {
        fe::MapEntry e = fe::loadEntry(table.words(), k);
        e.index *= 3;
        fe::storeEntry(table.words(), k, e);
    }
    Source src(draw, 3 * area(inW, inH));
    CBilinear kernel;
    const bool rgb = draw.chance(2);
    withEveryIsa(3 * area(outW, outH), [&](unsigned char* dst) {
        if (rgb)
            kernel.Bilinear_RGB24_C(src.data(), dst, table.words(), inW, inH, outW, outH);
        else
            kernel.Bilinear_YUV444_C(src.data(), dst, table.words(), inW, inH, outW, outH);
    });
}

void bandKernels(Draw& draw)
{
    const int inW = draw.between(2, 24), inH = draw.between(2, 24);
    const int outW = drawSide(draw), outH = draw.chance(4) ? draw.between(1, 200) : drawSide(draw);
    const int line = draw.chance(8) ? draw.any() : 64 * draw.below(4);
    const std::int64_t count = area(outW, outH);
    Table table(draw, count, inW, inH);
    const std::int64_t luma = area(inW, inH), rows = count ? (outH + 1) / 2 : 0;
    const bool semiPlanar = draw.chance(2);
    const std::int64_t behind = semiPlanar ? 0 : std::int64_t(inW / 2) * inH / 2;
    Source src(draw, luma + behind + (semiPlanar ? 2 : 1) * table.chromaSamples());
    const std::int64_t lastRow = semiPlanar ? (outW + 1) / 2 * 2 : (outW + 1) / 2;
    const std::int64_t step = semiPlanar ? outW : outW / 2;
    Engine engine(draw);
    const bool setting = draw.chance(2);
    withEveryIsa(count ? count + (rows - 1) * step + lastRow : 0, [&](unsigned char* dst) {
        engine.FCMapping_line(semiPlanar ? FORMAT_NV12 : FORMAT_YV12, src.data(), dst,
                              table.words(), inW, inH, outW, outH, setting, line);
    });
}

namespace {

// A picture that a conversion reads or writes row by row.
struct Rows {
    int stride; // what the conversion is given, below 1 for rows without padding
    std::int64_t bytes;

    // used: bytes of a row that are read or written
    Rows(Draw& draw, std::int64_t tight, std::int64_t used, std::int64_t rows)
        : stride(draw.chance(2) ? draw.of({0, -1, INT_MIN}) : int(tight) + draw.below(5)),
          bytes(rows > 0 ? (stride < 1 ? tight : stride) * (rows - 1) + used : 0)
    {
    }
};

} // namespace

void conversions(Draw& draw)
{
    FEDSP engine;
    const int w = drawSide(draw);
    const int h = draw.chance(3) ? -draw.between(1, 8) : drawSide(draw);
    const std::int64_t n = area(w, h);
    const std::int64_t width = std::max(w, 0), rows = w > 0 && h != INT_MIN ? std::abs(h) : 0;
    const int height = h == INT_MIN ? 0 : h; // rows without end are no picture
    switch (draw.below(5)) {
    case 0: {
        const Rows in(draw, width * 2, width / 2 * 4, rows);
        const Rows out(draw, width * 3, width / 2 * 6, rows);
        Source src(draw, in.bytes);
        ExactBuffer dst(bytes(out.bytes));
        engine.YUY2_to_RGB24_Normal_c(src.data(), in.stride, dst.data(), w, height, out.stride);
        break;
    }
    case 1: {
        const Rows in(draw, width * 3, (width + 1) / 2 * 6, rows);
        const Rows out(draw, width * 2, (width + 1) / 2 * 4, rows);
        Source src(draw, in.bytes);
        ExactBuffer dst(bytes(out.bytes));
        engine.RGB24_to_YUY2_Normal_c(src.data(), in.stride, dst.data(), w, height, out.stride);
        break;
    }
    case 2: {
        Source src(draw, n / 2 * 4);
        ExactBuffer dst(bytes(n / 2 * 6));
        engine.YUY2_to_YUV444(src.data(), dst.data(), w, h);
        break;
    }
    case 3: {
        Source src(draw, n + (n + 3) / 4 * 2);
        ExactBuffer dst(bytes(n * 3));
        engine.YUY2_to_NV12_YUV444(src.data(), dst.data(), w, h);
        break;
    }
    default: {
        Source src(draw, n * 2 + 1);
        ExactBuffer dst(bytes(n * 2));
        engine.YUY2_to_YUV444_NV12(src.data(), dst.data(), w, h);
        break;
    }
    }
}
