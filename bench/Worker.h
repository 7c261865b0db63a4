// Times cases on request, so that one program can have several processes measure in turn.
#ifndef LUMOFE_BENCH_WORKER_H
#define LUMOFE_BENCH_WORKER_H

#include "Case.h"

namespace bench {

// Answers each line of standard input with one of standard output, until there are no more:
//
//     CASE          milliseconds of processor time of one run of the case, from as many runs as a
//                   short while takes
//     CASE@ISA      the same with instruction sets up to this one, such as SSSE3 or plain
//     close         frees everything that the cases so far have set up
//
// What cannot be answered gets a line that starts with "error: " and says why. Returns main's
// status.
int serve(const Cases& cases);

} // namespace bench

#endif
