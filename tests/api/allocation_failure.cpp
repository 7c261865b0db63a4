// Makes each allocation of Initialize fail in turn. A program of its own, because it replaces
// operator new.
#include "FEDSP.h"
#include "LumoFESDK.h"
#include "ReplacedNew.h"

#include <cstdio>
#include <cstdlib>
#include <new>
#include <vector>

namespace {

long allocations = 0; // since the last set-up
long failing = 0;     // number of the one that fails, 0 for none
long living = 0;      // blocks in use

} // namespace

void* allocateBlock(std::size_t size)
{
    if (++allocations == failing) return nullptr;
    void* block = std::malloc(size ? size : 1);
    if (block) ++living;
    return block;
}

void releaseBlock(void* block)
{
    if (block) --living;
    std::free(block);
}

namespace {

constexpr int kInput = 640, kScreenW = 320, kScreenH = 240, kThrown = -1;

int initialize()
{
    try {
        return Initialize(0, kInput, kInput, kScreenW, kScreenH, FORMAT_NV12);
    } catch (const std::bad_alloc&) {
        return kThrown;
    }
}

// A closed slot keeps its two records.
void forgetRecords()
{
    delete m_EventParam[0];
    delete m_ViewParam[0];
    m_EventParam[0] = nullptr;
    m_ViewParam[0] = nullptr;
}

bool expect(bool holds, long failed, const char* promise)
{
    if (!holds) std::fprintf(stderr, "allocation %ld failed, and not so: %s\n", failed, promise);
    return holds;
}

// What a slot does whose set-up lacked one allocation.
bool survives(long failed)
{
    std::vector<unsigned char> in(kInput * kInput * 3 / 2), out(kScreenW * kScreenH * 3 / 2, 7);
    const std::vector<unsigned char> untouched = out;
    FE_EventParams event;
    FE_ViewParams view;
    view.nViewMode = 8;
    view.nOverlay = 0;
    FE_CurPosParams position = {};
    const long before = living;
    allocations = 0;
    failing = failed;
    const int status = initialize();
    failing = 0;

    bool good = expect(status != FE_STATUS_OK, failed, "Initialize says so");
    ParamsUpdated(0, &event, &view);
    const int frame = VideoInput(0, in.data(), out.data(), kInput, kInput, FORMAT_NV12, false);
    good &= expect(frame == FE_STATUS_NOT_PROCESSED || frame == FE_STATUS_INVALID, failed,
                   "frames are refused");
    good &= expect(out == untouched, failed, "a refused frame writes nothing");
    IFishEye eye;
    eye.SetAbsolutePTZ(0, 100, 200, 300, 1);
    eye.LmFEGetPosition(0, &position);
    eye.LmFESetPosition(0, &position);

    good &= expect(Close(0) == FE_STATUS_OK, failed, "Close succeeds");
    forgetRecords();
    good &= expect(living == before, failed, "Close frees all");

    good &= expect(initialize() == FE_STATUS_OK, failed, "the slot can be set up again");
    ParamsUpdated(0, &event, &view);
    good &= expect(VideoInput(0, in.data(), out.data(), kInput, kInput, FORMAT_NV12, false) ==
                       FE_STATUS_OK,
                   failed, "it then serves frames");
    Close(0);
    forgetRecords();
    return expect(living == before, failed, "the second Close frees all") && good;
}

} // namespace

int main()
{
    allocations = 0;
    if (initialize() != FE_STATUS_OK) return 1;
    const long needed = allocations;
    Close(0);
    forgetRecords();

    bool good = needed >= 11; // engine, two records, eight buffers
    for (long failed = 1; failed <= needed; ++failed)
        good &= survives(failed);
    std::fprintf(stderr, "%ld allocations failed in turn\n", needed);
    return good ? 0 : 1;
}
