// The camera of one element: follows the settings from frame to frame.
#ifndef LUMOFE_GST_LIVE_CAMERA_H
#define LUMOFE_GST_LIVE_CAMERA_H

#include "Settings.h"

#include <gst/video/video.h>
#include <memory>
#include <vector>

namespace lumofe {

// Used by one thread at a time.
class LiveCamera {
public:
    // Occupies one of the library's slots until close(). Throws Error, naming the property or caps
    // to change, for a circle or output that cannot be, and when no slot is free.
    void open(const Settings& settings, Size input, Size output, PixelFormat format);
    void close();
    bool isOpen() const { return dewarper_ != nullptr; }

    // Of an open camera: takes up what changed since the last call. A layout or mounting that the
    // sizes or the format do not suit is left until the camera is opened anew. Throws Error for a
    // circle or camera's file that does not suit the input, once: the circle before stays,
    // everything else is taken up. Is closed, and throws Error, when it had to start anew and
    // another camera was faster to take the slot.
    void follow(const Settings& settings);

    // Of an open camera: dewarps mapped frames of the sizes and the format that it was opened with.
    void dewarp(const GstVideoFrame& input, GstVideoFrame& output);

    // How far the views could pan in the last frame. Known of the wall's views that were asked for
    // more: there it depends on the zoom and the input.
    PanReach panReach() const;

private:
    void start(const DewarperSetup& setup);

    Settings followed_;
    std::unique_ptr<Dewarper> dewarper_;
    std::vector<std::uint8_t> in_, out_; // of frames that are not tight
};

} // namespace lumofe

#endif
