// Draws pan and tilt, as the library reports them, onto the fisheye picture of the test scene, and
// the outline of what the single view shows of it: draw_directions MOUNT OUT
#include "Error.h"
#include "LibraryOutput.h"
#include "Parse.h"
#include "StillFile.h"
#include "media/Drawing.h"
#include "scene/FisheyeLens.h"
#include "scene/Room.h"

#include <FEDSP.h>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <numbers>
#include <string>
#include <vector>

namespace lumofe {
namespace {

constexpr int kInput = 1280; // side of the library's input, pixels; its circle fills it
constexpr Size kView{800, 600};
constexpr int kShown = 440;       // side of the picture in the drawing
constexpr int kMargin = 40;       // around it
constexpr int kFine = 2 * kShown; // lines are drawn at this size and scaled down
constexpr double kFineScale = double(kFine) / kInput;
constexpr double kShownScale = double(kShown) / kInput;
constexpr int kQuality = 70; // of JPEG files
constexpr Rgb kPanColour{255, 225, 70}, kTiltColour{110, 230, 255}, kViewColour{255, 255, 255},
    kTopColour{255, 110, 90}, kInk{0, 0, 0};

// What is drawn of each mounting.
struct Plan {
    int panStep, tiltStep; // of the lines, tenths of a degree
    Aim aim;               // of the single view, degrees
};

Plan planOf(Mount mount)
{
    switch (mount) {
    case Mount::ceiling:
        return {300, 300, {0, 60, 0}};
    case Mount::floor:
        return {300, 300, {0, -60, 0}};
    case Mount::wall:
        break;
    }
    return {300, 300, {0, 0, 0}};
}

// A slot that shows the single view of a mounting.
class Slot {
public:
    explicit Slot(Mount mount)
        : mount_(mount), in_(kInput * kInput * 3 / 2), out_(kView.width * kView.height * 3 / 2)
    {
        check(Initialize(0, kInput, kInput, kView.width, kView.height, FORMAT_NV12));
        FE_ViewParams view;
        view.nViewMode = 8;
        view.nCamPos = static_cast<unsigned short>(mount);
        view.nCenterX = view.nCenterY = view.nRadius = view.nRadius2 = kInput / 2;
        view.nOverlay = 0;
        FE_EventParams still;
        check(ParamsUpdated(0, &still, &view));
    }
    ~Slot() { Close(0); }
    Slot(const Slot&) = delete;
    Slot& operator=(const Slot&) = delete;

    struct Direction {
        short pan = 0, tilt = 0;
    };
    Direction at(double x, double y)
    {
        Direction d;
        eye_.GetAbsolutePositionFromInputVideoPoint(0, int(std::lround(x)), int(std::lround(y)),
                                                    d.pan, d.tilt);
        return d;
    }

    // Builds the single view's table.
    void aim(const Aim& aim)
    {
        eye_.SetAbsolutePTZ(0, short(aim.pan * 10), short(aim.tilt * 10), 0, 1);
        check(VideoInput(0, in_.data(), out_.data(), kInput, kInput, FORMAT_NV12, false));
    }

    // Calls put(x, y) for the source of a pixel of the finished single view.
    template <class Put>
    void source(int column, int row, Put put) const
    {
        // On the other mountings the view is turned over after the table was applied.
        const int mapped = mount_ == Mount::ceiling ? row : kView.height - 1 - row;
        const int index = m_FEDSP[0]->m_pMapTable[2 * (mapped * kView.width + column) + 1];
        if (index != 0) put(index % kInput, index / kInput);
    }

private:
    static void check(int status)
    {
        if (status != FE_STATUS_OK)
            throw Error("the library refused the slot with status " + std::to_string(status));
    }

