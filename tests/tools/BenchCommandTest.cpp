#include "BenchCommand.h"

#include "VideoTestSupport.h"

#include <gtest/gtest.h>

namespace lumofe {
namespace {

using test::runTool;
using test::ToolRun;

std::string text(const test::Bytes& bytes)
{
    return std::string(bytes.begin(), bytes.end());
}

TEST(BenchCommand, TableAndJsonTellTheSame)
{
    const std::vector<BenchResult> results{{View::single, {800, 600}, 2.5, 2.25},
                                           {View::half180, {640, 360}, 0.5, 0.75}};
    EXPECT_EQ(benchTable(results, {640, 480}),
              "input 640x480, NV12, one thread\n"
              "layout     output    ms per frame  processor ms  frames per second\n"
              "single    800x600            2.500         2.250              400.0\n"
              "180       640x360            0.500         0.750             2000.0\n");
    EXPECT_EQ(benchJson(results, {640, 480}),
              "{\"input\": {\"width\": 640, \"height\": 480}, \"layouts\": [\n"
              "  {\"layout\": \"single\", \"width\": 800, \"height\": 600, \"ms\": 2.5000, "
              "\"processor_ms\": 2.2500, \"fps\": 400.00},\n"
              "  {\"layout\": \"180\", \"width\": 640, \"height\": 360, \"ms\": 0.5000, "
              "\"processor_ms\": 0.7500, \"fps\": 2000.00}\n]}\n");
}

TEST(BenchCommand, MeasuresEveryLayoutOfStillsAndVideos)
{
    const test::ScratchFolder folder;
    test::writePng(folder.file("still.png"), test::gradient({320, 320}));
    test::makeClip(folder.file("clip.mkv"), 12);
    for (const char* name : {"still.png", "clip.mkv"}) {
        const ToolRun run = runTool({"bench", folder.file(name), "--frames", "4"});
        ASSERT_EQ(run.status, 0) << run.err;
        const std::string table = text(run.out);
        EXPECT_EQ(table.rfind("input 320x320, NV12, one thread\n", 0), 0u) << table;
        for (const char* layout : {"\nsingle ", "\nquad ", "\n360 ", "\n180 "})
            EXPECT_NE(table.find(layout), std::string::npos) << table;
    }
}

TEST(BenchCommand, WhatCannotBeIsRefused)
{
    EXPECT_EQ(runTool({"bench", "/none.png"}).status, 2);
    EXPECT_NE(test::errorOf([] {
                  BenchOptions options;
                  options.frames = 0;
                  runBench(options);
              }).find("--frames"),
              std::string::npos);
}

} // namespace
} // namespace lumofe
