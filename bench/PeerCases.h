// The same work done with OpenCV, on one thread.
#ifndef LUMOFE_BENCH_PEERCASES_H
#define LUMOFE_BENCH_PEERCASES_H

#include "Case.h"

namespace bench {

Cases peerCases();

} // namespace bench

#endif
