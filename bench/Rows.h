// What is compared with what, and how fast it shall be.
#ifndef LUMOFE_BENCH_ROWS_H
#define LUMOFE_BENCH_ROWS_H

#include <vector>

namespace bench {

enum class Against {
    opencv, // another case of the 64-bit program that links OpenCV
    itself, // another case of the same program, so of the same word size
    v360,   // FFmpeg's filter, see V360.h
};

struct Row {
    const char* name; // one word, to choose rows by
    const char* what; // as the results call it
    const char* ours; // the case
    Against against;
    const char* theirs;        // the case
    const char* theirsName;    // as the results call it
    double wanted64, wanted32; // how many times as fast as theirs at the least; 0: no matter
    bool slower = false;       // wanted is how many times as slow at the most
};

extern const std::vector<Row> kRows;

} // namespace bench

#endif
