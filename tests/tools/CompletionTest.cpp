// Completion, as the shells do it.
#include "completion/Completion.h"

#include "Cli.h"
#include "ToolTestSupport.h"
#include "camera/CameraFile.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <utility>

namespace lumofe {
namespace {

using Words = std::vector<std::string>;

// Exit status and standard output of a shell's command.
struct ShellRun {
    int status = -1;
    Words lines;
};

ShellRun run(const std::string& command)
{
    ShellRun result;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return result;
    std::string line;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
        if (c == '\n')
            result.lines.push_back(std::exchange(line, {}));
        else
            line += char(c);
    }
    result.status = pclose(pipe);
    return result;
}

std::string quoted(const std::string& word)
{
    return "'" + word + "'";
}

class Completion : public testing::Test {
protected:
    Completion()
    {
        for (const std::string& shell : shellNames())
            test::writeFile(script(shell), test::bytesOf(completionFor(shell, toolHelp())));
        CameraFile camera;
        camera.input = {320, 240};
        camera.circle = {160, 120, 120};
        for (const char* name : {"door", "desk", "back door"})
            camera.presets.push_back({name, View::half180, {}});
        writeCameraFile(folder_.file("hall.json"), camera);
        test::writeFile(folder_.file("hall.png"), {});
    }

    std::string script(const std::string& shell) const { return folder_.file("script." + shell); }

    // What bash offers for the last word, as it splits the line.
    Words offered(const Words& words) const
    {
        std::string all = quoted(LUMOFE_TOOL);
        for (const std::string& word : words)
            all += " " + quoted(word);
        const std::string commands = "source " + script("bash") + "; COMP_WORDS=(" + all +
                                     "); COMP_CWORD=" + std::to_string(words.size()) +
                                     "; _lumofe; printf '%s\\n' \"${COMPREPLY[@]}\"";
        test::writeFile(folder_.file("run.bash"), test::bytesOf(commands));
        const ShellRun result =
            run("cd " + folder_.file("") + " && bash --norc --noprofile run.bash");
        EXPECT_EQ(result.status, 0);
        // printf prints an empty line for an empty list.
        return result.lines == Words{""} ? Words{} : result.lines;
    }

    test::ScratchFolder folder_;
};

TEST_F(Completion, OffersCommandsAndTheirCommands)
{
    EXPECT_EQ(offered({""}), (Words{"render", "calibrate", "camera", "preset", "point", "bench",
                                    "scene", "sheet", "completion"}));
    EXPECT_EQ(offered({"p"}), (Words{"preset", "point"}));
    EXPECT_EQ(offered({"preset", ""}), (Words{"save", "list", "apply", "remove"}));
    EXPECT_EQ(offered({"completion", ""}), (Words{"bash", "zsh", "fish"}));
}

TEST_F(Completion, OffersOptionsOfTheCommand)
{
    EXPECT_EQ(offered({"render", "--pan"}), (Words{"--pan", "--pano-offset", "--pan-sweep"}));
    EXPECT_EQ(offered({"render", "x.png", "--view", "quad", "--ver"}), Words{"--verbose"});
    EXPECT_EQ(offered({"preset", "save", "--f"}), Words{"--force"});
    EXPECT_EQ(offered({"--v"}), Words{"--version"});
    EXPECT_EQ(offered({"scene", "--pan"}), Words{});
}

TEST_F(Completion, OffersValues)
{
    EXPECT_EQ(offered({"render", "--view", ""}), (Words{"single", "quad", "360", "180"}));
    EXPECT_EQ(offered({"render", "--view", "=", "s"}), Words{"single"});
    EXPECT_EQ(offered({"render", "--view", "="}), (Words{"single", "quad", "360", "180"}));
    EXPECT_EQ(offered({"scene", "--mount", "f"}), Words{"floor"});
    EXPECT_EQ(offered({"render", "--pan", ""}), Words{});
}

TEST_F(Completion, OffersFiles)
{
    Words both = offered({"render", "hall"}); // in the order of the folder
    std::ranges::sort(both);
    EXPECT_EQ(both, (Words{"hall.json", "hall.png"}));
    EXPECT_EQ(offered({"render", "-o", "hall.p"}), Words{"hall.png"});
    EXPECT_EQ(offered({"sheet", "a.png", "b.png", "hall.p"}), Words{"hall.png"});
    EXPECT_EQ(offered({"preset", "apply", "hall.json", "door", "hall.p"}), Words{"hall.png"});
    // A second picture is not taken.
    EXPECT_EQ(offered({"render", "hall.png", "hall"}), Words{});
}

TEST_F(Completion, OffersThePresetsOfTheCamera)
{
    const Words presets = {"door", "desk", "back\\ door"};
    EXPECT_EQ(offered({"render", "--camera", "hall.json", "--preset", ""}), presets);
    EXPECT_EQ(offered({"render", "--camera", "=", "hall.json", "--preset", "=", "de"}),
              Words{"desk"});
    EXPECT_EQ(offered({"preset", "apply", "hall.json", ""}), presets);
    EXPECT_EQ(offered({"preset", "remove", "hall.json", "b"}), Words{"back\\ door"});
    EXPECT_EQ(offered({"render", "--camera", "none.json", "--preset", ""}), Words{});
}

TEST_F(Completion, ScriptsAreWhatTheShellsTake)
{
    for (const std::string& shell : shellNames()) {
        if (run("command -v " + shell).status != 0) {
            std::printf("%s is not installed: its script is not checked\n", shell.c_str());
            continue;
        }
        EXPECT_EQ(run(shell + " -n " + script(shell)).status, 0) << shell;
    }
}

TEST_F(Completion, EveryScriptKnowsEveryOption)
{
    for (const CommandHelp& command : runnable(toolHelp()))
        for (const ArgumentHelp& argument : command.arguments) {
            if (argument.positional) continue;
            const std::string name = argument.names.back().substr(2);
            EXPECT_NE(completionFor("bash", toolHelp()).find("--" + name), std::string::npos);
            EXPECT_NE(completionFor("zsh", toolHelp()).find("--" + name), std::string::npos);
            EXPECT_NE(completionFor("fish", toolHelp()).find("-l " + name), std::string::npos);
        }
}

TEST_F(Completion, OtherShellsAreRefused)
{
    EXPECT_EQ(test::errorOf([] { completionFor("tcsh", {}); }),
              "SHELL: 'tcsh' is unknown; choose one of bash, zsh, fish");
}

TEST_F(Completion, SummariesAreOneLine)
{
    ArgumentHelp argument;
    argument.text = "Size of it,\nin pixels; e.g. 5 (default 3)";
    EXPECT_EQ(summary(argument), "Size of it, in pixels");
    argument.text = "Two. Things (default one)";
    EXPECT_EQ(summary(argument), "Two");
    argument.text = "One thing (default one)";
    EXPECT_EQ(summary(argument), "One thing");
}

} // namespace
} // namespace lumofe
