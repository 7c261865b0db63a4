#include "V360.h"

#include "Camera.h"
#include "Case.h"
#include "Process.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace bench {

namespace {

// As wide as the camera's view and turned like it, as far as the filter knows these things.
std::string v360()
{
    return "v360=input=fisheye:ih_fov=180:iv_fov=180:output=flat:h_fov=80:v_fov=50.6:yaw=51:pitch="
           "37.5:"
           "interp=linear:w=" +
           std::to_string(kScreen.w) + ":h=" + std::to_string(kScreen.h);
}

} // namespace

V360::V360() : picture_(std::filesystem::temp_directory_path() / "lumofe_bench_XXXXXX")
{
    const int file = mkstemp(picture_.data());
    if (file < 0) throw std::system_error(errno, std::generic_category(), picture_);
    close(file);
    const Bytes frame = noise(kInput, FORMAT_YV12);
    std::ofstream(picture_, std::ios::binary)
        .write(reinterpret_cast<const char*>(frame.data()), std::streamsize(frame.size()));
}

V360::~V360()
{
    std::remove(picture_.c_str());
}

double V360::millisecondsOf(int frames) const
{
    const std::string size = std::to_string(kInput.w) + "x" + std::to_string(kInput.h);
    const auto seconds = [&](const std::string& filter) {
        return processorSeconds({"ffmpeg",
                                 "-nostdin",
                                 "-loglevel",
                                 "error",
                                 "-threads",
                                 "1",
                                 "-filter_threads",
                                 "1",
                                 "-stream_loop",
                                 "-1",
                                 "-f",
                                 "rawvideo",
                                 "-pixel_format",
                                 "yuv420p",
                                 "-video_size",
                                 size,
                                 "-i",
                                 picture_,
                                 "-frames:v",
                                 std::to_string(frames),
                                 "-filter:v",
                                 filter,
                                 "-f",
                                 "null",
                                 "-"});
    };
    return (seconds(v360()) - seconds("null")) * 1000;
}

double V360::milliseconds(const std::string& what) const
{
    const double clip = millisecondsOf(kClipFrames);
    if (what == "clip") return clip;
    if (what == "clip frame") return clip / kClipFrames;
    constexpr int kFew = 10;
    return (clip - millisecondsOf(kFew)) / (kClipFrames - kFew);
}

} // namespace bench
