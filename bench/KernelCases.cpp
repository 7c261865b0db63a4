// Kernels and table builders, called as hosts of FEDSP.h call them.
#include "Case.h"

#include "Camera.h"

#include <memory>

namespace bench {

namespace {

constexpr double kScreenPixels = double(area(kScreen));
constexpr int kCentre = kInput.w / 2, kRadius = kInput.w / 2;

// Tables are built into a buffer of the benchmark's own, by the engine of a camera that looks
// elsewhere.
struct Builder {
    Camera camera{{}};
    std::vector<int> table;

    explicit Builder(std::size_t entries) : table(2 * entries) {}
};

Case mapping(const char* name, FORMAT format)
{
    return {name, kScreenPixels, [format]() -> Work {
                const auto camera = std::make_shared<Camera>(Camera::Setup{.format = format});
                const auto out = std::make_shared<Bytes>(frameBytes(kScreen, format));
                return [camera, out, table = callersTable(*camera)]() mutable {
                    camera->engine().FCMapping(camera->setup().format, camera->input().data(),
                                               out->data(), table.data(), kInput.w, kInput.h,
                                               kScreen.w, kScreen.h, true);
                };
            }};
}

Case perspectiveTable()
{
    return {"table/perspective", kScreenPixels, []() -> Work {
                const auto builder = std::make_shared<Builder>(area(kScreen));
                return [builder] {
                    const FEDSP::ClonefishRect viewed{kCentre - 400, kCentre - 300, 800, 450};
                    builder->camera.engine().Fisheye_calibration_Init_byArea(
                        kCentre, kCentre, kRadius, kRadius, viewed, 180, 0, kScreen.w, kScreen.h,
                        builder->table.data(), 40, 0);
                };
            }};
}

// Widths of the layouts' panoramas.
constexpr int kUnwrapW = 1080, kRemapW = 720;

Case polarTable()
{
    return {"table/polar", double(kUnwrapW) * (kRadius - 3) / 2, []() -> Work {
                const auto builder =
                    std::make_shared<Builder>(std::size_t(kUnwrapW) * kRadius / 2 + 1);
                return [builder] {
                    FEDSP& e = builder->camera.engine();
                    e.InitCPIBuffer_360(kCentre, kCentre, kRadius, kInput.w, kInput.h,
                                        builder->table.data(), 0, e.m_fSinTbl, e.m_fCosTbl, 0, 0,
                                        kUnwrapW);
                };
            }};
}

Case remapTable()
{
    return {"table/remap", double(kRemapW) * (kRadius - 1), []() -> Work {
                const auto builder =
                    std::make_shared<Builder>(std::size_t(kRemapW) * (kRadius - 1));
                return [builder] {
                    FEDSP& e = builder->camera.engine();
                    e.Mercator_Projection_360(kCentre, kCentre, kRadius, kInput.w, kInput.h,
                                              builder->table.data(), 0, e.m_fSinTbl, e.m_fCosTbl, 0,
                                              kRemapW);
                };
            }};
}

Case resizing()
{
    return {"resize/nv12", kScreenPixels, []() -> Work {
                const auto camera = std::make_shared<Camera>(Camera::Setup{});
                const auto out = std::make_shared<Bytes>(frameBytes(kScreen, FORMAT_NV12));
                return [camera, out] {
                    camera->engine().resize_image(camera->input().data(), out->data(), kInput.w,
                                                  kInput.h, kScreen.w, kScreen.h);
                };
            }};
}

} // namespace

Cases kernelCases()
{
    return {mapping("kernel/nv12", FORMAT_NV12),
            mapping("kernel/yv12", FORMAT_YV12),
            mapping("kernel/rgb", FORMAT_RGB),
            perspectiveTable(),
            polarTable(),
            remapTable(),
            resizing()};
}

} // namespace bench
