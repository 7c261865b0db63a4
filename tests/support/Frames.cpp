#include "Frames.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

std::size_t frameBytes(int w, int h, FORMAT format)
{
    const std::size_t pixels = std::size_t(w) * std::size_t(h);
    return format == FORMAT_RGB ? pixels * 3 : pixels * 3 / 2;
}

Bytes patternFrame(int w, int h, FORMAT format, std::uint32_t seed)
{
    Bytes frame(frameBytes(w, h, format));
    const std::size_t row = std::size_t(w) * (format == FORMAT_RGB ? 3 : 1);
    for (std::size_t i = 0; i < frame.size(); ++i) {
        const std::uint32_t x = std::uint32_t(i % row), y = std::uint32_t(i / row);
        const std::uint32_t cell =
            (x / 9 * 2654435761u) ^ (y / 7 * 2246822519u) ^ (seed * 3266489917u);
        frame[i] = static_cast<unsigned char>((cell >> 13) % 200 + x % 9 * 3 + y % 7 * 2);
    }
    return frame;
}

Bytes constantFrame(int w, int h, FORMAT format, unsigned char value)
{
    Bytes frame(frameBytes(w, h, format), value);
    if (format != FORMAT_RGB)
        std::fill(frame.begin() + std::ptrdiff_t(w) * h, frame.end(),
                  static_cast<unsigned char>(128));
    return frame;
}

std::uint64_t hashOf(const unsigned char* data, std::size_t size)
{
    std::uint64_t hash = 14695981039346656037u;
    for (std::size_t i = 0; i < size; ++i)
        hash = (hash ^ data[i]) * 1099511628211u;
    return hash;
}

std::uint64_t hashOf(const Bytes& bytes)
{
    return hashOf(bytes.data(), bytes.size());
}

OutputFrame::OutputFrame(int w, int h, FORMAT format, unsigned char fill)
    : bytes_(frameBytes(w, h, format) + 2 * kGuard, fill)
{
    std::fill_n(bytes_.begin(), kGuard, static_cast<unsigned char>(0xC3));
    std::fill_n(bytes_.end() - std::ptrdiff_t(kGuard), kGuard, static_cast<unsigned char>(0xC3));
}

void OutputFrame::checkGuards() const
{
    const auto isGuard = [](unsigned char b) { return b == 0xC3; };
    if (std::all_of(bytes_.begin(), bytes_.begin() + std::ptrdiff_t(kGuard), isGuard) &&
        std::all_of(bytes_.end() - std::ptrdiff_t(kGuard), bytes_.end(), isGuard))
        return;
    std::fprintf(stderr, "bytes were written outside an output frame of %zu bytes\n", size());
    std::abort();
}

TestSlot::TestSlot(int inW, int inH, int screenW, int screenH, int slot)
    : slot_(slot), inW_(inW), inH_(inH),
      status_(Initialize(slot, inW, inH, screenW, screenH, FORMAT_NV12))
{
}

TestSlot::~TestSlot()
{
    Close(slot_);
    // The library keeps the records of a closed slot.
    delete m_EventParam[slot_];
    delete m_ViewParam[slot_];
    m_EventParam[slot_] = nullptr;
    m_ViewParam[slot_] = nullptr;
}

FE_ViewParams TestSlot::view(int mode, int camPos, int subView) const
{
    FE_ViewParams view;
    view.nViewMode = static_cast<unsigned short>(mode);
    view.nCamPos = static_cast<unsigned short>(camPos);
    view.nSubView = static_cast<unsigned short>(subView);
    view.nCenterX = static_cast<unsigned short>(inH_ / 2);
    view.nCenterY = static_cast<unsigned short>(inW_ / 2);
    view.nRadius = view.nRadius2 = static_cast<unsigned short>(std::min(inW_, inH_) / 2);
    view.nOverlay = 0;
    return view;
}

int TestSlot::update(int mode, int camPos, int subView, int pan, int tilt, int zoom)
{
    FE_ViewParams params = view(mode, camPos, subView);
    FE_EventParams event;
    event.nPanStep = static_cast<short>(pan);
    event.nTiltStep = static_cast<short>(tilt);
    event.nZoomStep = static_cast<short>(zoom);
    return ParamsUpdated(slot_, &event, &params);
}

int TestSlot::frame(Bytes& in, OutputFrame& out, FORMAT format, bool flip)
{
    const int status = VideoInput(slot_, in.data(), out.data(), inW_, inH_, format, flip);
    out.checkGuards();
    return status;
}
