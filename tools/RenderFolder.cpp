// Renders every still of a folder.
#include "RenderFolder.h"

#include "Error.h"
#include "OutputKind.h"
#include "PictureFolder.h"

#include <cstdio>
#include <filesystem>
#include <vector>

namespace lumofe {
namespace {

namespace fs = std::filesystem;

bool isFileName(const std::string& output)
{
    try {
        outputKind(output);
        return true;
    } catch (const Error&) {
        return false;
    }
}

void checkFolders(const RenderOptions& options)
{
    if (moves(options))
        throw Error(std::string(options.tour ? "--tour" : "--pan-sweep") +
                    ": needs a single still; a folder gives stills");
    std::error_code error;
    if (!fs::exists(options.output, error) && isFileName(options.output))
        throw Error(options.output + ": is the name of a file; of the folder " + options.input +
                    ", the output is a folder");
    fs::create_directory(options.output, error);
    if (!fs::is_directory(options.output))
        throw Error(options.output + ": is no folder and cannot be made one; of the folder " +
                    options.input + ", the output is a folder");
    if (fs::equivalent(options.input, options.output, error))
        throw Error(options.output + ": is the input folder; choose another");
}

} // namespace

void renderFolder(const RenderOptions& options,
                  const std::function<void(const RenderOptions&)>& render)
{
    const std::vector<std::string> pictures = picturesIn(options.input);
    checkFolders(options);
    std::size_t failed = 0;
    for (const std::string& picture : pictures) {
        RenderOptions file = options;
        file.input = picture;
        file.output = (fs::path(options.output) / fs::path(picture).filename()).string();
        try {
            render(file);
        } catch (const Error& e) {
            std::fprintf(stderr, "lumofe: %s\n", e.what());
            ++failed;
        }
    }
    if (failed > 0)
        throw Error(options.input + ": " + std::to_string(failed) + " of " +
                    std::to_string(pictures.size()) + " pictures failed; the others are in " +
                    options.output);
}

} // namespace lumofe
