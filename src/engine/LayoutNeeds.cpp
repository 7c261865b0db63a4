// How much of each working buffer a frame takes.
#include "engine/LayoutNeeds.h"

#include "engine/SubViews.h"
#include "views/LayoutSizes.h"

#include <algorithm>

namespace fe {

namespace {

using Needs = std::array<std::int64_t, kBufferCount>;

// What the layout's renderers use of each buffer, bytes.
class NeedsOfLayout {
public:
    NeedsOfLayout(const FEDSP& e, const Extent& extent, FORMAT format)
        : e_(e), extent_(extent), bands_(e.m_nLineIndex >= 0),
          packed_(format == FORMAT_RGB && !bands_)
    {
    }

    Needs all()
    {
        switch (currentMode(e_)) {
        case kModeQuad:
            addViews(quadViewSize(extent_, kQuad12Fraction), 4);
            raise(kMapTable, needs_[kSubMapA]);
            break;
        case kMode360:
            addViews(ptz360ViewSize(extent_), 2);
            addStrip(stripSize(extent_));
            addPanorama();
            break;
        case kMode180: {
            const Size half = half180Size(extent_);
            // Rows as wide as the screen are taken from the picture, whatever its own width.
            raise(kViewImage, planarBytes(2 * std::int64_t(half.w), half.h) + extent_.screenW);
            addPanorama();
            break;
        }
        case kModeSingle:
            raise(kMapTable, std::int64_t(extent_.screenW) * extent_.screenH * 8);
            if (!packed_) raise(kViewImage, planarBytes(extent_.screenW, extent_.screenH));
            break;
        default:
            break;
        }
        if (packed_) addPackedTables();
        return needs_;
    }

private:
    void raise(Buffer buffer, std::int64_t bytes)
    {
        needs_[buffer] = std::max(needs_[buffer], bytes);
    }
    // With chroma sizes rounded up, and the element past the end that a mirror reads.
    static std::int64_t planarBytes(std::int64_t w, std::int64_t h)
    {
        return h <= 0 ? 0 : w * h * 3 / 2 + w + h + 2;
    }
    std::int64_t imageBytes(std::int64_t w, std::int64_t h) const
    {
        return packed_ ? 3 * w * h : planarBytes(w, h);
    }
    void addViews(const Size& view, int images)
    {
        const std::int64_t table = std::int64_t(view.w) * view.h * 8;
        raise(kSubMapA, table);
        raise(kSubMapB, table);
        raise(kViewImage, imageBytes(view.w, view.h) * (bands_ ? images : 1));
        raise(kWorkImageA, planarBytes(view.w, view.h));
    }
    void addStrip(const Strip& strip)
    {
        const std::int64_t above = bands_ ? std::int64_t(strip.w) * strip.top * 3 / 2 : 0;
        raise(kViewImage, above + planarBytes(strip.w, strip.h));
        raise(kWorkImageA, planarBytes(strip.w, strip.h));
    }
    void addPanorama()
    {
        const std::int64_t radius = e_.m_nRadius;
        if (e_.m_nCamPos == 1) {
            raise(kMapTable, e_.m_nPanoH0 * radius * 8);
            raise(kPanoImage, imageBytes(e_.m_nPanoH0, radius * 3 / 4));
        } else {
            raise(kMapTable, (e_.m_nPanoH * (radius / 2) + 1) * 8);
            raise(kPanoImage, imageBytes(e_.m_nPanoH, radius / 2));
        }
    }
    // The copies of the tables lie behind one another, see TableForms.cpp.
    void addPackedTables()
    {
        const auto capacity = [this](Buffer b) { return std::int64_t(e_.m_nCapacity[b]); };
        const std::int64_t views = needs_[kSubMapB];
        raise(kMapWork,
              views > 0 ? capacity(kMapTable) + capacity(kSubMapA) + views : needs_[kMapTable]);
    }

    const FEDSP& e_;
    Extent extent_;
    bool bands_;
    bool packed_; // bands of packed frames are not mapped
    Needs needs_{};
};

} // namespace

std::array<std::int64_t, kBufferCount> layoutNeeds(const FEDSP& e, int w, int h, FORMAT format)
{
    return NeedsOfLayout(e, {w, h, e.m_nScreenW, e.m_nScreenH}, format).all();
}

} // namespace fe
