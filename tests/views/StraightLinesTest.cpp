// Straight edges of the scene must be straight in a perspective view. The scene here is a half
// space whose boundary plane holds the camera, so its edge is a straight line in every pinhole
// picture.
#include "Frames.h"

#include "mapping/MapEntry.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <optional>

namespace {

constexpr int kIn = 1280, kW = 800, kH = 600;
constexpr double kRimAngle = 80 * 1.115007 * M_PI / 180; // what the lens model puts on the rim

// Dark on one side of the plane through the camera with that normal, bright on the other, with an
// edge about a pixel wide. `axis` is the distance of the plane from the optical axis, `turn` its
// direction, degrees.
Bytes halfSpace(double axis, double turn)
{
    const double a = axis * M_PI / 180, t = turn * M_PI / 180;
    const double nx = std::cos(a) * std::cos(t), ny = std::cos(a) * std::sin(t), nz = -std::sin(a);
    Bytes frame = constantFrame(kIn, kIn, FORMAT_NV12, 0);
    for (int y = 0; y < kIn; ++y)
        for (int x = 0; x < kIn; ++x) {
            const double dx = x - kIn / 2, dy = y - kIn / 2, d = std::hypot(dx, dy);
            const double theta = d / (kIn / 2) * kRimAngle;
            const double s = d > 0 ? std::sin(theta) / d : 0;
            const double distance = std::asin(dx * s * nx + dy * s * ny + std::cos(theta) * nz);
            const double pixels = distance / kRimAngle * (kIn / 2);
            const double bright = std::clamp(0.5 + pixels / 2, 0.0, 1.0);
            frame[std::size_t(y * kIn + x)] =
                static_cast<unsigned char>(std::lround(20 + bright * 200));
        }
    return frame;
}

struct Point {
    double x, y;
};

// A view's picture as its table makes it, before it is turned and composed.
struct Picture {
    const int* table;
    int w, h;
    OutputFrame pixels;

    Picture(FEDSP& e, int* table_, int w_, int h_) : table(table_), w(w_), h(h_), pixels(w_, h_)
    {
        e.FCMapping(FORMAT_NV12, e.m_pStaged, pixels.data(), table_, kIn, kIn, w, h, true);
    }
    // Above or below the middle grey; nothing where there is no source: such pixels show the
    // frame's first one.
    std::optional<double> value(int x, int y) const
    {
        const std::size_t k = std::size_t(y * w + x);
        if (fe::loadEntry(table, k).index == 0) return std::nullopt;
        return double(pixels[k]) - 120;
    }
};

// Where the picture crosses the middle grey between two neighbours, going along rows or columns.
std::vector<Point> crossings(const Picture& picture, bool alongRows)
{
    std::vector<Point> points;
    const int lines = alongRows ? picture.h : picture.w, length = alongRows ? picture.w : picture.h;
    for (int line = 0; line < lines; line += 5)
        for (int i = 0; i + 1 < length; ++i) {
            const auto a = alongRows ? picture.value(i, line) : picture.value(line, i);
            const auto b = alongRows ? picture.value(i + 1, line) : picture.value(line, i + 1);
            if (!a || !b || (*a < 0) == (*b < 0)) continue;
            const double at = i + *a / (*a - *b);
            points.push_back(alongRows ? Point{at, double(line)} : Point{double(line), at});
        }
    return points;
}

// How far the points lie from the line of least squares, output pixels.
struct Fit {
    double rms, worst;
};

Fit fitLine(const std::vector<Point>& points)
{
    double mx = 0, my = 0, xx = 0, xy = 0, yy = 0;
    for (const Point& p : points) {
        mx += p.x / double(points.size());
        my += p.y / double(points.size());
    }
    for (const Point& p : points) {
        xx += (p.x - mx) * (p.x - mx);
        xy += (p.x - mx) * (p.y - my);
        yy += (p.y - my) * (p.y - my);
    }
    const double angle = 0.5 * std::atan2(2 * xy, xx - yy);
    Fit fit{0, 0};
    for (const Point& p : points) {
        const double off = (p.y - my) * std::cos(angle) - (p.x - mx) * std::sin(angle);
        fit.rms += off * off / double(points.size());
        fit.worst = std::max(fit.worst, std::fabs(off));
    }
    fit.rms = std::sqrt(fit.rms);
    return fit;
}

struct View {
    short pan, tilt, aux;
};

// A line fitted to the edge in the picture; nothing when the edge is not in it.
std::optional<Fit> edgeIn(const Picture& picture)
{
    const auto across = crossings(picture, true), down = crossings(picture, false);
    const auto& points = across.size() > down.size() ? across : down;
    if (points.size() < 30) return std::nullopt;
    return fitLine(points);
}

// Renders the scene with all views of a layout at that position, at their lowest zoom.
void render(TestSlot& slot, Bytes& scene, int mode, int camPos, const View& view,
            int radius = kIn / 2)
{
    FE_CurPosParams position;
    std::memset(&position, 0, sizeof position);
    position.nViewMode = static_cast<unsigned short>(mode);
    position.nCamPos = static_cast<unsigned short>(camPos);
    position.nCenterX = position.nCenterY = kIn / 2;
    position.nRadius = static_cast<unsigned short>(radius);
    for (FE_ViewPosition& p : position.view)
        p = {view.pan, view.tilt, short(camPos == 1 ? 10 : 0), view.aux};
    FEDSP& e = slot.engine();
    slot.update(mode, camPos);
    e.LmFESetPosition(0, &position);
    e.m_bSetup = 1;
    for (int* table : {e.m_pMapTable, e.m_pSubMapA, e.m_pSubMapB})
        std::memset(table, 0, std::size_t(table == e.m_pMapTable ? kW * kH : kW / 2 * 388) * 8);
    OutputFrame out(kW, kH);
    slot.frame(scene, out);
}

std::optional<Fit> edgeOf(TestSlot& slot, Bytes& scene, int camPos, const View& view,
                          int radius = kIn / 2)
{
    render(slot, scene, 8, camPos, view, radius);
    return edgeIn(Picture(slot.engine(), slot.engine().m_pMapTable, kW, kH));
}

// The fast square root and arctangent bend a line by up to a pixel and a half where it is magnified
// most, near the picture's corners.
void expectStraight(const Fit& fit)
{
    EXPECT_LT(fit.rms, 1.0);
    EXPECT_LT(fit.worst, 2.0);
}

} // namespace

