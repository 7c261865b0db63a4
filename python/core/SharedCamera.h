// A camera for several threads, which can be closed while others still hold it.
#ifndef LUMOFE_PYTHON_SHARED_CAMERA_H
#define LUMOFE_PYTHON_SHARED_CAMERA_H

#include "Dewarper.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

namespace lumofe {

// What of a view is to change: degrees and percent.
struct AimChange {
    std::optional<double> pan;
    std::optional<double> tilt;
    std::optional<double> zoom;
};

// Calls from several threads wait for one another. All but close() and closed() throw Error once
// the camera is closed.
class SharedCamera {
public:
    // The views begin at their default aims. The set-up's format is that of the frames given to
    // dewarp() and taken from it; where the layout garbles it, the library is fed NV12.
    explicit SharedCamera(const DewarperSetup& setup);

    void close();
    bool closed() const;

    // Steers views 1, 2, ...; the others stay as they are. No more aims than the layout has views,
    // each in the mounting's range.
    void aim(const std::vector<Aim>& aims);

    // Steers view `number`, 1 and up.
    void aim(int number, const AimChange& change);

    // Where the views look now, each in the mounting's range.
    std::vector<Aim> aims() const;

    // As in Dewarper.
    void step(int number, const Step& step);
    void turnPanorama(int degrees);
    int panoOffset() const;
    void setCircle(const Circle& circle);
    Circle circle() const;
    Aim directionOf(int x, int y) const;

    // Steers view `number`, 1 and up, so that its middle shows the pixel; without a zoom it keeps
    // its.
    void aimAt(int number, int x, int y, std::optional<double> zoom);
    std::vector<float> sourceMap() const;

    // Of the set-up's input and output size and format, top row first, RGB with red first.
    // Converted frames are copied, others read where they are.
    void dewarp(const std::uint8_t* input, std::uint8_t* output);

private:
    Dewarper& open() const;
    void dewarpOpen(const std::uint8_t* input, std::uint8_t* output);

    mutable std::mutex mutex_;
    const PixelFormat format_;
    mutable std::optional<Dewarper> dewarper_; // empty: closed
    std::vector<Aim> aims_;                    // what was asked for, or where steps led
    bool stepped_ = false;                     // since the last frame
};

} // namespace lumofe

#endif
