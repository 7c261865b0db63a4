// One of the library's sixteen camera slots.
#include "Slot.h"

#include "Error.h"

#include <LumoFESDK.h>
#include <algorithm>
#include <array>
#include <mutex>
#include <string>
#include <utility>

namespace lumofe {
namespace {

std::mutex mutex;
std::array<bool, FE_MAX_CAMERAS> taken{};

int take()
{
    const std::scoped_lock lock(mutex);
    const auto free = std::ranges::find(taken, false);
    if (free == taken.end())
        throw Error("all " + std::to_string(FE_MAX_CAMERAS) +
                    " camera slots of this process are in use; stop another camera first");
    *free = true;
    return int(free - taken.begin());
}

void giveBack(int number)
{
    const std::scoped_lock lock(mutex);
    taken[std::size_t(number)] = false;
}

} // namespace

Slot::Slot() : number_(take()) {}

Slot::~Slot()
{
    close();
    giveBack(number_);
}

void Slot::close()
{
    Close(number_);
    // The next Initialize would drop the records that a closed slot leaves behind.
    delete std::exchange(m_EventParam[number_], nullptr);
    delete std::exchange(m_ViewParam[number_], nullptr);
}

} // namespace lumofe
