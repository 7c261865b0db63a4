// A slot with frames to feed it, for the tests of the layouts.
#pragma once

#include "Capture.h"
#include "Frames.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using Values = std::vector<int>;

struct LayoutSlot {
    LayoutSlot(int inW, int inH, int screenW, int screenH)
        : slot(inW, inH, screenW, screenH), e(slot.engine()),
          in(patternFrame(inW, inH, FORMAT_NV12)), out(screenW, screenH)
    {
    }

    // An update with a circle of that radius in the middle of the input.
    void steer(int mode, int camPos, int view, int pan, int tilt, int radius)
    {
        FE_ViewParams params = slot.view(mode, camPos, view);
        params.nRadius = static_cast<unsigned short>(radius);
        FE_EventParams event;
        event.nPanStep = static_cast<short>(pan);
        event.nTiltStep = static_cast<short>(tilt);
        ParamsUpdated(0, &event, &params);
    }

    void frame() { EXPECT_EQ(slot.frame(in, out), 0); }

    // What the library prints while it renders a frame.
    std::string printed()
    {
        return printedBy([this] { frame(); });
    }
    // How many perspective tables a frame builds.
    int builds() { return occurrences(printed(), "Fisheye_calibration_Init_byArea:"); }

    // The values of a field after each of `count` frames.
    Values overFrames(int FEDSP::*field, int count)
    {
        Values values;
        for (int i = 0; i < count; ++i) {
            frame();
            values.push_back(e.*field);
        }
        return values;
    }

    TestSlot slot;
    FEDSP& e;
    Bytes in;
    OutputFrame out;
};

// The number after `label` in the n-th line that has it; -9999 when there is none.
inline int printedNumber(const std::string& text, const std::string& label, int n = 0)
{
    std::size_t at = text.find(label);
    for (; n > 0 && at != std::string::npos; --n)
        at = text.find(label, at + 1);
    return at == std::string::npos ? -9999 : std::stoi(text.substr(at + label.size()));
}

// Renders two frames of a layout in every mounting on screens that do not suit it: larger than the
// input, upright, odd, tiny. NV12 meets every screen in every mounting, the other formats each
// screen in one of them. The frame's guards tell when something is written outside. With
// `constant`, every luma byte of a picture of one value must have that value.
inline void renderOnAwkwardScreens(int mode, bool constant)
{
    struct Case {
        int inW, inH, screenW, screenH;
    };
    const Case cases[] = {
        {1280, 1024, 801, 601},   {1280, 1280, 1366, 768},  {1280, 720, 1280, 1024},
        {2560, 1920, 1366, 768},  {1280, 720, 1024, 768},   {1280, 1024, 799, 599},
        {1792, 1792, 1920, 1080}, {640, 480, 1920, 1080},   {320, 240, 1920, 1080},
        {1080, 1920, 1920, 1080}, {2048, 2048, 1080, 1920}, {4096, 240, 320, 480},
        {321, 241, 319, 239},     {640, 480, 133, 99},      {1280, 1024, 1, 1},
        {1280, 1024, 0, 0}};
    int number = 0;
    for (const Case& c : cases) {
        ++number;
        for (int camPos : {0, 1, 2})
            for (FORMAT format : {FORMAT_NV12, FORMAT_YV12, FORMAT_RGB}) {
                if (format != FORMAT_NV12 && (number + int(format)) % 3 != camPos) continue;
                SCOPED_TRACE(testing::Message()
                             << c.inW << "x" << c.inH << " on " << c.screenW << "x" << c.screenH
                             << " mounting " << camPos << " format " << format);
                TestSlot slot(c.inW, c.inH, c.screenW, c.screenH);
                ASSERT_EQ(slot.status(), 0);
                slot.update(mode, camPos, 1, 0, 0, camPos);
                Bytes in = constantFrame(c.inW, c.inH, format, 77);
                OutputFrame out(c.screenW, c.screenH, format);
                EXPECT_EQ(slot.frame(in, out, format, true), 0);
                EXPECT_EQ(slot.frame(in, out, format, true), 0);
                const std::size_t luma = std::size_t(c.screenW) * std::size_t(c.screenH);
                if (!constant || luma == 0) continue;
                EXPECT_EQ(out[0], 77);
                EXPECT_EQ(std::memcmp(out.data(), out.data() + 1, luma - 1), 0);
            }
    }
}
