// The remapping kernels' inner loops with SSE2.
#include "kernels/RemapSse.h"

namespace fe {

const RemapOps kRemapSse2{mapLuma<SseVectors>, mapPacked<SseVectors, false>,
                          mapPacked<SseVectors, true>, chromaIndices<SseVectors>, nullptr};

} // namespace fe
