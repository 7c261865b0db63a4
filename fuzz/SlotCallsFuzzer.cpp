// Random sequences of calls of the slot functions and of IFishEye, with any arguments. Only frame
// buffers have the sizes that the header asks for, to the byte.
#include "Draw.h"
#include "ExactBuffer.h"
#include "FEDSP.h"
#include "LumoFESDK.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr int kSlots = 4;

int drawSlot(Draw& draw)
{
    return draw.chance(24) ? draw.of({-1, 16, 17, INT_MAX, INT_MIN}) : draw.below(kSlots);
}

int drawInputSide(Draw& draw, int smallest)
{
    if (draw.chance(8)) return smallest - 1 + draw.below(4);
    if (draw.chance(40)) return draw.of({4095, 4096, 4097, 2048, 1280, 0, -1, INT_MAX, INT_MIN});
    return draw.between(smallest, draw.chance(6) ? 700 : smallest + 60);
}

int drawScreenSide(Draw& draw)
{
    if (draw.chance(30)) return draw.extremeInt();
    if (draw.chance(6))
        return draw.of({0,   1,   2,   3,   4,   5,   7,   8,   64,   132, 240,
                        320, 480, 600, 640, 720, 768, 799, 800, 1080, 1366});
    return draw.between(0, draw.chance(6) ? 900 : 240);
}

FORMAT drawFormat(Draw& draw)
{
    if (draw.chance(24)) return FORMAT(draw.of({-1, 4, INT_MAX, INT_MIN}));
    return FORMAT(draw.below(4));
}

// What a slot was initialised with, and the buffers that the next set-up of the live slot drops.
struct Slot {
    int inW = 320, inH = 240;
};

std::array<Slot, kSlots> slots;

// Initialises without the leaks that belong to the contract: the buffers of a live slot and the
// records of a closed one are dropped by the library.
void initialize(Draw& draw, IFishEye& eye)
{
    const int slot = drawSlot(draw);
    const int inW = drawInputSide(draw, 320), inH = drawInputSide(draw, 240);
    int screenW = drawScreenSide(draw), screenH = drawScreenSide(draw);
    // Screens of a gigabyte are legal, but slow.
    if (std::int64_t(screenW) * screenH > 4'000'000 && std::int64_t(screenW) * screenH < INT_MAX)
        screenH = 3;

    FEDSP* live = nullptr;
    FE_EventParams* oldEvent = nullptr;
    FE_ViewParams* oldView = nullptr;
    std::array<unsigned char*, 4> images{};
    std::array<int*, 4> tables{};
    const bool known = slot >= 0 && slot < kSlots;
    if (known) {
        live = m_FEDSP[slot];
        if (live) {
            images = {live->m_pStaged, live->m_pViewImage, live->m_pWorkImageA, live->m_pPanoImage};
            tables = {live->m_pSubMapA, live->m_pSubMapB, live->m_pMapTable, live->m_pMapWork};
        } else {
            oldEvent = m_EventParam[slot];
            oldView = m_ViewParam[slot];
        }
    }
    const int status = eye.LmFE_Initialize(slot, inW, inH, screenW, screenH, drawFormat(draw));
    if (status == FE_STATUS_INVALID || !known) return;
    slots[std::size_t(slot)] = {inW, inH};
    if (live) {
        for (unsigned char* image : images)
            delete[] image;
        for (int* table : tables)
            delete[] table;
    } else {
        delete oldEvent;
        delete oldView;
    }
}

int drawFrameSide(Draw& draw, int initialised)
{
    switch (draw.below(12)) {
    case 0:
        return initialised + draw.between(-3, 3);
    case 1:
        return initialised / 2;
    case 2:
        return draw.between(0, 1000);
    case 3:
        return draw.extremeInt();
    default:
        return initialised;
    }
}

std::size_t frameBytes(std::int64_t pixels, FORMAT format)
{
    return std::size_t(format == FORMAT_RGB ? pixels * 3 : pixels * 3 / 2);
}

void videoInput(Draw& draw, IFishEye& eye)
{
    const int slot = drawSlot(draw);
    const bool known = slot >= 0 && slot < kSlots;
    const Slot size = known ? slots[std::size_t(slot)] : Slot{};
    const int w = drawFrameSide(draw, size.inW), h = drawFrameSide(draw, size.inH);
    const FORMAT format = drawFormat(draw);

    // Frames that are far too large are refused before they are looked at.
    const std::int64_t pixels = w > 0 && h > 0 ? std::int64_t(w) * h : 0;
    ExactBuffer in(pixels <= 20'000'000 ? frameBytes(pixels, format) : 1);
    draw.fill(in.data(), in.size());

    std::int64_t screen = 0;
    FORMAT inForce = format;
    if (known && m_FEDSP[slot]) {
        const FEDSP& engine = *m_FEDSP[slot];
        if (engine.m_nScreenW > 0 && engine.m_nScreenH > 0)
            screen = std::int64_t(engine.m_nScreenW) * engine.m_nScreenH;
        if (!engine.m_bSetup) inForce = engine.m_nFormat;
    }
    // Such screens were not set up.
    ExactBuffer out(screen <= 20'000'000 ? frameBytes(screen, inForce) : 1);

    unsigned char* const src = draw.chance(40) ? nullptr : in.data();
    unsigned char* const dst = draw.chance(40) ? nullptr : out.data();
    const bool flip = draw.chance(2);
    // What has been still for some frames is mapped in another way.
    const int times = draw.chance(8) ? 12 : 1;
    for (int frame = 0; frame < times; ++frame)
        eye.LmFE_VideoInput(slot, src, dst, w, h, format, flip);
}

