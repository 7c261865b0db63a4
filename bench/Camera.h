// A camera slot that is set up and shows a steady picture.
#ifndef LUMOFE_BENCH_CAMERA_H
#define LUMOFE_BENCH_CAMERA_H

#include "FEDSP.h"

#include <vector>

namespace bench {

using Bytes = std::vector<unsigned char>;

struct Size {
    int w, h;
};

constexpr std::size_t area(Size size)
{
    return std::size_t(size.w) * std::size_t(size.h);
}

constexpr std::size_t frameBytes(Size size, FORMAT format)
{
    return format == FORMAT_RGB ? area(size) * 3 : area(size) * 3 / 2;
}

// What the benchmarks show.
constexpr Size kInput{2048, 2048}, kScreen{1920, 1080};

enum Layout { kQuad = 1, k360 = 2, k180 = 4, kSingle = 8 };

// A frame of deterministic noise.
Bytes noise(Size size, FORMAT format);

class Camera {
public:
    static constexpr int kFirstFrames = 10; // the library prepares steady tables bit by bit

    struct Setup {
        Layout layout = kSingle;
        FORMAT format = FORMAT_NV12;
        int pan = 450, tilt = 600; // of the single view, tenths of a degree
        int panStep = 0;           // of the single view: not 0 turns it with every frame
        Size input = kInput, screen = kScreen;
    };

    // Takes a free slot and feeds its first kFirstFrames frames, after which tables are built and
    // steady. Throws std::runtime_error when the library refuses.
    explicit Camera(const Setup& setup);
    ~Camera();
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    // Closes the slot and sets it up anew, as the constructor does.
    void restart();
    // A whole frame, as hosts feed it.
    void feed();
    // The single view of the staged frame, without staging it again.
    void map();

    FEDSP& engine() { return *m_FEDSP[slot_]; }
    const Setup& setup() const { return setup_; }
    Bytes& input() { return in_; }
    const Bytes& output() const { return out_; }

private:
    void open();

    Setup setup_;
    int slot_;
    Bytes in_, out_;
};

// The table of a steady single view, as a host of the kernels would bring it: an entry has two
// words.
std::vector<int> callersTable(Camera& camera);

// While it lives, standard output leads nowhere: the library prints on it while it works.
class QuietStdout {
public:
    QuietStdout();
    ~QuietStdout();
    QuietStdout(const QuietStdout&) = delete;
    QuietStdout& operator=(const QuietStdout&) = delete;

private:
    int saved_;
};

} // namespace bench

#endif
