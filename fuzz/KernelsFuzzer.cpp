// The kernels, warpers, composition methods and conversions with buffers of just the bytes that the
// headers ask for.
#include "AffineWarp.h"
#include "Draw.h"
#include "ExactBuffer.h"
#include "FEDSP.h"
#include "mapping/MapEntry.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

// A side of a small picture; now and then one that there is none of.
int drawSide(Draw& draw)
{
    return draw.chance(16) ? draw.of({0, -1, INT_MIN}) : draw.between(1, 24);
}

std::size_t bytes(std::int64_t count)
{
    return std::size_t(std::max<std::int64_t>(count, 0));
}

std::int64_t area(int w, int h)
{
    return w > 0 && h > 0 ? std::int64_t(w) * h : 0;
}

// A buffer with drawn contents.
struct Source : ExactBuffer {
    Source(Draw& draw, std::int64_t size) : ExactBuffer(bytes(size))
    {
        draw.fill(data(), this->size());
    }
};

struct Engine : FEDSP {
    explicit Engine(Draw& draw)
    {
        m_nFormat = FORMAT(draw.below(5));
        m_nPitch = draw.between(1, 40);
    }
};

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
    if (draw.chance(2)) {
        Source src(draw, luma + 2 * table.chromaSamples());
        ExactBuffer dst(bytes(count + 2 * chroma));
        switch (draw.below(3)) {
        case 0:
            engine.Bilinear_NV12_C(src.data(), dst.data(), table.words(), draw.any(), rows, outW,
                                   outH, stride);
            break;
        case 1:
            engine.FCMapping_YV12(src.data(), dst.data(), table.words(), draw.any(), rows, outW,
                                  outH, draw.chance(2));
            break;
        default: {
            auto map = std::make_unique<FEMM_DATA[]>(bytes(count));
            for (std::size_t k = 0; k < bytes(count); ++k) {
                const fe::MapEntry e = fe::loadEntry(table.words(), k);
                map[k] = {static_cast<unsigned short>(e.fractions),
                          static_cast<unsigned short>(e.fractions >> 16), unsigned(e.index),
                          unsigned(draw.any())};
            }
            engine.invBilinear_NV12_C(src.data(), dst.data(), table.words(), stride, rows, outW,
                                      outH, map.get());
            break;
        }
        }
    } else {
        Source src(draw, luma + luma / 4 + std::max(table.chromaSamples(), luma / 4));
        ExactBuffer dst(bytes(count + count / 4 + std::max(chroma, count / 4)));
        engine.FCMapping(FORMAT_YV12, src.data(), dst.data(), table.words(), draw.any(), rows, outW,
                         outH, draw.chance(2));
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
    ExactBuffer dst(bytes(3 * area(outW, outH)));
    CBilinear kernel;
    if (draw.chance(2))
        kernel.Bilinear_RGB24_C(src.data(), dst.data(), table.words(), inW, inH, outW, outH);
    else
        kernel.Bilinear_YUV444_C(src.data(), dst.data(), table.words(), inW, inH, outW, outH);
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
    ExactBuffer dst(bytes(count ? count + (rows - 1) * step + lastRow : 0));
    Engine engine(draw);
    engine.FCMapping_line(semiPlanar ? FORMAT_NV12 : FORMAT_YV12, src.data(), dst.data(),
                          table.words(), inW, inH, outW, outH, draw.chance(2), line);
}

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

void affine(Draw& draw)
{
    const int srcW = drawSide(draw), srcH = drawSide(draw);
    const int dstW = drawSide(draw), dstH = drawSide(draw);
    const int srcPitch = std::max(srcW, 0) + draw.below(3);
    const int dstPitch = std::max(dstW, 0) + draw.below(3);
    float coef[6];
    for (float& c : coef)
        c = draw.anyFloat();
    const int sample = draw.chance(2) ? 2 : 1;
    const std::int64_t srcSamples =
        area(srcW, srcH) ? std::int64_t(srcPitch) * (srcH - 1) + srcW : 0;
    const std::int64_t dstSamples =
        area(dstW, dstH) ? std::int64_t(dstPitch) * (dstH - 1) + dstW : 0;
    Source src(draw, srcSamples * sample);
    ExactBuffer dst(bytes(dstSamples * sample));
    const void* srcData = src.data();
    void* dstData = dst.data();
    if (sample == 1)
        LM_Affine_check(src.data(), srcW, srcH, srcPitch, dst.data(), dstW, dstH, dstPitch, coef,
                        static_cast<unsigned char>(draw.below(256)));
    else
        LM_Affine_UV_check(static_cast<const unsigned short*>(srcData), srcW, srcH, srcPitch,
                           static_cast<unsigned short*>(dstData), dstW, dstH, dstPitch, coef);
}

