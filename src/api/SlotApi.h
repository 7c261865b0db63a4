// The slot table as the entry points share it.
#ifndef LUMOFE_SLOTAPI_H
#define LUMOFE_SLOTAPI_H

#include "FEDSP.h"

namespace fe {

inline bool isSlot(int nCam)
{
    return nCam >= 0 && nCam < FE_MAX_CAMERAS;
}

// The slot's engine; null for an empty slot and for numbers that are no slot.
inline FEDSP* engineOf(int nCam)
{
    return isSlot(nCam) ? m_FEDSP[nCam] : nullptr;
}

} // namespace fe

#endif
