// The viewer.
#include "Viewer.h"

#include "Error.h"
#include "NumberedFile.h"
#include "SdlInput.h"
#include "Signals.h"
#include "StillFile.h"
#include "media/Y4m.h"
#include "video/Stopwatch.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace lumofe::viewer {
namespace {

constexpr double kMessageSeconds = 4;
constexpr int kLongestWait = 100;   // milliseconds until signals and files are looked after again
constexpr Uint32 kPollInterval = 2; // milliseconds from one look for events to the next

double now()
{
    return secondsOf(CLOCK_MONOTONIC);
}

// Has the loop look for new frames.
void wakeUp()
{
    SDL_Event event{};
    event.type = SDL_USEREVENT;
    SDL_PushEvent(&event);
}

template <class Future>
bool isReady(const Future& future)
{
    return future.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

// Returns the path.
std::string writePicture(const std::string& path, const Frame& frame, Size size)
{
    try {
        writeStill(path, screenColours(frame, size));
        return path;
    } catch (const Error&) {
        unlink(path.c_str());
        throw;
    }
}

} // namespace

Viewer::Viewer(const ViewerOptions& options, Player& player)
    : options_(options), player_(player), session_(options.render, player_.format().size),
      window_(withoutPasswords("lumofe-view: " + options.render.input), session_.setup().output,
              player_.format()),
      interaction_(*this, stage()), clock_(frameRate(player_.format().tags))
{
    for (const std::string& note : session_.notes())
        std::fprintf(stderr, "lumofe-view: note: %s\n", note.c_str());
    player_.start(wakeUp);
}

Viewer::~Viewer()
{
    // Its thread pushes events, for which SDL must be there.
    player_.stop();
}

Stage Viewer::stage() const
{
    return {window_.size(),        session_.setup().input,  session_.setup().output,
            session_.setup().view, session_.setup().circle, int(session_.presets().size())};
}

void Viewer::run()
{
    while (!quits_ && !signalWaits()) {
        waitForEvents();
        play(now());
        checkFiles();
        if (!redraws_ && !meter_.outdated(now())) continue;
        draw();
        redraws_ = meter_.shown(now());
    }
    completeFiles();
}

int Viewer::waitingTime(double now) const
{
    if (redraws_ || (hasFrame_ && session_.changed())) return 0;
    const bool ticks =
        recorder_ || (!player_.live() && !interaction_.paused() && !(player_.still() && hasFrame_));
    if (!ticks) return kLongestWait;
    return std::clamp(int(std::ceil(1000 * (clock_.next() - now))), 0, kLongestWait);
}

// Not by SDL_WaitEventTimeout: under X, it has itself woken up by events that it sends to the
// window through a connection of its own, and one that comes after the window is gone ends the
// program.
void Viewer::waitForEvents()
{
    const Uint64 end = SDL_GetTicks64() + Uint64(waitingTime(now()));
    SDL_Event event;
    while (!SDL_PollEvent(&event)) {
        if (SDL_GetTicks64() >= end) return;
        SDL_Delay(kPollInterval);
    }
    do {
        handle(event);
    } while (SDL_PollEvent(&event));
}

void Viewer::handle(const SDL_Event& event)
{
    if (event.type == SDL_QUIT) quits_ = true;
    if (event.type == SDL_WINDOWEVENT) stageChanged();
    const bool paused = interaction_.paused();
    if (!forward(event, interaction_)) return;
    if (paused && !interaction_.paused()) clock_.restart();
    meter_.input(now() - (SDL_GetTicks() - event.common.timestamp) / 1000.0);
    redraws_ = true;
}

void Viewer::play(double now)
{
    const bool plays = !interaction_.paused() || !hasFrame_;
    bool newFrame = false;
    int ticks = 0;
    if (recorder_ || (plays && !player_.live())) ticks = clock_.due(now);
    if (plays)
        for (int i = 0; i < (player_.live() ? 1 : ticks); ++i)
            newFrame = player_.take(frame_) || newFrame;
    hasFrame_ = hasFrame_ || newFrame;
    newRaw_ = newRaw_ || newFrame;
    if (hasFrame_ && (newFrame || session_.changed())) render();
    if (recorder_ && ticks > 0 && hasFrame_) recorder_->record(picture_, ticks);
}

void Viewer::render()
{
    Elapsed time;
    {
        const Stopwatch stopwatch(time);
        picture_.resize(session_.outputBytes());
        session_.dewarp(frame_.data(), picture_.data());
    }
    meter_.dewarped(time.wall);
    window_.setPicture(picture_, session_.setup().output);
    redraws_ = true;
}

void Viewer::draw()
{
    const bool circle = interaction_.mode() == Interaction::Mode::circle;
    const bool showsRaw = circle || interaction_.showsRaw();
    if (showsRaw && newRaw_) {
        window_.setRaw(frame_, session_.setup().input);
        newRaw_ = false;
    }
    window_.clear();
    if (!circle) {
        window_.drawPicture(interaction_.pictureArea());
        if (layoutRule(session_.setup().view).views > 1)
            window_.markView(viewArea(session_.setup().view, interaction_.selected(),
                                      interaction_.pictureArea()));
    }
    if (showsRaw) window_.drawRaw(interaction_.rawArea());
    if (circle)
        window_.drawCircle(interaction_.circle(), session_.setup().input, interaction_.rawArea());

    Status status{session_.setup().view, session_.setup().mount,
                  meter_.measured(),     ended_,
                  interaction_.paused(), {}};
    if (recorder_) status.recordedSeconds = recordedSeconds_;
    Lines top{statusLine(status)};
    if (circle) {
        const Lines lines = circleLines(interaction_.circle());
        top.insert(top.end(), lines.begin(), lines.end());
    }
    window_.drawPanel(Window::Place::topLeft, top);
    if (interaction_.mode() == Interaction::Mode::presets)
        window_.drawPanel(Window::Place::middle,
                          presetLines(session_.presets(), interaction_.firstPreset(),
                                      session_.hasCameraFile() ? session_.cameraPath() : ""));
    else if (interaction_.showsHelp())
        window_.drawPanel(Window::Place::middle, helpLines());
    if (!message_.empty()) window_.drawPanel(Window::Place::bottomLeft, {message_});
    window_.present();
}

void Viewer::tell(const std::string& message)
{
    message_ = message;
    messageEnds_ = now() + kMessageSeconds;
    redraws_ = true;
}

void Viewer::stageChanged()
{
    interaction_.setStage(stage());
    redraws_ = true;
}

void Viewer::checkFiles()
{
    if (const std::string ending = player_.takeEnding(); !ending.empty()) {
        ended_ = true;
        tell(withoutPasswords(ending));
    }
    std::erase_if(pictures_, [this](auto& picture) {
        if (!isReady(picture)) return false;
        attempt([&] { tell("saved " + picture.get()); });
        return true;
    });
    if (recorder_ && recorder_->finished()) ending_.push_back(std::move(recorder_));
    std::erase_if(ending_, [this](const auto& recorder) {
        if (!recorder->finished()) return false;
        tell(recorder->failure().empty() ? "recorded " + recorder->path() : recorder->failure());
        return true;
    });
    if (const int seconds = int(now() - recordingBegan_);
        recorder_ && seconds != recordedSeconds_) {
        recordedSeconds_ = seconds;
        redraws_ = true;
    }
    if (!message_.empty() && now() > messageEnds_) {
        message_.clear();
        redraws_ = true;
    }
}

void Viewer::completeFiles()
{
    if (recorder_) ending_.push_back(std::move(recorder_));
    for (const auto& recorder : ending_)
        recorder->stop();
    std::string failure;
    for (const auto& recorder : ending_) {
        recorder->finish();
        if (!recorder->failure().empty()) failure = recorder->failure();
    }
    ending_.clear();
    for (auto& picture : pictures_)
        picture.get();
    if (!failure.empty()) throw Error(failure);
}

template <class Action>
void Viewer::attempt(Action action)
{
    try {
        action();
    } catch (const Error& e) {
        tell(e.what());
    }
    if (recorder_ && recorder_->size() != session_.setup().output) toggleRecording();
    stageChanged();
}

void Viewer::showLayout(View view)
{
    attempt([&] {
        session_.showLayout(view);
        if (!session_.notes().empty()) tell(session_.notes().front());
    });
}

void Viewer::nextMount()
{
    attempt([&] {
        session_.nextMount();
        tell(std::string("camera on the ") + mountRule(session_.setup().mount).name);
    });
}

void Viewer::drag(int view, double across, double down)
{
    session_.drag(view, across, down);
}

void Viewer::zoom(int view, double notches)
{
    session_.zoom(view, notches);
}

void Viewer::reset(int view)
{
    session_.reset(view);
}

void Viewer::aimAt(int view, RawPixel pixel)
{
    attempt([&] { session_.aimAt(view, pixel); });
}

void Viewer::keepCircle(const Circle& circle)
{
    attempt([&] {
        session_.keepCircle(circle);
        const std::string text = std::to_string(circle.x) + "," + std::to_string(circle.y) + "," +
                                 std::to_string(circle.radius);
        tell(session_.hasCameraFile() ? "circle " + text + " kept in " + session_.cameraPath()
                                      : "next time, start with --circle " + text);
    });
}

void Viewer::savePreset()
{
    attempt([&] { tell("saved preset '" + session_.savePreset() + "'"); });
}

void Viewer::recallPreset(int index)
{
    attempt([&] {
        session_.recallPreset(index);
        tell("preset '" + session_.presets()[std::size_t(index)].name + "'");
    });
}

void Viewer::savePicture()
{
    if (!hasFrame_) return;
    attempt([&] {
        const std::string path = createNumbered(options_.folder, ".png");
        pictures_.push_back(
            std::async(std::launch::async, writePicture, path, picture_, session_.setup().output));
    });
}

void Viewer::toggleRecording()
{
    if (!hasFrame_) return;
    if (recorder_) {
        recorder_->stop();
        tell("completing " + recorder_->path());
        ending_.push_back(std::move(recorder_));
        return;
    }
    attempt([&] {
        VideoFormat format = player_.format();
        format.size = session_.setup().output;
        format.audio.clear();
        recorder_ = std::make_unique<Recorder>(options_.render.ffmpeg,
                                               createNumbered(options_.folder, ".mp4"), format);
        recordingBegan_ = now();
        recordedSeconds_ = 0;
        // At once, so that the video is never empty.
        recorder_->record(picture_, 1);
        tell("recording " + recorder_->path() + "; V stops");
    });
}

} // namespace lumofe::viewer
