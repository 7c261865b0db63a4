// What the tests of real videos share. All of it runs the ffmpeg that is installed.
#ifndef LUMOFE_TESTS_VIDEO_TEST_SUPPORT_H
#define LUMOFE_TESTS_VIDEO_TEST_SUPPORT_H

#include "ToolTestSupport.h"

#include <string>
#include <vector>

namespace lumofe::test {

// Standard output of a program of the search path, taken apart at spaces. Throws when it fails.
Bytes outputOf(const std::string& command);

// A lossless video of 320x320 moving pixels, 30000/1001 a second. `more` are further options of
// ffmpeg before the name.
void makeClip(const std::string& path, int frames, const std::string& more = {});

// All frames as NV12, as ffmpeg decodes them.
Bytes framesOf(const std::string& path);

// One line for each stream: what ffprobe knows by these names, separated by commas.
std::string streamsOf(const std::string& path, const std::string& entries);

} // namespace lumofe::test

#endif
