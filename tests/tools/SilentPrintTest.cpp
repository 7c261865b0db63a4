// The copy of the library for plugins prints nothing.
#include <AffineWarp.h>
#include <LumoFESDK.h>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace {

TEST(SilentPrint, NothingIsPrinted)
{
    constexpr int kInput = 640, kW = 320, kH = 240;
    std::vector<std::uint8_t> in(kInput * kInput * 3 / 2, 128), out(kW * kH * 3 / 2);
    testing::internal::CaptureStdout();
    EXPECT_EQ(Initialize(99, kInput, kInput, kW, kH, FORMAT_NV12), FE_STATUS_INVALID);
    EXPECT_EQ(ParamsUpdated(0, nullptr, nullptr), FE_STATUS_INVALID);
    EXPECT_EQ(Initialize(0, kInput, kInput, kW, kH, FORMAT_NV12), FE_STATUS_OK);
    EXPECT_EQ(VideoInput(0, in.data(), out.data(), kInput, kInput, FORMAT_NV12, false),
              FE_STATUS_OK);
    EXPECT_EQ(Close(0), FE_STATUS_OK);
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

} // namespace
