// What the tests of the tool share: a scratch folder, runs of the built tool, picture comparison.
#ifndef LUMOFE_TESTS_TOOL_TEST_SUPPORT_H
#define LUMOFE_TESTS_TOOL_TEST_SUPPORT_H

#include "ErrorOf.h"
#include "Mounting.h"
#include "media/Image.h"
#include "scene/Vec3.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace lumofe::test {

using Bytes = std::vector<std::uint8_t>;

// A new folder, removed with all it holds.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    std::string file(const std::string& name) const { return (path_ / name).string(); }
    // Names of all files in it, sorted.
    std::vector<std::string> contents() const;

private:
    std::filesystem::path path_;
};

Bytes bytesOf(std::string_view text);
Bytes readFile(const std::string& path);
void writeFile(const std::string& path, const Bytes& bytes);
void writePng(const std::string& path, const Image& image);

struct ToolRun {
    int status = -1; // exit status; -1 when a signal ended the tool
    Bytes out;
    std::string err;
};

enum class StandardOutput { open, closed };

// Runs the built tool with the given standard input.
ToolRun runTool(const std::vector<std::string>& arguments, const Bytes& input = {},
                StandardOutput standardOutput = StandardOutput::open);

inline double dot(Vec3 a, Vec3 b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vec3 cross(Vec3 a, Vec3 b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// Noise-free picture with a different gradient in each channel.
Image gradient(Size size);

// The test scene at 1280 x 1280, rendered once for each mounting.
const Image& scene(Mount mount);

// All-channel peak signal to noise ratio, dB; infinity for equal pictures. Pictures of different
// sizes fail the test and count as 0.
double psnr(const Image& a, const Image& b);

} // namespace lumofe::test

#endif