void matrices(Draw& draw)
{
    _RTMat a, b, p;
    GenRotMat(draw.anyFloat(), &a);
    GenShearMat(draw.anyFloat(), draw.anyFloat(), &b);
    for (_RTMat* m : {&a, &b}) {
        if (draw.chance(2)) m->nCols = draw.chance(2) ? draw.any() : draw.between(-1, 4);
        if (draw.chance(2)) m->nRows = draw.chance(2) ? draw.any() : draw.between(-1, 4);
        if (draw.chance(2)) m->m[draw.below(9)] = draw.anyFloat();
    }
    RTMpy(&a, &b, &p);
    RTInv(&a, &p);
    GenScaleMat(draw.anyFloat(), draw.anyFloat(), &p);
    GenTransMat(draw.any(), draw.any(), &p);
}

void resizing(Draw& draw)
{
    FEDSP engine;
    const int srcW = drawSide(draw), srcH = drawSide(draw);
    const int dstW = drawSide(draw), dstH = drawSide(draw);
    if (draw.chance(2)) {
        const auto planes = [](int w, int h) { return area(w, h) + 2 * area(w / 2, h / 2); };
        Source src(draw, planes(srcW, srcH));
        ExactBuffer dst(bytes(planes(dstW, dstH)));
        engine.resize_image(src.data(), dst.data(), srcW, srcH, dstW, dstH);
    } else {
        Source src(draw, 3 * area(srcW, srcH));
        ExactBuffer dst(bytes(3 * area(dstW, dstH)));
        engine.lcvScale(dst.data(), src.data(), srcW, srcH, dstW, dstH);
    }
}

// Bytes of a view of w x h pixels with its chroma rows rounded up, as composition reads them.
std::int64_t viewBytes(std::int64_t w, std::int64_t h)
{
    const std::int64_t rows = (h + 1) / 2;
    return w * h + std::max((rows - 1) * (w & ~1) + w, w * h / 4 + rows * (w >> 1));
}

// Bytes of a frame that composition may write to: one byte more, and for odd heights a row more of
// chroma in each plane.
std::int64_t frameBytes(std::int64_t w, std::int64_t h, bool odd)
{
    return w * h * 3 / 2 + 1 + (odd ? w : 0);
}

void composition(Draw& draw)
{
    Engine engine(draw);
    const int w = draw.between(1, 24), h = draw.between(1, 24);
    const int which = draw.below(4);
    switch (draw.below(4)) {
    case 0: {
        Source view(draw, viewBytes(w, h));
        ExactBuffer frame(bytes(frameBytes(2 * std::int64_t(w), 2 * std::int64_t(h), h % 2 != 0)));
        unsigned char* views[4] = {};
        views[which] = view.data();
        engine.SnapShotM1(views[0], views[1], views[2], views[3], frame.data(), w, h);
        break;
    }
    case 1: {
        Source view(draw, viewBytes(w, h));
        const int frameH = 2 * ((h + 1) / 2 + draw.below(8)) * 3;
        ExactBuffer frame(bytes(frameBytes(2 * std::int64_t(w), frameH, true)));
        if (which == 2)
            engine.SnapShotM2(nullptr, nullptr, view.data(), frame.data(), w, h, 0, 0, frameH);
        else
            engine.SnapShotM2(which == 0 ? view.data() : nullptr,
                              which == 1 ? view.data() : nullptr, nullptr, frame.data(), w, h, 0, 0,
                              frameH);
        break;
    }
    case 2: {
        Source one(draw, 3 * area(w, h - 1)), two(draw, 3 * area(w, h - 1));
        ExactBuffer frame(bytes(3 * area(w, 2 * h - 1)));
        engine.SnapShotM3(which & 1 ? one.data() : nullptr, which & 2 ? two.data() : nullptr,
                          frame.data(), w, h, draw.below(3));
        engine.SnapShotM45(one.data(), frame.data(), w, h);
        break;
    }
    default: {
        const bool flip = draw.chance(2);
        const std::int64_t chroma = 2 * area(w / 2, h / 2);
        if (draw.chance(2)) {
            Source image(draw, 3 * area(w, flip ? h : h - 1));
            ExactBuffer copy(bytes(3 * area(w, flip ? h : h - 1)));
            engine.TransferButtomToUp(image.data(), copy.data(), w, h, flip);
        } else {
            const std::int64_t planes =
                engine.m_nFormat == FORMAT_YV12 ? area(w, h) / 4 + chroma / 2 : chroma;
            // A mirror reads the element behind each plane, behind the luma of a picture too small
            // for chroma as well.
            const std::int64_t past = flip ? 0 : 2;
            Source image(draw, area(w, h) + planes + past);
            ExactBuffer copy(bytes(area(w, h) + planes));
            engine.TransferButtomToUpPlanar(image.data(), copy.data(), w, h, flip);
        }
        break;
    }
    }
}

// Every entry must lead a kernel to samples inside the input.
void checkTable(const int* table, std::int64_t entries, int inW, int inH)
{
    for (std::size_t k = 0; k < bytes(entries); ++k) {
        const fe::MapEntry e = fe::loadEntry(table, k);
        if (e.fractions == 0 && e.index == 0) continue;
        if (e.index < 0 || std::int64_t(e.index) + inW + 1 >= std::int64_t(inW) * inH)
            __builtin_trap();
    }
}

