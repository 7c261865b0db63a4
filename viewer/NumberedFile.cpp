// Names for pictures and recordings that are not taken yet.
#include "NumberedFile.h"

#include "Error.h"
#include "video/Descriptor.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>

namespace lumofe::viewer {
namespace {

constexpr int kHighest = 9999;

} // namespace

std::string createNumbered(const std::string& folder, const std::string& extension)
{
    for (int number = 1; number <= kHighest; ++number) {
        char name[32];
        std::snprintf(name, sizeof name, "lumofe-view-%04d", number);
        const std::string path = (std::filesystem::path(folder) / (name + extension)).string();
        const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (file.number() >= 0) return path;
        if (errno != EEXIST)
            throw Error(path + ": cannot be created (" + std::strerror(errno) +
                        "); choose a folder with --save-to");
    }
    throw Error(folder + ": has " + std::to_string(kHighest) + " files named lumofe-view-NNNN" +
                extension + "; choose another with --save-to");
}

} // namespace lumofe::viewer
