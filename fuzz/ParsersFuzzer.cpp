// The tool's readers: picture files and YUV4MPEG2 video.
#include "Error.h"
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Reader = void (*)(const std::uint8_t*, std::size_t);
    constexpr Reader all[] = {readVideo, readPicture, readHeader};
    if (size < 1) return 0;
    try {
        all[data[0] % std::size(all)](data + 1, size - 1);
    } catch (const lumofe::Error&) {
        // A message for the person at the terminal is what bad input should give.
    }
    return 0;
}
