// Dewarps a frame in bands of 64 rows, so that a host can do other work in between.
//
// Only the engine class can: VideoInput always does whole frames. The result is compared with a
// whole frame: the luma is the same; of each chroma pair the band kernel exchanges the two bytes,
// which the host puts right.
#include <FEDSP.h>
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr int slot = 0, inW = 1280, inH = 1280, screenW = 800, screenH = 600, bandRows = 64;

void expect(bool held, const char* what)
{
    if (!held) throw std::runtime_error(what);
}

struct FreeBuffers {
    void operator()(FEDSP* engine) const
    {
        engine->DeleteAccess_ctr_Mem(); // the destructor does not
        delete engine;
    }
};

using Engine = std::unique_ptr<FEDSP, FreeBuffers>;

Engine openEngine()
{
    Engine engine(new FEDSP);
    engine->FE_Initialize(slot, inW, inH, 4);
    expect(engine->MemoryAllocated_AccessCtr(inW, inH, screenW, screenH) == 0,
           "no memory for the buffers; choose a smaller screen");
    FE_ViewParams view;
    view.nViewMode = 8; // single view, camera on the ceiling
    view.nCenterX = inH / 2;
    view.nCenterY = inW / 2;
    view.nOverlay = 0;
    FE_EventParams still;
    expect(engine->FEParamsUpdated(&still, &view), "FEParamsUpdated refused the view");
    engine->SetAbsolutePTZCPU(slot, 900, 500, 0, 1);
    return engine;
}

void render(FEDSP& engine, int firstRow, Bytes& in, Bytes& out)
{
    engine.m_nLineIndex = firstRow;
    expect(engine.LumoAccessCtr_FEProc_VideoInput(slot, 0, in.data(), out.data(), inW, inH,
                                                  FORMAT_NV12, false, inW),
           "the frame was refused: it must fit the sizes given to MemoryAllocated_AccessCtr");
}

} // namespace

int main()
try {
    Bytes in(inW * inH * 3 / 2);
    for (std::size_t i = 0; i < in.size(); ++i)
        in[i] = (unsigned char)(i % inW / 8 + i / inW / 12 + i % 2 * 40);

    Bytes whole(screenW * screenH * 3 / 2), banded(whole.size());
    const Engine one = openEngine(), other = openEngine();
    render(*one, -1, in, whole);

    int bands = 0;
    for (int row = 0; row < screenH; row += bandRows, ++bands) {
        render(*other, row, in, banded);
        // The first band took a copy of the frame, so its memory may be used again.
        std::fill(in.begin(), in.end(), (unsigned char)0);
    }

    const auto chroma = std::size_t(screenW * screenH);
    for (std::size_t i = chroma; i < banded.size(); i += 2)
        std::swap(banded[i], banded[i + 1]);
    expect(banded == whole, "the bands do not join to the whole frame");
    std::fprintf(stderr, "%d bands of %d rows: the same bytes as the whole frame\n", bands,
                 bandRows);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "dewarp_in_bands: %s\n", error.what());
    return 1;
}
