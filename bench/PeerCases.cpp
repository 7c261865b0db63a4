#include "PeerCases.h"

#include "Camera.h"
#include "mapping/MapEntry.h"

#include <memory>
#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

namespace bench {

namespace {

constexpr double kScreenPixels = double(area(kScreen));
const cv::Size kIn{kInput.w, kInput.h}, kOut{kScreen.w, kScreen.h};

cv::Size halved(cv::Size size)
{
    return {size.width / 2, size.height / 2};
}

// A semi-planar 4:2:0 frame.
struct Nv12 {
    cv::Mat luma, chroma;

    explicit Nv12(cv::Size size) : luma(size, CV_8UC1), chroma(halved(size), CV_8UC2)
    {
        cv::randu(luma, 0, 256);
        cv::randu(chroma, 0, 256);
    }
};

// Where each pixel comes from, as remapping is quickest with: whole pixels and fractions.
struct FixedMap {
    cv::Mat whole, fractions;

    void convert(const cv::Mat& x, const cv::Mat& y)
    {
        cv::convertMaps(x, y, whole, fractions, CV_16SC2);
    }
    void remap(const cv::Mat& from, cv::Mat& to) const
    {
        cv::remap(from, to, whole, fractions, cv::INTER_LINEAR);
    }
};

struct Nv12Map {
    FixedMap luma, chroma;

    void convert(const cv::Mat& x, const cv::Mat& y)
    {
        luma.convert(x, y);
        cv::resize(x, halfX_, {}, 0.5, 0.5, cv::INTER_NEAREST);
        cv::resize(y, halfY_, {}, 0.5, 0.5, cv::INTER_NEAREST);
        halfX_ *= 0.5;
        halfY_ *= 0.5;
        chroma.convert(halfX_, halfY_);
    }
    void remap(const Nv12& from, Nv12& to) const
    {
        luma.remap(from.luma, to.luma);
        chroma.remap(from.chroma, to.chroma);
    }

private:
    cv::Mat halfX_, halfY_; // kept, so that a frame allocates nothing
};

// The very positions that a camera's single view samples.
Nv12Map mapOf(int pan)
{
    Camera camera({.pan = pan});
    const std::vector<int> table = callersTable(camera);
    cv::Mat x(kOut, CV_32FC1), y(kOut, CV_32FC1);
    for (int row = 0; row < kOut.height; ++row)
        for (int col = 0; col < kOut.width; ++col) {
            const std::size_t k = std::size_t(row) * std::size_t(kOut.width) + std::size_t(col);
            const fe::MapEntry entry = fe::loadEntry(table.data(), k);
            x.at<float>(row, col) =
                float(entry.index % kInput.w) + float(entry.fractions >> 16) / 256;
            y.at<float>(row, col) =
                float(entry.index / kInput.w) + float(entry.fractions & 0xFFFF) / 256;
        }
    Nv12Map map;
    map.convert(x, y);
    return map;
}

// A perspective view with a rotation and tilt like the camera's, by OpenCV's fisheye model.
struct FisheyeView {
    cv::Mat x, y;

    void build(double pan, double tilt)
    {
        const double focal = kInput.w / CV_PI; // half a turn from rim to rim
        const cv::Matx33d lens(focal, 0, kInput.w / 2.0, 0, focal, kInput.h / 2.0, 0, 0, 1);
        const double viewFocal = 0.6 * kScreen.w; // 80 degrees wide
        const cv::Matx33d view(viewFocal, 0, kScreen.w / 2.0, 0, viewFocal, kScreen.h / 2.0, 0, 0,
                               1);
        const double c = std::cos(pan), s = std::sin(pan), ct = std::cos(tilt), st = std::sin(tilt);
        const cv::Matx33d turned(c, s, 0, -s, c, 0, 0, 0, 1),
            tilted(1, 0, 0, 0, ct, st, 0, -st, ct);
        cv::fisheye::initUndistortRectifyMap(lens, cv::Vec4d(0, 0, 0, 0), tilted * turned, view,
                                             kOut, CV_32FC1, x, y);
    }
};

constexpr double kPan = CV_PI / 4, kTilt = CV_PI / 3;

Case remapNv12(const char* name, int views)
{
    return {name, views * kScreenPixels, [views]() -> Work {
                struct View {
                    Nv12 from{kIn}, to{kOut};
                    Nv12Map map;
                };
                const auto all = std::make_shared<std::vector<View>>(std::size_t(views));
                int pan = 450;
                for (View& view : *all) {
                    view.map = mapOf(pan);
                    pan += 3600 / views;
                }
                return [all] {
                    for (View& view : *all)
                        view.map.remap(view.from, view.to);
                };
            }};
}

Case remapRgb()
{
    return {"opencv/remap-rgb", kScreenPixels, []() -> Work {
                cv::Mat from(kIn, CV_8UC3), to(kOut, CV_8UC3);
                cv::randu(from, 0, 256);
                return [from, to, map = mapOf(450).luma]() mutable { map.remap(from, to); };
            }};
}

Case fisheyeMap()
{
    return {"opencv/fisheye-map", kScreenPixels, []() -> Work {
                const auto view = std::make_shared<FisheyeView>();
                return [view, map = FixedMap()]() mutable {
                    view->build(kPan, kTilt);
                    map.convert(view->x, view->y);
                };
            }};
}

Case steeredFrame()
{
    return {"opencv/steered", kScreenPixels, []() -> Work {
                struct Steered {
                    Nv12 from{kIn}, to{kOut};
                    FisheyeView view;
                    Nv12Map map;
                    double pan = kPan;
                };
                return [s = std::make_shared<Steered>()] {
                    s->view.build(s->pan += CV_PI / 720, kTilt);
                    s->map.convert(s->view.x, s->view.y);
                    s->map.remap(s->from, s->to);
                };
            }};
}

Case resizing()
{
    return {"opencv/resize", kScreenPixels, []() -> Work {
                return [from = Nv12(kIn), to = Nv12(kOut)]() mutable {
                    cv::resize(from.luma, to.luma, kOut, 0, 0, cv::INTER_LINEAR);
                    cv::resize(from.chroma, to.chroma, halved(kOut), 0, 0, cv::INTER_LINEAR);
                };
            }};
}

} // namespace

Cases peerCases()
{
    return {remapNv12("opencv/remap-nv12", 1),
            remapNv12("opencv/remap-eight", 8),
            remapRgb(),
            fisheyeMap(),
            steeredFrame(),
            resizing()};
}

} // namespace bench