    Mount mount_;
    std::vector<std::uint8_t> in_, out_;
    IFishEye eye_;
};

void dot(Image& image, double x, double y, double radius, Rgb colour)
{
    const int reach = int(radius) + 1, cx = int(std::lround(x)), cy = int(std::lround(y));
    for (int py = cy - reach; py <= cy + reach; ++py)
        for (int px = cx - reach; px <= cx + reach; ++px) {
            if (px < 0 || py < 0 || px >= image.size.width || py >= image.size.height) continue;
            if (std::hypot(px - x, py - y) > radius) continue;
            std::uint8_t* p = image.pixel(px, py);
            p[0] = colour.r;
            p[1] = colour.g;
            p[2] = colour.b;
        }
}

int floorDivide(int value, int step)
{
    return value >= 0 ? value / step : -((step - 1 - value) / step);
}

// A line runs wherever two neighbours lie on different sides of a multiple of the step.
void drawGrid(Image& image, Slot& slot, const Plan& plan)
{
    const auto lookUp = [&](int x, int y) { return slot.at(x / kFineScale, y / kFineScale); };
    for (int y = 0; y < kFine; ++y)
        for (int x = 0; x < kFine; ++x) {
            if (std::hypot(x - kFine / 2, y - kFine / 2) >= kFine / 2 - 1) continue;
            const Slot::Direction here = lookUp(x, y);
            for (const Slot::Direction& next : {lookUp(x + 1, y), lookUp(x, y + 1)}) {
                if (floorDivide(here.tilt, plan.tiltStep) != floorDivide(next.tilt, plan.tiltStep))
                    dot(image, x, y, 1.5, kTiltColour);
                if (floorDivide(here.pan, plan.panStep) != floorDivide(next.pan, plan.panStep))
                    dot(image, x, y, 1.5, kPanColour);
            }
        }
}

void drawView(Image& image, const Slot& slot)
{
    const auto put = [&](Rgb colour, double radius) {
        return [&image, colour, radius](int x, int y) {
            dot(image, x * kFineScale, y * kFineScale, radius, colour);
        };
    };
    for (int row = 0; row < kView.height; ++row)
        for (int column : {0, kView.width - 1})
            slot.source(column, row, put(kViewColour, 2.5));
    for (int column = 0; column < kView.width; ++column) {
        slot.source(column, kView.height - 1, put(kViewColour, 2.5));
        slot.source(column, 0, put(kTopColour, 5));
    }
    // From its middle upwards.
    for (int row = 0; row < kView.height / 2; ++row)
        slot.source(kView.width / 2, row, put(kTopColour, 1.5));
    slot.source(kView.width / 2, kView.height / 2, put(kTopColour, 8));
}

struct Point {
    double x = 0, y = 0;
};

// The point of a path, which runs from 0 to 1, where the library reports the value most closely.
template <class Path, class Value>
Point whereNearest(Slot& slot, Path path, Value value, int target)
{
    constexpr int kSteps = 4 * kInput;
    Point best;
    int smallest = INT_MAX;
    for (int i = 0; i <= kSteps; ++i) {
        const Point p = path(double(i) / kSteps);
        const int distance = std::abs(value(slot.at(p.x, p.y)) - target);
        if (distance >= smallest) continue;
        smallest = distance;
        best = p;
    }
    return best;
}

int pan(const Slot::Direction& d)
{
    return d.pan;
}

int tilt(const Slot::Direction& d)
{
    return d.tilt;
}

// Writes a number of tenths of a degree, its middle at a point of the library's input.
void label(Image& drawing, Point where, int tenths, Rgb colour)
{
    const std::string text = std::to_string(tenths / 10);
    const int w = textWidth(text) * 2, h = kTextHeight * 2 - 8;
    const int x = kMargin + int(where.x * kShownScale) - w / 2;
    const int y = kMargin + int(where.y * kShownScale) - h / 2;
    paste(drawing, filled({w + 4, h + 2}, kInk), x - 2, y - 2);
    drawText(drawing, x, y, 2, text, colour);
}

// The point that lies so many radii from the centre, clockwise from the top.
Point around(double degrees, double radii)
{
    const double a = degrees * std::numbers::pi / 180, r = radii * kInput / 2;
    return {kInput / 2 + r * std::sin(a), kInput / 2 - r * std::cos(a)};
}

// Pan numbers outside the rim, tilt numbers along a radius.
void labelOnAxis(Image& drawing, Slot& slot, const Plan& plan, int tiltSign)
{
    for (int p = 0; p < 3600; p += plan.panStep) {
        const Point rim = whereNearest(
            slot, [](double s) { return around(s * 360, 0.98); }, pan, p);
        const auto outside = [](double v) { return kInput / 2 + (v - kInput / 2) * 1.1 / 0.98; };
        label(drawing, {outside(rim.x), outside(rim.y)}, p, kPanColour);
    }
    for (int t = 0; t <= 900; t += plan.tiltStep)
        label(drawing,
              whereNearest(
                  slot, [](double s) { return around(285, s); }, tilt, t * tiltSign),
              t * tiltSign, kTiltColour);
}

// Pan numbers along the middle row, tilt numbers along the middle column.
void labelOnWall(Image& drawing, Slot& slot, const Plan& plan)
{
    for (int p = -900; p <= 900; p += plan.panStep) {
        const Point at = whereNearest(
            slot,
            [](double s) {
                return Point{s * kInput, kInput / 2};
            },
            pan, p);
        label(drawing, {at.x, at.y + 36}, p, kPanColour);
    }
    for (int t = -900; t <= 900; t += plan.tiltStep) {
        const Point at = whereNearest(
            slot,
            [](double s) {
                return Point{kInput / 2, s * kInput};
            },
            tilt, t);
        label(drawing, {at.x + 44, at.y}, t, kTiltColour);
    }
}

void legend(Image& drawing, const Plan& plan)
{
    const auto degrees = [](double v) { return std::to_string(int(v)); };
    const int y = kMargin + kShown + kMargin, x = 8;
    drawText(drawing, x, y, 2, "pan", kPanColour);
    drawText(drawing, x + textWidth("pan ") * 2 + 4, y, 2, "tilt, degrees", kTiltColour);
    const std::string view =
        "single view at pan " + degrees(plan.aim.pan) + ", tilt " + degrees(plan.aim.tilt);
    drawText(drawing, x, y + 2 * kTextHeight, 2, view, kViewColour);
    drawText(drawing, x + textWidth(view + "  ") * 2, y + 2 * kTextHeight, 2, "up in it",
             kTopColour);
}

Image drawDirections(Mount mount)
{
    const Plan plan = planOf(mount);
    Slot slot(mount);
    slot.aim(plan.aim);

    Image scene = renderFisheye(Room(), cameraFor(mount), kShown);
    for (std::uint8_t& byte : scene.bytes)
        byte = std::uint8_t(byte * 5 / 8); // so that the lines stand out
    Image fine = scaled(scene, {kFine, kFine});
    drawGrid(fine, slot, plan);
    drawView(fine, slot);

    Image drawing = filled({kShown + 2 * kMargin, kShown + 2 * kMargin + 5 * kTextHeight}, kInk);
    paste(drawing, scaled(fine, {kShown, kShown}), kMargin, kMargin);
    if (mount == Mount::wall)
        labelOnWall(drawing, slot, plan);
    else
        labelOnAxis(drawing, slot, plan, mount == Mount::ceiling ? 1 : -1);
    legend(drawing, plan);
    return drawing;
}

void run(const std::string& mount, const std::string& path)
{
    Image drawing;
    {
        const LibraryOutput quiet(LibraryOutput::Target::discard);
        drawing = drawDirections(parseMount(mount));
    }
    writeStill(path, drawing, kQuality);
}

} // namespace
} // namespace lumofe

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: draw_directions ceiling|wall|floor OUT.jpg\n");
        return 2;
    }
    try {
        lumofe::run(argv[1], argv[2]);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "draw_directions: %s\n", e.what());
        return 2;
    }
}
