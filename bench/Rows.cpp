#include "Rows.h"

namespace bench {

// clang-format off
const std::vector<Row> kRows = {
    {"view", "steady single view", "view/single",
     Against::opencv, "opencv/remap-nv12", "`cv::remap`", 5.5, 4.2},
    {"view-ssse3", "the same with SSSE3", "view/single@SSSE3",
     Against::opencv, "opencv/remap-nv12", "`cv::remap`", 3.2, 2.5},
    {"view-sse2", "the same with SSE2", "view/single@SSE2",
     Against::opencv, "opencv/remap-nv12", "`cv::remap`", 2.2, 1.8},
    {"frame", "the same, the copy of the input included", "frame/single",
     Against::opencv, "opencv/remap-nv12", "`cv::remap`, no copy", 0, 0},
    {"table", "a host's own table", "kernel/nv12",
     Against::opencv, "opencv/remap-nv12", "`cv::remap`", 2.7, 2},
    {"eight", "eight cameras in turn", "view/eight-slots",
     Against::opencv, "opencv/remap-eight", "`cv::remap`, eight maps", 4.8, 3.6},
    {"rgb", "steady single view, RGB", "view/single-rgb",
     Against::opencv, "opencv/remap-rgb", "`cv::remap`", 2.7, 2},
    {"build", "building a view's table", "table/perspective",
     Against::opencv, "opencv/fisheye-map", "`initUndistortRectifyMap`, `convertMaps`", 9, 9},
    {"build-sse2", "the same with SSE2", "table/perspective@SSE2",
     Against::opencv, "opencv/fisheye-map", "`initUndistortRectifyMap`, `convertMaps`", 4, 4},
    {"steered", "single view that turns, the copy of the input included", "frame/steered",
     Against::opencv, "opencv/steered", "both and `cv::remap`, no copy", 6.5, 6},
    {"v360", "steady single view", "view/single",
     Against::v360, "clip frame", "FFmpeg's `v360`, frame of 100 and its share of setting up", 8, 6},
    {"v360-steady", "the same", "view/single",
     Against::v360, "steady frame", "`v360`, frame without that share", 0, 0},
    {"v360-clip", "100 whole frames from `Initialize` on", "clip/single",
     Against::v360, "clip", "`v360`, 100 frames from its setting up on", 0, 0},
    {"resize", "`resize_image`", "resize/nv12",
     Against::opencv, "opencv/resize", "`cv::resize`", 1.4, 1.4},
    {"panorama", "building a panorama's table", "table/polar",
     Against::itself, "table/polar@plain", "the plain code", 10, 80},
    {"360", "360 layout, whole frame", "frame/360",
     Against::itself, "frame/360@plain", "the plain code", 5, 6},
    {"180", "180 layout, whole frame", "frame/180",
     Against::itself, "frame/180@plain", "the plain code", 5, 6},
    {"quad", "quad layout, whole frame", "frame/quad",
     Against::itself, "copy/quad", "`memcpy` of input, tables, output", 1.15, 1.5, true},
};
// clang-format on

} // namespace bench
