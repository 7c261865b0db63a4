// Where a camera's views look in the course of its tour.
#include "camera/Tour.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lumofe {
namespace {

// From 0 to 1 with no jump in speed at either end.
double eased(double t)
{
    return t * t * (3 - 2 * t);
}

double between(double from, double to, double t)
{
    return from + (to - from) * t;
}

double turned(double from, double to, double t)
{
    const double degrees = std::fmod(from + std::remainder(to - from, 360) * t, 360);
    return degrees < 0 ? degrees + 360 : degrees;
}

Aim between(const Aim& from, const Aim& to, Mount mount, double t)
{
    Aim aim{mount == Mount::wall ? between(from.pan, to.pan, t) : turned(from.pan, to.pan, t),
            between(from.tilt, to.tilt, t), between(from.zoom, to.zoom, t)};
    if (from.offset && to.offset)
        aim.offset = int(std::lround(between(*from.offset, *to.offset, t)));
    return aim;
}

Position between(const Position& from, const Position& to, Mount mount, double t)
{
    Position position;
    for (std::size_t i = 0; i < from.views.size(); ++i)
        position.views.push_back(between(from.views[i], to.views[i], mount, t));
    position.panoOffset = int(std::lround(turned(from.panoOffset, to.panoOffset, t)));
    return position;
}

const Position& positionAt(const CameraFile& camera, const TourStop& stop)
{
    return findPreset(camera, stop.preset)->position;
}

} // namespace

double tourSeconds(const Tour& tour)
{
    double seconds = 0;
    for (const TourStop& stop : tour.stops)
        seconds += stop.stay + stop.glide;
    if (!tour.repeat && !tour.stops.empty()) seconds -= tour.stops.back().glide;
    return seconds;
}

Position tourAt(const CameraFile& camera, double seconds)
{
    const Tour& tour = camera.tour;
    if (tour.repeat && seconds > 0) seconds = std::fmod(seconds, tourSeconds(tour));
    for (std::size_t i = 0; i < tour.stops.size(); ++i) {
        const TourStop& stop = tour.stops[i];
        const Position& here = positionAt(camera, stop);
        const bool last = i + 1 == tour.stops.size();
        if (seconds < stop.stay || (last && !tour.repeat)) return here;
        seconds -= stop.stay;
        if (seconds < stop.glide)
            return between(here, positionAt(camera, tour.stops[last ? 0 : i + 1]), camera.mount,
                           eased(seconds / stop.glide));
        seconds -= stop.glide;
    }
    // Rounding may leave a rest of the round, and nothing precedes the start.
    return positionAt(camera, tour.stops.front());
}

CameraFile withOffsets(CameraFile camera, Dewarper& dewarper)
{
    for (const TourStop& stop : camera.tour.stops) {
        Position& position =
            std::ranges::find(camera.presets, stop.preset, &Preset::name)->position;
        dewarper.aim(position.views);
        position.views = positionOf(dewarper).views;
    }
    return camera;
}

} // namespace lumofe
