// A slot with frames to feed it, for the tests of the layouts.
#pragma once

#include "Capture.h"
#include "Frames.h"

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
