// Exercises of the table builders and of buffers in a host's block.
#include "Exercises.h"
#include "mapping/MapEntry.h"

#include <cstring>
#include <memory>

namespace {

// Every entry must lead a kernel to samples inside the input.
void checkTable(const int* table, std::int64_t entries, int inW, int inH)
{
    for (std::size_t k = 0; k < bytes(entries); ++k) {
        const fe::MapEntry e = fe::loadEntry(table, k);
        if (e.fractions == 0 && e.index == 0) continue;
        if (e.index < 0 || std::int64_t(e.index) + inW + 1 >= std::int64_t(inW) * inH)
            __builtin_trap();
    }
}

} // namespace

void builders(Draw& draw)
{
    FEDSP engine;
    const int inW = drawSide(draw), inH = drawSide(draw);
    engine.FE_Initialize(0, 320, 240, draw.of({4, 16}));
    engine.m_nInputW = engine.m_nPitch = inW;
    engine.m_nInputH = inH;
    engine.m_bSingle = static_cast<unsigned char>(draw.below(2));
    engine.m_bLargeInput = static_cast<unsigned char>(draw.below(2));
    engine.m_fScaleX = draw.chance(8) ? draw.anyFloat() : float(inW / 1280.0);
    const auto coordinate = [&] {
        return draw.chance(3) ? draw.extremeInt() : draw.between(-8, 32);
    };
    const int c1 = coordinate(), c2 = coordinate();
    const int radius = draw.chance(8) ? draw.of({0, -1, INT_MIN}) : draw.between(0, 60);
    const int width = drawSide(draw);
    // Builds by build(table) into so many entries, with every instruction set.
    const auto checked = [&](std::int64_t entries, auto build) {
        withEveryIsa(entries * 8, [&](unsigned char* bytesOfTable) {
            std::memset(bytesOfTable, 0, bytes(entries) * 8);
            auto* table = static_cast<int*>(static_cast<void*>(bytesOfTable));
            build(table);
            checkTable(table, entries, inW, inH);
        });
    };
    std::int64_t entries = 0;
    switch (draw.below(3)) {
    case 0: {
        const int mode = draw.between(-1, 3), rotation = draw.any(), shift = draw.below(2);
        if (width > 0 && mode == 2)
            entries = radius > 3 ? std::int64_t(radius - 3) * width + 1 : 0;
        else if (width > 0 && radius > 0)
            entries = std::min(std::int64_t(radius / 2) * width, area(inW, inH)) + 1;
        checked(entries, [&](int* table) {
            engine.InitCPIBuffer_360(c1, c2, radius, inW, inH, table, rotation, nullptr, nullptr,
                                     mode, shift, width);
        });
        break;
    }
    case 1: {
        if (width > 0 && radius > 1) entries = std::int64_t(radius - 1) * width;
        const int angle = draw.any(), mode = draw.any();
        checked(entries, [&](int* table) {
            engine.Mercator_Projection_360(c1, c2, radius, inW, inH, table, angle, nullptr, nullptr,
                                           mode, width);
        });
        break;
    }
    default: {
        const int height = drawSide(draw);
        const FEDSP::ClonefishRect rect{coordinate(), coordinate(), coordinate(), coordinate()};
        const int lens = draw.chance(4) ? draw.any() : draw.between(0, 60);
        const int unused = draw.any(), zoom = draw.any();
        const float angle = draw.anyFloat();
        const int tilt = coordinate(), mounting = draw.between(0, 3);
        checked(area(width, height), [&](int* table) {
            engine.Fisheye_calibration_Init_byArea(c1, c2, lens, unused, rect, angle, zoom, width,
                                                   height, table, tilt, mounting);
        });
        break;
    }
    }
}

// Buffers carved from a block of the host's, of any size.
void carvedBuffers(Draw& draw)
{
    const int inW = draw.between(1, 400), inH = draw.between(1, 300);
    const int screenW = draw.between(0, 400), screenH = draw.between(0, 300);
    auto engine = std::make_unique<FEDSP>();
    engine->FE_Initialize(0, inW, inH, 4);
    engine->MemoryAllocated_DSPBuff_Estimate(draw.any(), draw.any(), draw.any(), draw.any());
    const int estimate = engine->MemoryAllocated_DSPBuff_Estimate(inW, inH, screenW, screenH);
    const int size = draw.chance(2)
                         ? draw.between(0, 1 << 20)
                         : std::clamp(estimate + draw.between(-8, 20000000), 0, 40000000);
    ExactBuffer block(bytes(size));
    engine->MemoryAllocated_AccessCtr_DSP(inW, inH, screenW, screenH, block.data(), unsigned(size));
    FE_EventParams event;
    FE_ViewParams view;
    view.nViewMode = static_cast<unsigned short>(draw.of({1, 2, 4, 8}));
    view.nCamPos = static_cast<unsigned short>(draw.below(3));
    view.nSubView = 1;
    view.nRadius = static_cast<unsigned short>(inW / 2);
    view.nCenterX = static_cast<unsigned short>(inH / 2);
    view.nCenterY = static_cast<unsigned short>(inW / 2);
    view.nOverlay = 0;
    engine->FEParamsUpdated(&event, &view);
    const FORMAT format = FORMAT(draw.below(4));
    Source in(draw, 3 * area(inW, inH));
    ExactBuffer out(bytes(3 * area(screenW, screenH)));
    for (int frame = 0; frame < 2; ++frame)
        engine->LumoAccessCtr_FEProc_VideoInput(0, 0, in.data(), out.data(), inW, inH, format,
                                                draw.chance(2), inW);
    engine->DeleteAccess_ctr_Mem();
}