void builders(Draw& draw)
{
    FEDSP engine;
    const int inW = drawSide(draw), inH = drawSide(draw);
    engine.FE_Initialize(0, 320, 240, draw.of({4, 16}));
    engine.m_nInputW = engine.m_nPitch = inW;
    engine.m_nInputH = inH;
    engine.m_bSingle = static_cast<unsigned char>(draw.below(2));
    engine.m_bLargeInput = static_cast<unsigned char>(draw.below(2));
    engine.m_fScaleX = draw.chance(8) ? draw.anyFloat() : float(inW / 1280.0);
    const auto coordinate = [&] {
        return draw.chance(3) ? draw.extremeInt() : draw.between(-8, 32);
    };
    const int c1 = coordinate(), c2 = coordinate();
    const int radius = draw.chance(8) ? draw.of({0, -1, INT_MIN}) : draw.between(0, 60);
    const int width = drawSide(draw);
    std::int64_t entries = 0;
    switch (draw.below(3)) {
    case 0: {
        const int mode = draw.between(-1, 3);
        if (width > 0 && mode == 2)
            entries = radius > 3 ? std::int64_t(radius - 3) * width + 1 : 0;
        else if (width > 0 && radius > 0)
            entries = std::min(std::int64_t(radius / 2) * width, area(inW, inH)) + 1;
        auto table = ExactBuffer(bytes(entries) * 8);
        std::memset(table.data(), 0, table.size());
        auto* words = static_cast<int*>(static_cast<void*>(table.data()));
        engine.InitCPIBuffer_360(c1, c2, radius, inW, inH, words, draw.any(), nullptr, nullptr,
                                 mode, draw.below(2), width);
        checkTable(words, entries, inW, inH);
        break;
    }
    case 1: {
        if (width > 0 && radius > 1) entries = std::int64_t(radius - 1) * width;
        ExactBuffer table(bytes(entries) * 8);
        std::memset(table.data(), 0, table.size());
        auto* words = static_cast<int*>(static_cast<void*>(table.data()));
        engine.Mercator_Projection_360(c1, c2, radius, inW, inH, words, draw.any(), nullptr,
                                       nullptr, draw.any(), width);
        checkTable(words, entries, inW, inH);
        break;
    }
    default: {
        const int height = drawSide(draw);
        entries = area(width, height);
        ExactBuffer table(bytes(entries) * 8);
        std::memset(table.data(), 0, table.size());
        auto* words = static_cast<int*>(static_cast<void*>(table.data()));
        const FEDSP::ClonefishRect rect{coordinate(), coordinate(), coordinate(), coordinate()};
        engine.Fisheye_calibration_Init_byArea(
            c1, c2, draw.chance(4) ? draw.any() : draw.between(0, 60), draw.any(), rect,
            draw.anyFloat(), draw.any(), width, height, words, coordinate(), draw.between(0, 3));
        checkTable(words, entries, inW, inH);
        break;
    }
    }
}

// Buffers carved from a block of the host's, of any size.
void carvedBuffers(Draw& draw)
{
    const int inW = draw.between(1, 400), inH = draw.between(1, 300);
    const int screenW = draw.between(0, 400), screenH = draw.between(0, 300);
    auto engine = std::make_unique<FEDSP>();
    engine->FE_Initialize(0, inW, inH, 4);
    engine->MemoryAllocated_DSPBuff_Estimate(draw.any(), draw.any(), draw.any(), draw.any());
    const int estimate = engine->MemoryAllocated_DSPBuff_Estimate(inW, inH, screenW, screenH);
    const int size = draw.chance(2)
                         ? draw.between(0, 1 << 20)
                         : std::clamp(estimate + draw.between(-8, 20000000), 0, 40000000);
    ExactBuffer block(bytes(size));
    engine->MemoryAllocated_AccessCtr_DSP(inW, inH, screenW, screenH, block.data(), unsigned(size));
    FE_EventParams event;
    FE_ViewParams view;
    view.nViewMode = static_cast<unsigned short>(draw.of({1, 2, 4, 8}));
    view.nCamPos = static_cast<unsigned short>(draw.below(3));
    view.nSubView = 1;
    view.nRadius = static_cast<unsigned short>(inW / 2);
    view.nCenterX = static_cast<unsigned short>(inH / 2);
    view.nCenterY = static_cast<unsigned short>(inW / 2);
    view.nOverlay = 0;
    engine->FEParamsUpdated(&event, &view);
    const FORMAT format = FORMAT(draw.below(4));
    Source in(draw, 3 * area(inW, inH));
    ExactBuffer out(bytes(3 * area(screenW, screenH)));
    for (int frame = 0; frame < 2; ++frame)
        engine->LumoAccessCtr_FEProc_VideoInput(0, 0, in.data(), out.data(), inW, inH, format,
                                                draw.chance(2), inW);
    engine->DeleteAccess_ctr_Mem();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // The library reports on standard output.
    return std::freopen("/dev/null", "w", stdout) ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Exercise = void (*)(Draw&);
    constexpr Exercise all[] = {
        wholeFrameKernels, packedKernels, bandKernels, conversions, affine,
        matrices,          resizing,      composition, builders,    carvedBuffers};
    Draw draw(data, size);
    all[draw.below(int(std::size(all)))](draw);
    return 0;
}
