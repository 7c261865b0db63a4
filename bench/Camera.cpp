#include "Camera.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>
#include <unistd.h>

namespace bench {

namespace {

void check(const char* call, int status)
{
    if (status != FE_STATUS_OK)
        throw std::runtime_error(std::string(call) + " failed with status " +
                                 std::to_string(status) + "; LumoFESDK.h explains it");
}

int freeSlot()
{
    const auto slot = std::find(std::begin(m_FEDSP), std::end(m_FEDSP), nullptr);
    if (slot == std::end(m_FEDSP)) throw std::runtime_error("all sixteen slots are in use");
    return int(slot - std::begin(m_FEDSP));
}

} // namespace

Bytes noise(Size size, FORMAT format)
{
    Bytes frame(frameBytes(size, format));
    for (std::size_t i = 0; i < frame.size(); ++i)
        frame[i] = static_cast<unsigned char>(std::uint32_t(i) * 2654435761u >> 24);
    return frame;
}

Camera::Camera(const Setup& setup)
    : setup_(setup), slot_(freeSlot()), in_(noise(setup.input, setup.format)),
      out_(frameBytes(setup.screen, setup.format))
{
    open();
}

Camera::~Camera()
{
    Close(slot_);
}

void Camera::restart()
{
    Close(slot_);
    open();
}

void Camera::open()
{
    const Setup& setup = setup_;
    check("Initialize", Initialize(slot_, setup.input.w, setup.input.h, setup.screen.w,
                                   setup.screen.h, setup.format));
    FE_ViewParams view;
    view.nViewMode = static_cast<unsigned short>(setup.layout);
    view.nSubView = 1;
    view.nCenterX = static_cast<unsigned short>(setup.input.h / 2);
    view.nCenterY = static_cast<unsigned short>(setup.input.w / 2);
    view.nRadius = view.nRadius2 =
        static_cast<unsigned short>(std::min(setup.input.w, setup.input.h) / 2);
    view.nOverlay = 0;
    FE_EventParams event;
    event.nPanStep = static_cast<short>(setup.panStep);
    check("ParamsUpdated", ParamsUpdated(slot_, &event, &view));
    if (setup.layout == kSingle)
        IFishEye().SetAbsolutePTZ(slot_, static_cast<short>(setup.pan),
                                  static_cast<short>(setup.tilt), 0, 1);
    for (int i = 0; i < kFirstFrames; ++i)
        feed();
}

void Camera::feed()
{
    check("VideoInput", VideoInput(slot_, in_.data(), out_.data(), setup_.input.w, setup_.input.h,
                                   setup_.format, true));
}

void Camera::map()
{
    FEDSP& e = engine();
    e.AccessCtr_FESingleView(e.m_pStaged, out_.data(), setup_.input.w, setup_.input.h,
                             setup_.screen.w, setup_.screen.h);
}

std::vector<int> callersTable(Camera& camera)
{
    const Camera::Setup& setup = camera.setup();
    const int* built = camera.engine().m_pMapTable;
    std::vector<int> table(built, built + 2 * area(setup.screen));
    if (setup.format == FORMAT_RGB) // rows have no padding, so that elements become bytes at once
        for (std::size_t k = 0; k < area(setup.screen); ++k)
            table[2 * k + 1] *= 3;
    return table;
}

QuietStdout::QuietStdout()
{
    std::fflush(stdout);
    saved_ = dup(STDOUT_FILENO);
    const int null = open("/dev/null", O_WRONLY);
    if (saved_ < 0 || null < 0 || dup2(null, STDOUT_FILENO) < 0)
        throw std::system_error(errno, std::generic_category(), "/dev/null");
    close(null);
}

QuietStdout::~QuietStdout()
{
    std::fflush(stdout);
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
}

} // namespace bench
