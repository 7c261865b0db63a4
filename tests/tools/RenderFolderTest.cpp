#include "RenderFolder.h"

#include "ToolTestSupport.h"
#include "media/ImageFile.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::runTool;
using test::ToolRun;
using Names = std::vector<std::string>;

class RenderFolderTest : public testing::Test {
protected:
    RenderFolderTest()
    {
        std::filesystem::create_directory(folder_.file("in"));
        test::writePng(in("b.png"), test::gradient({320, 240}));
        test::writeFile(in("a.JPG"), encodeImage(test::gradient({400, 300}), ImageKind::jpeg, 95));
        test::writeFile(in("notes.txt"), test::bytesOf("no picture"));
    }

    std::string in(const std::string& name) const { return folder_.file("in/" + name); }
    std::string out(const std::string& name) const { return folder_.file("out/" + name); }

    ToolRun render(const Names& more = {}) const
    {
        Names words{"render", folder_.file("in"), "-o", folder_.file("out"), "--pan", "30"};
        words.insert(words.end(), more.begin(), more.end());
        return runTool(words);
    }

    Names results() const
    {
        Names names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.file("out")))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }

    test::ScratchFolder folder_;
};

TEST_F(RenderFolderTest, EveryStillIsRenderedUnderItsName)
{
    const ToolRun run = render();
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(results(), (Names{"a.JPG", "b.png"}));
    ASSERT_EQ(runTool({"render", in("b.png"), "-o", folder_.file("b.png"), "--pan", "30"}).status,
              0);
    EXPECT_EQ(test::readFile(out("b.png")), test::readFile(folder_.file("b.png")));
    EXPECT_EQ(decodeImage(test::readFile(out("a.JPG")), "a").size, (Size{400, 300}));
}

TEST_F(RenderFolderTest, AFailingPictureDoesNotStopTheOthers)
{
    test::writeFile(in("a2.png"), test::bytesOf("damaged"));
    test::writePng(in("small.png"), test::gradient({100, 100}));
    const ToolRun run = render();
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(results(), (Names{"a.JPG", "b.png"}));
    const std::size_t first = run.err.find("a2.png: is neither PNG");
    const std::size_t second = run.err.find("small.png: 100x100 is outside");
    EXPECT_LT(first, second) << run.err;
    EXPECT_NE(run.err.find("2 of 4 pictures failed", second), std::string::npos) << run.err;
}

TEST_F(RenderFolderTest, ReplacesOnlyByForce)
{
    ASSERT_EQ(render().status, 0);
    const ToolRun again = render();
    EXPECT_EQ(again.status, 2);
    EXPECT_NE(again.err.find("b.png: exists already"), std::string::npos) << again.err;
    EXPECT_EQ(render({"--force"}).status, 0);
}

TEST_F(RenderFolderTest, SeparateViewsHaveNumbers)
{
    const ToolRun run = runTool({"render", folder_.file("in"), "-o", folder_.file("out"), "--view",
                                 "360", "--views", "separate"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(results(), (Names{"a-1.JPG", "a-2.JPG", "b-1.png", "b-2.png"}));
}

TEST_F(RenderFolderTest, FoldersThatCannotBeUsedAreNamed)
{
    const auto refusal = [](const std::string& input, const std::string& output) {
        RenderOptions options;
        options.input = input;
        options.output = output;
        return test::errorOf([&] { renderFolder(options, [](const RenderOptions&) {}); });
    };
    std::filesystem::create_directory(folder_.file("empty"));
    EXPECT_NE(refusal(folder_.file("empty"), folder_.file("o")).find("holds no .png"),
              std::string::npos);
    EXPECT_NE(refusal(folder_.file("in"), in("b.png")).find("is no folder"), std::string::npos);
    EXPECT_NE(refusal(folder_.file("in"), folder_.file("none/o")).find("is no folder"),
              std::string::npos);
    for (const char* file : {"views.mp4", "views.PNG"})
        EXPECT_NE(refusal(folder_.file("in"), folder_.file(file)).find("is the name of a file"),
                  std::string::npos);
    EXPECT_EQ(refusal(folder_.file("in"), folder_.file("views.1")), "");
    EXPECT_NE(refusal(folder_.file("in"), folder_.file("in/.")).find("is the input folder"),
              std::string::npos);
}

} // namespace
} // namespace lumofe
