// Saves where the view looks to a text file, and restores it after a restart: save_positions [FILE]
//
// A second slot plays the restarted program. Its picture must be the one that was saved, byte for
// byte.
#include <LumoFESDK.h>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int inW = 1280, inH = 1280, screenW = 400, screenH = 300;

void check(int status, const char* call)
{
    if (status != FE_STATUS_OK)
        throw std::runtime_error(std::string(call) + " failed with status " +
                                 std::to_string(status) + "; LumoFESDK.h explains it");
}

void save(const FE_CurPosParams& p, const std::string& path)
{
    std::ofstream file(path);
    file << p.nViewMode << ' ' << p.nCamPos << ' ' << p.nCenterX << ' ' << p.nCenterY << ' '
         << p.nRadius << ' ' << p.nRadius2 << '\n';
    for (const FE_ViewPosition& v : p.view)
        file << v.nPan << ' ' << v.nTilt << ' ' << v.nZoom << ' ' << v.nAux << '\n';
    file << int(p.bQuadOption) << ' ' << p.n180Pos << '\n';
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
}

FE_CurPosParams load(const std::string& path)
{
    FE_CurPosParams p = {};
    int quadOption = 0;
    std::ifstream file(path);
    file >> p.nViewMode >> p.nCamPos >> p.nCenterX >> p.nCenterY >> p.nRadius >> p.nRadius2;
    for (FE_ViewPosition& v : p.view)
        file >> v.nPan >> v.nTilt >> v.nZoom >> v.nAux;
    file >> quadOption >> p.n180Pos;
    p.bQuadOption = quadOption != 0;
    if (!file) throw std::runtime_error(path + " is no file of positions, or unreadable");
    return p;
}

// The update selects the layout and ends a held step, which would move the view on. A live quad or
// 360 layout shows a new pan only after a set-up: see m_bSetup in docs/layouts.md.
void restore(int slot, FE_CurPosParams position)
{
    FE_ViewParams view;
    view.nViewMode = position.nViewMode;
    view.nCamPos = position.nCamPos;
    view.nCenterX = position.nCenterX;
    view.nCenterY = position.nCenterY;
    view.nRadius = position.nRadius;
    view.nRadius2 = position.nRadius2;
    view.nOverlay = 0;
    FE_EventParams still;
    check(ParamsUpdated(slot, &still, &view), "ParamsUpdated");
    check(IFishEye().LmFESetPosition(slot, &position), "LmFESetPosition");
}

Bytes picture(int slot, Bytes& in)
{
    Bytes out(screenW * screenH * 3 / 2);
    check(VideoInput(slot, in.data(), out.data(), inW, inH, FORMAT_NV12, false), "VideoInput");
    return out;
}

} // namespace

int main(int argc, char** argv)
try {
    const std::string path = argc > 1 ? argv[1] : "positions.txt";
    Bytes in(inW * inH * 3 / 2);
    for (std::size_t i = 0; i < in.size(); ++i)
        in[i] = (unsigned char)(i % inW / 8 + i / inW / 12);

    FE_CurPosParams start = {8, 0, inH / 2, inW / 2, 640, 640, {}, 0, 0}; // single view, ceiling
    check(Initialize(0, inW, inH, screenW, screenH, FORMAT_NV12), "Initialize");
    restore(0, start);
    IFishEye eye;
    check(eye.SetAbsolutePTZ(0, 1350, 500, 200, 1), "SetAbsolutePTZ");
    const Bytes saved = picture(0, in);

    FE_CurPosParams position = {};
    check(eye.LmFEGetPosition(0, &position), "LmFEGetPosition");
    save(position, path);
    std::fprintf(stderr, "saved pan %d, tilt %d, zoom %d to %s\n", position.view[0].nPan,
                 position.view[0].nTilt, position.view[0].nZoom, path.c_str());

    restore(0, start);
    if (picture(0, in) == saved) throw std::runtime_error("the view did not move away");
    restore(0, load(path));
    if (picture(0, in) != saved) throw std::runtime_error("the picture did not come back");

    check(Initialize(1, inW, inH, screenW, screenH, FORMAT_NV12), "Initialize");
    restore(1, load(path));
    if (picture(1, in) != saved) throw std::runtime_error("a fresh slot shows another picture");
    std::fprintf(stderr, "restored: the same picture in the same slot and in a fresh one\n");

    check(Close(0), "Close");
    check(Close(1), "Close");
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "save_positions: %s\n", error.what());
    return 1;
}
