// One camera on show: its views, how they are steered, and its file.
#ifndef LUMOFE_VIEWER_SESSION_H
#define LUMOFE_VIEWER_SESSION_H

#include "Geometry.h"
#include "RenderPlan.h"
#include "StepQueue.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lumofe::viewer {

// Views are counted from 1; the 180 layout's panorama is view 1. What is steered is seen in the
// next frame. Throws Error for what cannot be done; then everything stays as it was.
class Session {
public:
    // options: as withCamera() and checkOptions() left them. input: even.
    Session(const RenderOptions& options, Size input);

    const DewarperSetup& setup() const { return dewarper_->setup(); }
    // Where the views look. What waits for the next frames is not in it.
    Position position() const { return positionOf(*dewarper_); }
    // Of the camera's file, in its order.
    const std::vector<Preset>& presets() const { return presets_; }
    // What may be missing in the picture; empty: nothing.
    const std::vector<std::string>& notes() const { return notes_; }

    // Other layouts and mountings come back as they were left.
    void showLayout(View view);
    void nextMount();

    // Has a view's picture follow the pointer: shares of the view's width and height.
    void drag(int view, double across, double down);
    // Notches of the wheel; positive: closer.
    void zoom(int view, double notches);
    void reset(int view);
    // Aims a view at a pixel of the raw picture, and keeps its zoom.
    void aimAt(int view, RawPixel pixel);

    // Moves the fisheye circle, also in the camera's file.
    void keepCircle(const Circle& circle);

    // Keeps the position in the camera's file under a new name, which is returned.
    std::string savePreset();
    void recallPreset(int index);

    // Whether the next frame looks different for the same input.
    bool changed() const { return changed_ || steps_.pending(); }

    // Bytes of dewarp()'s output, NV12.
    std::size_t outputBytes() const { return dewarper_->outputBytes(); }
    void dewarp(const std::uint8_t* input, std::uint8_t* output);

    bool hasCameraFile() const
    {
        return !options_.cameraPath.empty() && options_.cameraPath != "-";
    }
    const std::string& cameraPath() const { return options_.cameraPath; }

private:
    using Scene = std::pair<View, Mount>;

    void open(Scene scene, const Position& position);
    void show(Scene scene);
    Position usual(Scene scene) const;
    bool turnsPanorama() const;
    void turnPanorama(double degrees);
    void apply(const Position& position);

    RenderOptions options_; // of what does not depend on the layout
    Size input_;
    std::unique_ptr<Dewarper> dewarper_;
    std::map<Scene, Position> left_;
    std::vector<Preset> presets_;
    std::vector<std::string> notes_;
    StepQueue steps_;
    double panorama_ = 0; // degrees clockwise, with fractions
    bool changed_ = true;
};

} // namespace lumofe::viewer

#endif
