#include "CalibrateCommand.h"

#include "CalibrateTestSupport.h"
#include "ToolTestSupport.h"
#include "media/ImageFile.h"
#include "media/Pixels.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::Bytes;
using test::bytesOf;
using test::errorOf;
using test::runTool;
using test::ToolRun;

constexpr Rgb kBlack{0, 0, 0}, kGrey{90, 90, 90};
constexpr FineCircle kDisc{190, 160, 120};

std::string textOf(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

class CalibrateCommandTest : public testing::Test {
protected:
    CalibrateCommandTest()
    {
        test::writePng(file("disc.png"), disc_);
        test::writePng(file("plain.png"), filled({400, 300}, kGrey));
    }

    std::string file(const std::string& name) const { return folder_.file(name); }

    std::string refusal(const CalibrateOptions& options) const
    {
        return errorOf([&] { runCalibrate(options); });
    }

    const Image disc_ = test::withDisc(filled({400, 300}, kBlack), kDisc, kGrey);
    test::ScratchFolder folder_;
};

TEST_F(CalibrateCommandTest, PrintsTheCircleAsJson)
{
    const ToolRun run = runTool({"calibrate", file("disc.png")});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const std::string out = textOf(run.out);
    double x = 0, y = 0, radius = 0, confidence = 0;
    ASSERT_EQ(std::sscanf(out.c_str(),
                          "{ \"circle\": {\"x\": %lf, \"y\": %lf, \"radius\": %lf}, "
                          "\"confidence\": %lf,",
                          &x, &y, &radius, &confidence),
              4)
        << out;
    EXPECT_NEAR(x, kDisc.x, 0.1);
    EXPECT_NEAR(y, kDisc.y, 0.1);
    EXPECT_NEAR(radius, kDisc.radius, 0.1);
    EXPECT_GT(confidence, 0.9);
    EXPECT_NE(out.find("\"confident\": true"), std::string::npos);
    EXPECT_NE(out.find("\"input\": {\"width\": 400, \"height\": 300}"), std::string::npos);
    EXPECT_NE(out.find("\"pictures\": 1,"), std::string::npos);
    EXPECT_TRUE(out.ends_with("}\n"));
}

TEST_F(CalibrateCommandTest, PlainIsWhatCircleTakes)
{
    const ToolRun run = runTool({"calibrate", "--plain", file("disc.png")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(textOf(run.out), "190,160,120\n");
}

TEST_F(CalibrateCommandTest, WithoutACircleTheStatusIsThree)
{
    const ToolRun run = runTool({"calibrate", file("plain.png")});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.err.rfind("lumofe: no confident circle: ", 0), 0u) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1);
    EXPECT_NE(textOf(run.out).find("\"circle\": null"), std::string::npos);
    EXPECT_NE(textOf(run.out).find("\"confident\": false"), std::string::npos);

    const ToolRun plain = runTool({"calibrate", "--plain", file("plain.png")});
    EXPECT_EQ(plain.status, 3);
    EXPECT_EQ(textOf(plain.out), "");
}

TEST_F(CalibrateCommandTest, TheOverlayShowsTheCircleAndItsCentre)
{
    const ToolRun run = runTool({"calibrate", file("disc.png"), "-o", file("overlay.png")});
    EXPECT_EQ(run.status, 0) << run.err;
    const Image overlay = decodeImage(test::readFile(file("overlay.png")), "overlay");
    ASSERT_EQ(overlay.size, disc_.size);
    const auto isGreen = [&](int x, int y) {
        const std::uint8_t* p = overlay.pixel(x, y);
        return p[1] > 180 && p[0] < 120;
    };
    for (const int sign : {-1, 1}) {
        EXPECT_TRUE(isGreen(190 + sign * 120, 160));
        EXPECT_TRUE(isGreen(190, 160 + sign * 120));
    }
    EXPECT_TRUE(isGreen(190, 160));
    EXPECT_FALSE(isGreen(220, 160));
    EXPECT_EQ(overlay.pixel(5, 5)[1], 0);

    const ToolRun again = runTool({"calibrate", file("disc.png"), "-o", file("overlay.png")});
    EXPECT_EQ(again.status, 2);
    EXPECT_NE(again.err.find("--force"), std::string::npos) << again.err;
    EXPECT_EQ(runTool({"calibrate", file("disc.png"), "-o", file("overlay.png"), "--force"}).status,
              0);
}

TEST_F(CalibrateCommandTest, VideosCountWithTheirFirstFrame)
{
    Bytes video = bytesOf("YUV4MPEG2 W400 H300 F25:1\nFRAME\n");
    const Bytes frame = toFrame420(disc_).bytes;
    video.insert(video.end(), frame.begin(), frame.end());
    const ToolRun run = runTool({"calibrate", "--plain", "-"}, video);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(textOf(run.out), "190,160,120\n");

    const ToolRun empty = runTool({"calibrate", "-"}, bytesOf("YUV4MPEG2 W400 H300 F25:1\n"));
    EXPECT_EQ(empty.status, 2);
    EXPECT_NE(empty.err.find("no frames"), std::string::npos);
}

TEST_F(CalibrateCommandTest, PicturesAreTakenTogether)
{
    const std::string disc = file("disc.png");
    const ToolRun run = runTool({"calibrate", disc, file("plain.png"), disc});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(textOf(run.out).find("\"pictures\": 3,"), std::string::npos);
}

TEST_F(CalibrateCommandTest, WhatCannotBeIsRefused)
{
    const std::string disc = file("disc.png");
    test::writePng(file("wide.png"), filled({500, 300}, kBlack));
    EXPECT_EQ(refusal({{disc, file("wide.png")}, "", false}),
              file("wide.png") + ": is 500x300, but " + disc +
                  " is 400x300; give pictures of one camera and size");
    EXPECT_NE(refusal({{disc}, "-", false}).find("-o: "), std::string::npos);
    EXPECT_NE(refusal({{disc}, file("o.y4m"), false}).find("o.y4m"), std::string::npos);
    EXPECT_NE(refusal({{disc}, file("none/o.png"), false}).find("none/o.png"), std::string::npos);
    EXPECT_NE(refusal({{file("none.png")}, "", false}).find("none.png"), std::string::npos);
    EXPECT_EQ(folder_.contents(), (std::vector<std::string>{"disc.png", "plain.png", "wide.png"}));
    const ToolRun run = runTool({"calibrate"});
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("PICTURE"), std::string::npos);
}

} // namespace
} // namespace lumofe