TEST(StraightLines, StayStraightWhateverPanTiltAndOffset)
{
    TestSlot slot(kIn, kIn, kW, kH);
    int seen = 0;
    for (double axis : {-30.0, 5.0, 25.0, 50.0})
        for (double turn : {10.0, 130.0, 250.0}) {
            Bytes scene = halfSpace(axis, turn);
            for (int camPos : {0, 2})
                for (const View& view : {View{0, 0, 0},
                                         {250, 0, 60},
                                         {700, 10, 0},
                                         {1100, 20, 30},
                                         {333, 35, 60},
                                         {901, 45, 64}}) {
                    const auto fit = edgeOf(slot, scene, camPos, view);
                    if (!fit) continue;
                    ++seen;
                    SCOPED_TRACE(testing::Message()
                                 << "axis " << axis << " turn " << turn << " mounting " << camPos
                                 << " pan " << view.pan << " tilt " << view.tilt);
                    expectStraight(*fit);
                }
        }
    EXPECT_GT(seen, 60);
}

TEST(StraightLines, StayStraightOnTheWallWhileItIsNotPanned)
{
    TestSlot slot(kIn, kIn, kW, kH);
    int seen = 0;
    for (double axis : {-20.0, 10.0, 40.0})
        for (double turn : {20.0, 140.0, 260.0}) {
            Bytes scene = halfSpace(axis, turn);
            for (const View& view : {View{0, 0, 0}, {0, 20, 0}, {0, -35, 0}, {0, 45, 0}}) {
                const auto fit = edgeOf(slot, scene, 1, view);
                if (!fit) continue;
                ++seen;
                SCOPED_TRACE(testing::Message()
                             << "axis " << axis << " turn " << turn << " tilt " << view.tilt);
                expectStraight(*fit);
            }
        }
    EXPECT_GT(seen, 20);
}

TEST(StraightLines, StayStraightInTheQuadAnd360Views)
{
    TestSlot slot(kIn, kIn, kW, kH);
    FEDSP& e = slot.engine();
    int seen = 0;
    for (double axis : {-30.0, 5.0, 50.0})
        for (double turn : {10.0, 130.0, 250.0}) {
            Bytes scene = halfSpace(axis, turn);
            for (int camPos : {0, 1, 2})
                for (const View& view : {View{0, 0, 0}, {250, 20, 40}, {901, 45, 49}}) {
                    const View seenFrom = camPos == 1 ? View{0, view.tilt, 0} : view;
                    for (int mode : {1, 2}) {
                        render(slot, scene, mode, camPos, seenFrom);
                        const int h = mode == 1 ? 300 : 388;
                        for (int* table : {e.m_pSubMapA, e.m_pSubMapB}) {
                            const auto fit = edgeIn(Picture(e, table, 400, h));
                            if (!fit) continue;
                            ++seen;
                            SCOPED_TRACE(testing::Message()
                                         << "mode " << mode << " axis " << axis << " turn " << turn
                                         << " mounting " << camPos << " tilt " << view.tilt);
                            expectStraight(*fit);
                        }
                        if (mode == 2) continue;
                        // View 4 alone: it shares its table with view 3, whose entries would show
                        // where it has no source.
                        std::memset(e.m_pMapTable, 0, 400 * 300 * 8);
                        e.m_nQuad4Key = -1;
                        OutputFrame out(kW, kH);
                        slot.frame(scene, out);
                        if (const auto fit = edgeIn(Picture(e, e.m_pMapTable, 400, 300))) {
                            ++seen;
                            expectStraight(*fit);
                        }
                    }
                }
        }
    EXPECT_GT(seen, 150);
}

// The test can tell: with another radius than the picture's, lines are bent.
TEST(StraightLines, AreBentWhenTheCircleIsWrong)
{
    TestSlot slot(kIn, kIn, kW, kH);
    Bytes scene = halfSpace(40, 10);
    const auto right = edgeOf(slot, scene, 0, {0, 0, 0});
    const auto wrong = edgeOf(slot, scene, 0, {0, 0, 0}, kIn / 2 - 60);
    ASSERT_TRUE(right && wrong);
    EXPECT_LT(right->rms, 1.0);
    EXPECT_GT(wrong->rms, 3.0);
}
