// The tool's readers: picture files, YUV4MPEG2 video and cameras' files.
#include "Error.h"
#include "camera/CameraFile.h"
#include "camera/Tour.h"
#include "media/ImageFile.h"
#include "media/InputStream.h"
#include "media/Y4m.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

// A file in memory, under a name that InputStream can open.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size)
    {
        if (write(descriptor(), data, size) != ssize_t(size)) __builtin_trap();
    }
    ~MemoryFile()
    {
        if (ftruncate(descriptor(), 0) != 0 || lseek(descriptor(), 0, SEEK_SET) != 0)
            __builtin_trap();
    }
    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor()); }

private:
    static int descriptor()
    {
        static const int file = fileno(std::tmpfile());
        return file;
    }
};

void readVideo(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    lumofe::InputStream input(file.path());
    lumofe::Y4mReader reader(input);
    lumofe::Frame420 frame(reader.header().size);
    for (int frames = 0; frames < 4 && reader.read(frame); ++frames) {
    }
}

void readPicture(const std::uint8_t* data, std::size_t size)
{
    lumofe::decodeImage(std::vector<std::uint8_t>(data, data + size), "picture", {1, 1});
}

void readHeader(const std::uint8_t* data, std::size_t size)
{
    lumofe::parseY4mHeader(std::string(data, data + size), "video");
}

// What was read can be written, and is the same then; its tour leads somewhere at any time.
void readCamera(const std::uint8_t* data, std::size_t size)
{
    const lumofe::CameraFile camera =
        lumofe::parseCameraFile({reinterpret_cast<const char*>(data), size}, "camera");
    std::string text;
    try {
        text = lumofe::cameraFileText(camera, "camera");
        if (lumofe::cameraFileText(lumofe::parseCameraFile(text, "again"), "again") != text)
            __builtin_trap();
    } catch (const lumofe::Error&) {
        __builtin_trap();
    }
    if (camera.tour.stops.empty()) return;
    for (const double seconds : {-1.0, 0.0, 0.5, 7.0, 1e9})
        if (lumofe::tourAt(camera, seconds).views.size() !=
            lumofe::findPreset(camera, camera.tour.stops.front().preset)->position.views.size())
            __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Reader = void (*)(const std::uint8_t*, std::size_t);
    constexpr Reader all[] = {readVideo, readPicture, readHeader};
    if (size < 1) return 0;
    try {
        if (data[0] == '{')
            readCamera(data, size);
        else
            all[data[0] % std::size(all)](data + 1, size - 1);
    } catch (const lumofe::Error&) {
        // A message for the person at the terminal is what bad input should give.
    }
    return 0;
}
