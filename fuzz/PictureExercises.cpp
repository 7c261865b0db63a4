// Exercises of what turns, scales and composes pictures.
#include "AffineWarp.h"
#include "Exercises.h"

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
        withEveryIsa(planes(dstW, dstH), [&](unsigned char* dst) {
            engine.resize_image(src.data(), dst, srcW, srcH, dstW, dstH);
        });
    } else {
        Source src(draw, 3 * area(srcW, srcH));
        ExactBuffer dst(bytes(3 * area(dstW, dstH)));
        engine.lcvScale(dst.data(), src.data(), srcW, srcH, dstW, dstH);
    }
}

namespace {

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

} // namespace

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
