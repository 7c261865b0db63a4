// The manual page: complete, and roff takes its text for text.
#include "ManPage.h"

#include "Cli.h"
#include "ToolTestSupport.h"

#include <gtest/gtest.h>
#include <sstream>

namespace lumofe {
namespace {

std::string pageWithFooter(const std::string& footer)
{
    const CommandHelp command{"draw", "Draw", {}, {}, footer};
    const std::string page = manPage({"tool", "Tests.", {}, {command}, {}}, "Kit 1.0", "");
    const std::size_t start = page.find("Draw.\n") + 6;
    return page.substr(start, page.find(".SH EXIT") - start);
}

// The part of the tool's page below the heading.
std::string section(const std::string& page, const std::string& heading)
{
    const std::size_t start = page.find("\n.SH " + heading + "\n");
    EXPECT_NE(start, std::string::npos) << heading;
    return page.substr(start, page.find("\n.SH ", start + 1) - start);
}

// The long names of the options that a help text lists.
std::vector<std::string> optionsOf(const std::string& help)
{
    std::vector<std::string> names;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t start = line.find("--");
        if (!line.starts_with("  -") || start == std::string::npos) continue;
        names.push_back(line.substr(start, line.find_first_of(" ,", start) - start));
    }
    return names;
}

std::string boldInRoff(const std::string& name)
{
    std::string result = "\\fB";
    for (const char c : name)
        result += c == '-' ? std::string("\\-") : std::string(1, c);
    return result + "\\fP";
}

TEST(ManPage, NamesEveryOptionOfTheHelpOnceInItsSection)
{
    const struct {
        std::vector<std::string> help;
        std::string heading;
        std::size_t atLeast;
    } kSections[] = {{{"--help"}, "OPTIONS", 2},
                     {{"render", "--help"}, "RENDER", 15},
                     {{"camera", "init", "--help"}, "CAMERA INIT", 6},
                     {{"preset", "save", "--help"}, "PRESET SAVE", 7},
                     {{"preset", "apply", "--help"}, "PRESET APPLY", 2},
                     {{"point", "--help"}, "POINT", 5},
                     {{"calibrate", "--help"}, "CALIBRATE", 3},
                     {{"bench", "--help"}, "BENCH", 7},
                     {{"scene", "--help"}, "SCENE", 3},
                     {{"sheet", "--help"}, "SHEET", 4}};
    const std::string page = toolManPage();
    for (const auto& part : kSections) {
        const test::ToolRun run = test::runTool(part.help);
        ASSERT_EQ(run.status, 0) << run.err;
        const std::string help(run.out.begin(), run.out.end());
        const std::string text = section(page, part.heading);
        const std::vector<std::string> options = optionsOf(help);
        EXPECT_GE(options.size(), part.atLeast);
        for (const std::string& option : options) {
            const std::string name = boldInRoff(option);
            const std::size_t at = text.find(name);
            EXPECT_NE(at, std::string::npos) << part.heading << " lacks " << name;
            EXPECT_EQ(text.find(name, at + 1), std::string::npos) << name;
        }
    }
}

TEST(ManPage, ShowsHowToCallEachCommand)
{
    const std::string page = section(toolManPage(), "SYNOPSIS");
    EXPECT_NE(page.find("\\fBlumofe render\\fP [\\fIOPTION\\fP]... \\fB\\-o\\fP \\fIFILE\\fP "
                        "\\fIINPUT\\fP\n"),
              std::string::npos);
    EXPECT_NE(page.find("\\fBlumofe sheet\\fP [\\fIOPTION\\fP]... \\fIOUT\\fP \\fIIMAGE\\fP...\n"),
              std::string::npos);
}

TEST(ManPage, ShowsNamesAndValuesOfArguments)
{
    CommandHelp help{"tool", "Tests.", {}, {}, {}};
    help.arguments.push_back({{"-o", "--output"}, "FILE", "A file,\nor two.", false, true, false});
    help.arguments.push_back({{"INPUT"}, "", "Read.", true, true, true});
    EXPECT_NE(manPage(help, "Kit 1.0", "")
                  .find(".TP\n\\fB\\-o\\fP, \\fB\\-\\-output\\fP \\fIFILE\\fP\nA file,\nor two.\n"
                        ".TP\n\\fIINPUT\\fP...\nRead.\n"),
              std::string::npos);
}

TEST(ManPage, TextNeverBecomesARequest)
{
    EXPECT_EQ(pageWithFooter(".so file\n'tis\na\\b -1\n"),
              ".PP\n\\&.so file\n\\&'tis\na\\eb \\-1\n");
}

TEST(ManPage, ListsBecomeTagged)
{
    EXPECT_EQ(pageWithFooter(
                  "\nModes:\n  one    the first,\n         or so\n  two    next\nBoth\nwork.\n"),
              ".PP\n\\fBModes:\\fP\n.TP\n\\fBone\\fP\nthe first,\nor so\n.TP\n\\fBtwo\\fP\nnext\n"
              ".PP\nBoth\nwork.\n");
}

TEST(ManPage, ExamplesKeepTheirLines)
{
    EXPECT_EQ(pageWithFooter("Examples:\n  a |\n      b\n  c\nText\n"),
              ".PP\n\\fBExamples:\\fP\n.RS\n.nf\na |\n    b\nc\n.fi\n.RE\n.PP\nText\n");
    EXPECT_EQ(pageWithFooter("Example:\n  a"), ".PP\n\\fBExample:\\fP\n.RS\n.nf\na\n.fi\n.RE\n");
}

TEST(ManPage, CommandsOfCommandsStandUnderTheirWholeName)
{
    const CommandHelp save{"save", "Keep", {}, {}, {}}, list{"list", "Show", {}, {}, {}};
    const CommandHelp preset{"preset", "Presets", {}, {save, list}, {}};
    const std::string page =
        manPage({"tool", "Tests.", {}, {preset}, {}}, "Kit 1.0", "\n  0  done\n  2  not done\n");
    EXPECT_NE(page.find("\n\\fBtool preset save\\fP [\\fIOPTION\\fP]...\n.br\n"), std::string::npos)
        << page;
    EXPECT_EQ(section(page, "PRESET LIST"), "\n.SH PRESET LIST\nShow.");
    EXPECT_EQ(page.find(".SH PRESET\n"), std::string::npos);
    EXPECT_TRUE(
        page.ends_with(".SH EXIT STATUS\n.TP\n\\fB0\\fP\ndone\n.TP\n\\fB2\\fP\nnot done\n"));
}

} // namespace
} // namespace lumofe
