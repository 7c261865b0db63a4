// The viewer: plays the input, has it dewarped and drawn, and does what keys and mouse say.
#ifndef LUMOFE_VIEWER_VIEWER_H
#define LUMOFE_VIEWER_VIEWER_H

#include "Interaction.h"
#include "Meter.h"
#include "PlayClock.h"
#include "Player.h"
#include "Recorder.h"
#include "Session.h"
#include "Window.h"

#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumofe::viewer {

struct ViewerOptions {
    RenderOptions render;     // input, views, camera and ffmpeg
    std::string folder = "."; // where pictures and recordings go
};

class Viewer : private Commands {
public:
    // options: with the camera's file. player: of its input, not started; must outlive the viewer.
    // Throws Error for what cannot be opened.
    Viewer(const ViewerOptions& options, Player& player);
    ~Viewer();

    // Until it is closed. Then recordings and pictures are completed; throws Error when one fails.
    void run();

private:
    // Commands
    void showLayout(View view) override;
    void nextMount() override;
    void drag(int view, double across, double down) override;
    void zoom(int view, double notches) override;
    void reset(int view) override;
    void aimAt(int view, RawPixel pixel) override;
    void keepCircle(const Circle& circle) override;
    void savePreset() override;
    void recallPreset(int index) override;
    void savePicture() override;
    void toggleRecording() override;
    void quit() override { quits_ = true; }

    void waitForEvents();
    int waitingTime(double now) const;
    void handle(const SDL_Event& event);
    void play(double now);
    void render();
    void checkFiles();
    void completeFiles();
    void draw();
    void tell(const std::string& message);
    void stageChanged();
    Stage stage() const;

    template <class Action>
    void attempt(Action action);

    const ViewerOptions options_;
    Player& player_;
    Session session_;
    Window window_;
    Interaction interaction_;
    PlayClock clock_;
    Meter meter_;
    Frame frame_;   // of the input, shown last
    Frame picture_; // made of it
    bool hasFrame_ = false;
    bool newRaw_ = false; // the frame was not drawn raw yet
    bool ended_ = false;  // no more frames come
    bool redraws_ = true;
    bool quits_ = false;
    std::string message_;
    double messageEnds_ = 0;
    std::unique_ptr<Recorder> recorder_;            // none: not recording
    std::vector<std::unique_ptr<Recorder>> ending_; // completing their files
    double recordingBegan_ = 0;
    int recordedSeconds_ = 0;
    std::vector<std::future<std::string>> pictures_; // being written; their paths
};

} // namespace lumofe::viewer

#endif
