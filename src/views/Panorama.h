// What the two panorama renderers share.
#ifndef LUMOFE_PANORAMA_H
#define LUMOFE_PANORAMA_H

#include "FEDSP.h"

#include <cstdint>

namespace fe {

// A piece of the panorama table and what it is mapped to.
struct PanoramaMap {
    int width;               // columns of the table
    int rows;                // rows to map
    std::int64_t firstEntry; // where they begin in the table
};

// True for the formats whose unwrap is scaled to the frame.
bool isPlanar(FORMAT format);

// Columns of the table for the engine's mounting: the remap's on the wall, else the unwrap's.
int panoramaWidth(const FEDSP& e);

// The rows of the polar unwrap that are shown: all but the innermost radii.
PanoramaMap outerRows(const FEDSP& e);

// Builds the main table: the remap on the wall, else the polar unwrap.
void buildPanorama(FEDSP& e);

// Maps rows of the panorama into m_pPanoImage: all of them, or the band at m_nLineIndex. The result
// is that of the mapping by lines; unknown formats map nothing.
int mapPanorama(FEDSP& e, unsigned char* in, int inW, int inH, const PanoramaMap& map);

} // namespace fe

#endif