void paramsUpdated(Draw& draw, IFishEye& eye)
{
    FE_EventParams event;
    event.nPanStep = draw.shortValue();
    event.nTiltStep = draw.shortValue();
    event.nZoomStep = draw.shortValue();
    FE_ViewParams view;
    const int slot = drawSlot(draw);
    const bool known = slot >= 0 && slot < kSlots;
    view.nViewMode = static_cast<unsigned short>(draw.of({1, 2, 4, 8}));
    view.nCamPos = static_cast<unsigned short>(draw.below(3));
    view.nSubView = static_cast<unsigned short>(draw.below(6));
    view.nOverlay = static_cast<unsigned short>(draw.below(5));
    if (known && !draw.chance(4)) {
        view.nCenterX = static_cast<unsigned short>(slots[std::size_t(slot)].inH / 2);
        view.nCenterY = static_cast<unsigned short>(slots[std::size_t(slot)].inW / 2);
        view.nRadius = static_cast<unsigned short>(slots[std::size_t(slot)].inW / 2);
    }
    if (draw.chance(6)) view.nRadius = static_cast<unsigned short>(draw.between(0, 1400));
    if (draw.chance(12)) {
        for (unsigned short* field :
             {&view.nViewMode, &view.nCamPos, &view.nSubView, &view.nCenterX, &view.nCenterY,
              &view.nRadius, &view.nRadius2, &view.nOverlay})
            if (draw.chance(2)) *field = draw.unsignedShort();
    }
    eye.LmFE_ParamsUpdated(slot, draw.chance(40) ? nullptr : &event,
                           draw.chance(40) ? nullptr : &view);
}

void setPosition(Draw& draw, IFishEye& eye)
{
    const int slot = drawSlot(draw);
    FE_CurPosParams position = {};
    eye.LmFEGetPosition(slot, &position);
    if (draw.chance(2)) position.nViewMode = static_cast<unsigned short>(draw.of({1, 2, 4, 8}));
    if (draw.chance(4)) position.nCamPos = static_cast<unsigned short>(draw.below(3));
    if (draw.chance(6)) position.nRadius = static_cast<unsigned short>(draw.between(0, 1400));
    if (draw.chance(12))
        for (unsigned short* field : {&position.nViewMode, &position.nCamPos, &position.nCenterX,
                                      &position.nCenterY, &position.nRadius, &position.nRadius2})
            if (draw.chance(2)) *field = draw.unsignedShort();
    for (FE_ViewPosition& view : position.view)
        for (short* field : {&view.nPan, &view.nTilt, &view.nZoom, &view.nAux})
            if (draw.chance(2)) *field = draw.shortValue();
    position.bQuadOption = static_cast<unsigned char>(draw.below(3));
    position.n180Pos = draw.chance(2) ? draw.extremeInt() : draw.any();
    eye.LmFESetPosition(slot, draw.chance(40) ? nullptr : &position);
}

void call(Draw& draw, IFishEye& eye)
{
    switch (draw.below(20)) {
    case 0:
    case 1:
        initialize(draw, eye);
        break;
    case 2:
        eye.LmFE_Close(drawSlot(draw));
        break;
    case 3:
    case 4:
    case 5:
    case 6:
        paramsUpdated(draw, eye);
        break;
    case 7:
    case 8:
        setPosition(draw, eye);
        break;
    case 9:
    case 10:
        eye.SetAbsolutePTZ(drawSlot(draw), draw.shortValue(), draw.shortValue(), draw.shortValue(),
                           static_cast<unsigned short>(draw.below(6)));
        break;
    case 11: {
        short pan = 0, tilt = 0;
        eye.GetAbsolutePositionFromInputVideoPoint(
            drawSlot(draw), draw.chance(3) ? draw.extremeInt() : draw.between(-100, 5000),
            draw.chance(3) ? draw.any() : draw.between(-100, 5000), pan, tilt);
        break;
    }
    case 12:
        SetInfo(drawSlot(draw), draw.any(), draw.any(), nullptr);
        LmFEalignmentTool(drawSlot(draw), nullptr, draw.any(), draw.any(), drawFormat(draw),
                          nullptr);
        break;
    default:
        videoInput(draw, eye);
        break;
    }
}

void forgetSlots()
{
    for (int slot = 0; slot < kSlots; ++slot) {
        Close(slot);
        delete m_EventParam[slot];
        delete m_ViewParam[slot];
        m_EventParam[slot] = nullptr;
        m_ViewParam[slot] = nullptr;
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // The library reports on standard output.
    return std::freopen("/dev/null", "w", stdout) ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Draw draw(data, size);
    IFishEye eye;
    for (int calls = 0; calls < 24 && draw.more(); ++calls)
        call(draw, eye);
    forgetSlots();
    return 0;
}
