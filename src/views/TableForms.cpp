// The second forms of the tables. Tables are built with luma-plane indices (row * pitch + column);
// the kernels for packed frames read byte offsets (row * 3 * width + 3 * column).
#include "views/TableForms.h"

#include "engine/Buffers.h"
#include "kernels/Sampling.h"
#include "kernels/TickLines.h"
#include "mapping/MapEntry.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>

namespace fe {

namespace {

// In the order in which their second forms follow one another in m_pMapWork.
constexpr Buffer kTables[] = {kMapTable, kSubMapA, kSubMapB};
constexpr int kNoTable = -1;

constexpr std::size_t kSlices = 8; // frames that making a plan takes

// Which of the tables the address lies in.
int numberOf(const FEDSP& e, const int* table)
{
    const std::less<const void*> before;
    const auto* p = reinterpret_cast<const unsigned char*>(table);
    for (int n = 0; n < int(std::size(kTables)); ++n) {
        const auto* first = static_cast<const unsigned char*>(bufferAddress(e, kTables[n]));
        if (first && !before(p, first) && before(p, first + e.m_nCapacity[kTables[n]])) return n;
    }
    return kNoTable;
}

unsigned char* placeOf(const FEDSP& e, int number)
{
    std::size_t offset = 0;
    for (int n = 0; n < number; ++n)
        offset += e.m_nCapacity[kTables[n]];
    return reinterpret_cast<unsigned char*>(e.m_pMapWork) + offset;
}

// What is left of m_pMapWork for the table's second form.
std::size_t roomOf(const FEDSP& e, int number)
{
    const auto used = std::size_t(placeOf(e, number) - placeOf(e, 0));
    const std::size_t all = e.m_nCapacity[kMapWork];
    return used < all ? std::min(all - used, e.m_nCapacity[kTables[number]]) : 0;
}

// What a plan was made for, and how far. It stands before the plan.
struct PlanHeader {
    enum { kBeingMade, kMade, kRefused } state;
    int w, h, stride;
    const int* entries; // a host may have put another table in its place
    std::uint64_t rows, oddTiles;
};
constexpr std::size_t kHeaderBytes = 64;
static_assert(sizeof(PlanHeader) <= kHeaderBytes);
constexpr int kPlanned = -1; // in FEDSP::m_nPackedEntries: there is a header

// m_pMapWork may be unaligned.
PlanHeader loadHeader(const FEDSP& e, int number)
{
    PlanHeader header;
    std::memcpy(&header, placeOf(e, number), sizeof header);
    return header;
}

void storeHeader(FEDSP& e, int number, const PlanHeader& header)
{
    std::memcpy(placeOf(e, number), &header, sizeof header);
    e.m_nPackedEntries[number] = kPlanned;
}

// The plan for the picture's entries. It is made slice by slice in the frames that follow the first
// one: while a view is being steered it would not pay, and no frame shall take much longer than
// others. False while there is none.
bool findPlan(FEDSP& e, int number, const int* entries, RemapPlan& plan)
{
    const RemapOps& ops = remapOps(isaInUse());
    const std::size_t bytes = planBytes(plan.w, plan.h);
    if (!ops.planRow || bytes == 0 || kHeaderBytes + bytes > roomOf(e, number)) return false;

    PlanHeader header{PlanHeader::kBeingMade, plan.w, plan.h, plan.stride, entries, 0, 0};
    const PlanHeader wanted = header;
    const bool any = e.m_nPackedEntries[number] == kPlanned;
    if (any) header = loadHeader(e, number);
    if (!any || header.w != wanted.w || header.h != wanted.h || header.stride != wanted.stride ||
        header.entries != wanted.entries) {
        storeHeader(e, number, wanted);
        return false;
    }
    plan.memory = placeOf(e, number) + kHeaderBytes;
    plan.rows = std::size_t(header.rows);
    plan.oddTiles = std::size_t(header.oddTiles);
    if (header.state == PlanHeader::kBeingMade) {
        const std::size_t slice = std::size_t(plan.h) / kPlanBlockH / kSlices + 1;
        const bool pays = makePlan(plan, entries, ops, slice);
        header.rows = plan.rows;
        header.oddTiles = plan.oddTiles;
        if (!pays)
            header.state = PlanHeader::kRefused;
        else if (isComplete(plan))
            header.state = PlanHeader::kMade;
        storeHeader(e, number, header);
    }
    return header.state == PlanHeader::kMade;
}

// The picture that the kernels for 4:2:0 frames write.
PlanarPicture wholePicture(unsigned char* dst, FORMAT format, int w, int h)
{
    const int planes = format == FORMAT_YV12 ? 2 : 1;
    const std::ptrdiff_t pixels = std::ptrdiff_t(w) * h;
    return {dst, w, planes, {dst + pixels, dst + pixels + pixels / 4}, w / planes};
}

// What times the kernel for 4:2:0 frames in that format.
TickLines ticksOf(FORMAT format)
{
    return TickLines(format == FORMAT_YV12 ? "Bilinear_YV12_C" : "Bilinear_NV12_C");
}

// As the kernels for 4:2:0 frames, lines included.
void mapPlanned(const FEDSP& e, const RemapPlan& plan, const int* entries, const unsigned char* src,
                const PlanarPicture& dst)
{
    const TickLines ticks = ticksOf(e.m_nFormat);
    const std::ptrdiff_t luma = std::ptrdiff_t(e.m_nPitch) * e.m_nInputH;
    mapByPlan(plan, entries, remapOps(isaInUse()), {src, {src + luma, src + luma + luma / 4}}, dst);
    ticks.print();
}

} // namespace

bool mapByTable(FEDSP& e, unsigned char* in, unsigned char* out, int* table,
                std::int64_t firstEntry, int w, int h, const PlanarPicture* placed)
{
    const int number = numberOf(e, table);
    const std::int64_t offset = firstEntry * std::int64_t(kMapEntryBytes / sizeof(int));
    RemapPlan plan{w, h, e.m_nPitch, e.m_nCapacity[kStaged], nullptr, 0, 0};
    if (e.m_nFormat != FORMAT_RGB && in == e.m_pStaged && number != kNoTable && e.m_pMapWork &&
        canMap(in, out, table, w, h, e.m_nPitch) && findPlan(e, number, table + offset, plan)) {
        mapPlanned(e, plan, table + offset, in,
                   placed ? *placed : wholePicture(out, e.m_nFormat, w, h));
        return placed != nullptr;
    }
    int* form = tableForFormat(e, table, firstEntry + std::int64_t(w) * h);
    e.FCMapping(e.m_nFormat, in, out, form + offset, e.m_nInputW, e.m_nInputH, w, h,
                e.m_FishSetting.bEnabled != 0);
    return false;
}

void printMapped(const FEDSP& e)
{
    if (e.m_nFormat != FORMAT_RGB) ticksOf(e.m_nFormat).print();
}

int* tableForFormat(FEDSP& e, int* table, std::int64_t entries)
{
    if (e.m_nFormat != FORMAT_RGB) return table;
    const int number = numberOf(e, table);
    if (number == kNoTable || !e.m_pMapWork) return table;
    int* copy = reinterpret_cast<int*>(placeOf(e, number));
    int& upToDate = e.m_nPackedEntries[number];
    if (upToDate >= entries) return copy;

    const std::int64_t rowBytes = 3 * std::int64_t(e.m_nInputW);
    // An entry that an earlier, larger frame left behind may lie beyond the staged bytes.
    const std::int64_t last = std::int64_t(e.m_nCapacity[kStaged]) - rowBytes - 6;
    for (std::int64_t k = 0; k < entries; ++k) {
        MapEntry entry = loadEntry(table, std::size_t(k));
        const int row = entry.index / e.m_nPitch;
        const int column = entry.index % e.m_nPitch;
        const std::int64_t offset = row * rowBytes + 3 * std::int64_t(column);
        entry.index = offset >= 0 && offset <= last ? int(offset) : 0;
        storeEntry(copy, std::size_t(k), entry);
    }
    upToDate = int(entries);
    return copy;
}

void tableChanged(FEDSP& e, const int* table)
{
    const int number = numberOf(e, table);
    if (number != kNoTable) e.m_nPackedEntries[number] = 0;
}

void tablesChanged(FEDSP& e)
{
    std::fill(std::begin(e.m_nPackedEntries), std::end(e.m_nPackedEntries), 0);
}

bool hasPlan(const FEDSP& e, const int* table)
{
    const int number = numberOf(e, table);
    return number != kNoTable && e.m_nPackedEntries[number] == kPlanned &&
           loadHeader(e, number).state == PlanHeader::kMade;
}

} // namespace fe
