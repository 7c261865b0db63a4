// Copying in reverse order, which mirrors a row.
#ifndef LUMOFE_REVERSEDCOPY_H
#define LUMOFE_REVERSEDCOPY_H

#include <cstddef>

namespace fe {

// Element x of dst becomes element count - 1 - x of src, one after the other; elements have 1 or 2
// bytes.
void copyReversed(const unsigned char* src, unsigned char* dst, std::size_t count,
                  std::size_t elementBytes);

} // namespace fe

#endif
