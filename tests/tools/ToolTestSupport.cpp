// What the tests of the tool share.
#include "ToolTestSupport.h"

#include "media/ImageFile.h"
#include "scene/FisheyeLens.h"

#include <algorithm>
#include <cmath>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <map>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lumofe::test {

ScratchFolder::ScratchFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "lumofe-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no scratch folder");
    path_ = pattern;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> ScratchFolder::contents() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

Bytes bytesOf(std::string_view text)
{
    return Bytes(text.begin(), text.end());
}

Bytes readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void writeFile(const std::string& path, const Bytes& bytes)
{
    std::ofstream file(path, std::ios::binary);
    std::ranges::copy(bytes, std::ostreambuf_iterator<char>(file));
}

void writePng(const std::string& path, const Image& image)
{
    writeFile(path, encodeImage(image, ImageKind::png));
}

ToolRun runTool(const std::vector<std::string>& arguments, const Bytes& input,
                StandardOutput standardOutput)
{
    const ScratchFolder folder;
    const std::string in = folder.file("in"), out = folder.file("out"), err = folder.file("err");
    writeFile(in, input);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, in.c_str(), O_RDONLY, 0);
    constexpr int kCreate = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(), kCreate, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), kCreate, 0600);

    if (standardOutput == StandardOutput::closed)
        posix_spawn_file_actions_addclose(&actions, STDOUT_FILENO);

    std::vector<std::string> words{LUMOFE_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    pid_t pid = 0;
    const int failed = posix_spawn(&pid, LUMOFE_TOOL, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) throw std::runtime_error("the tool does not start");
    int status = 0;
    waitpid(pid, &status, 0);

    const Bytes message = readFile(err);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out),
            std::string(message.begin(), message.end())};
}

Image gradient(Size size)
{
    Image image(size);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            std::uint8_t* p = image.pixel(x, y);
            p[0] = std::uint8_t(255 * x / size.width);
            p[1] = std::uint8_t(255 * y / size.height);
            p[2] = std::uint8_t(255 * (x + y) / (size.width + size.height));
        }
    }
    return image;
}

const Image& scene(Mount mount)
{
    static std::map<Mount, Image> scenes;
    Image& image = scenes[mount];
    if (image.bytes.empty()) image = renderFisheye(Room(), cameraFor(mount), 1280);
    return image;
}

double psnr(const Image& a, const Image& b)
{
    EXPECT_EQ(a.size, b.size);
    if (a.size != b.size) return 0;
    double sum = 0;
    for (std::size_t i = 0; i < a.bytes.size(); ++i) {
        const double difference = double(a.bytes[i]) - double(b.bytes[i]);
        sum += difference * difference;
    }
    if (sum <= 0) return std::numeric_limits<double>::infinity();
    return 10 * std::log10(255.0 * 255.0 * double(a.bytes.size()) / sum);
}

} // namespace lumofe::test
