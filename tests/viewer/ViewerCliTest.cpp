#include "ToolTestSupport.h"
#include "ViewerRun.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

using namespace lumofe::test;

namespace {

std::string text(const ToolRun& run)
{
    return std::string(run.out.begin(), run.out.end());
}

void expectRefused(const std::vector<std::string>& arguments, const std::string& part)
{
    const ToolRun run = runTool(arguments);
    EXPECT_EQ(run.status, 2) << part;
    EXPECT_TRUE(run.err.starts_with("lumofe-view: ")) << run.err;
    EXPECT_NE(run.err.find(part), std::string::npos) << run.err;
    EXPECT_EQ(std::ranges::count(run.err, '\n'), 1) << run.err;
}

} // namespace

TEST(ViewerCli, HelpTellsKeysAndOptions)
{
    const ToolRun run = runTool({"--help"});
    EXPECT_EQ(run.status, 0);
    for (const char* part : {"INPUT", "--camera", "--preset", "--view", "--mount", "--circle",
                             "--size", "--ffmpeg", "--decode", "--encode", "--save-to", "--pan",
                             "H             these lines", "double click  back"})
        EXPECT_NE(text(run).find(part), std::string::npos) << part;
}

TEST(ViewerCli, TellsItsVersion)
{
    EXPECT_TRUE(text(runTool({"--version"})).starts_with("lumofe-view 0."));
}

TEST(ViewerCli, RefusesBadInputsAndOptions)
{
    const ScratchFolder folder;
    const std::string picture = folder.file("a.png");
    writePng(picture, gradient({320, 320}));
    writeFile(folder.file("text.txt"), bytesOf("nothing to see"));
    expectRefused({}, "INPUT");
    expectRefused({"/no/such.png"}, "/no/such.png");
    std::filesystem::create_directory(folder.file("empty"));
    expectRefused({folder.file("empty")}, "holds no .png");
    expectRefused({folder.file("text.txt")}, "text.txt");
    expectRefused({picture, "--view", "octagonal"}, "--view");
    expectRefused({picture, "--mount", "shelf"}, "--mount");
    expectRefused({picture, "--circle", "1,2"}, "--circle");
    expectRefused({picture, "--circle", "900,2,300"}, "--circle");
    expectRefused({picture, "--size", "801x600"}, "--size");
    expectRefused({picture, "--preset", "door"}, "--camera");
    expectRefused({picture, "--camera", "/no/such.json"}, "/no/such.json");
    expectRefused({picture, "--tilt", "-20"}, "--tilt");
    expectRefused({picture, "--steer"}, "--steer");
}

TEST(ViewerCli, SaysWhenThereIsNoScreen)
{
    const ScratchFolder folder;
    writePng(folder.file("a.png"), gradient({320, 320}));
    const char* const display = getenv("DISPLAY");
    const std::string before = display ? display : "";
    setenv("DISPLAY", ":9999", 1);
    setenv("SDL_VIDEODRIVER", "x11", 1);
    expectRefused({folder.file("a.png")}, "no window can be opened");
    // Then SDL would do without a screen.
    unsetenv("SDL_VIDEODRIVER");
    setenv("XDG_RUNTIME_DIR", folder.file("").c_str(), 1);
    expectRefused({folder.file("a.png")}, "no window can be opened");
    if (display)
        setenv("DISPLAY", before.c_str(), 1);
    else
        unsetenv("DISPLAY");
}
