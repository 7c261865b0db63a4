// Takes down what keys and mouse have the viewer do.
#ifndef LUMOFE_TESTS_VIEWER_COMMAND_LOG_H
#define LUMOFE_TESTS_VIEWER_COMMAND_LOG_H

#include "Interaction.h"

#include <sstream>
#include <string>

namespace lumofe::test {

class CommandLog : public viewer::Commands {
public:
    // Each command with a semicolon and a space.
    std::string text() const { return log_.str(); }
    void clear() { log_.str({}); }

    void showLayout(View view) override { log_ << "layout " << layoutRule(view).name << "; "; }
    void nextMount() override { log_ << "mount; "; }
    void drag(int view, double across, double down) override
    {
        log_ << "drag " << view << " by " << across << "," << down << "; ";
    }
    void zoom(int view, double notches) override
    {
        log_ << "zoom " << view << " by " << notches << "; ";
    }
    void reset(int view) override { log_ << "reset " << view << "; "; }
    void aimAt(int view, viewer::RawPixel pixel) override
    {
        log_ << "aim " << view << " at " << pixel.x << "," << pixel.y << "; ";
    }
    void keepCircle(const Circle& c) override
    {
        log_ << "circle " << c.x << "," << c.y << "," << c.radius << "; ";
    }
    void savePreset() override { log_ << "save preset; "; }
    void recallPreset(int index) override { log_ << "preset " << index << "; "; }
    void savePicture() override { log_ << "picture; "; }
    void toggleRecording() override { log_ << "record; "; }
    void quit() override { log_ << "quit; "; }

private:
    std::ostringstream log_;
};

// A window of 400 x 300 pixels that the single view fills, of a raw picture of 1000 x 1000.
inline viewer::Stage smallStage()
{
    return {{400, 300}, {1000, 1000}, {400, 300}, View::single, {500, 500, 480}, 0};
}

} // namespace lumofe::test

#endif
