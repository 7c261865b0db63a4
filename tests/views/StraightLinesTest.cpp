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

// Where the picture crosses the middle grey between two neighbours, going along rows or columns.
std::vector<Point> crossings(const OutputFrame& out, const FEDSP& e, bool alongRows)
{
    std::vector<Point> points;
    const auto value = [&](int x, int y) -> std::optional<double> {
        const std::size_t k = std::size_t(y * kW + x);
        // Entries without a source show the frame's first pixel; they are no part of the picture.
        const fe::MapEntry entry = fe::loadEntry(e.m_pMapTable, k);
        if (entry.index == 0) return std::nullopt;
        const int row = e.m_nCamPos == 0 ? y : kH - 1 - y;
        return double(out[std::size_t(row * kW + x)]) - 120;
    };
    const int lines = alongRows ? kH : kW, length = alongRows ? kW : kH;
    for (int line = 0; line < lines; line += 5)
        for (int i = 0; i + 1 < length; ++i) {
            const auto a = alongRows ? value(i, line) : value(line, i);
            const auto b = alongRows ? value(i + 1, line) : value(line, i + 1);
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

// Renders the view at its lowest zoom and fits a line to the scene's edge; nothing when the edge is
// not in the picture.
std::optional<Fit> edgeOf(TestSlot& slot, Bytes& scene, int camPos, const View& view,
                          int radius = kIn / 2)
{
    FE_CurPosParams position;
    std::memset(&position, 0, sizeof position);
    position.nViewMode = 8;
    position.nCamPos = static_cast<unsigned short>(camPos);
    position.nCenterX = position.nCenterY = kIn / 2;
    position.nRadius = static_cast<unsigned short>(radius);
    position.view[0] = {view.pan, view.tilt, short(camPos == 1 ? 10 : 0), view.aux};
    FEDSP& e = slot.engine();
    slot.update(8, camPos);
    e.LmFESetPosition(0, &position);
    e.m_bSetup = 1;
    std::memset(e.m_pMapTable, 0, std::size_t(kW) * kH * 8);
    OutputFrame out(kW, kH);
    slot.frame(scene, out);
    const auto across = crossings(out, e, true), down = crossings(out, e, false);
    const auto& points = across.size() > down.size() ? across : down;
    if (points.size() < 30) return std::nullopt;
    return fitLine(points);
}

} // namespace

// The fast square root and arctangent bend a line by up to a pixel and a half where it is magnified
// most, near the picture's corners.
void expectStraight(const Fit& fit)
{
    EXPECT_LT(fit.rms, 1.0);
    EXPECT_LT(fit.worst, 2.0);
}

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
