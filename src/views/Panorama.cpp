// Building and mapping a panorama.
#include "views/Panorama.h"

#include "mapping/MapEntry.h"
#include "views/TableForms.h"
#include "views/ViewRules.h"

namespace fe {

bool isPlanar(FORMAT format)
{
    return format == FORMAT_YUYV || format == FORMAT_NV12 || format == FORMAT_YV12;
}

int panoramaWidth(const FEDSP& e)
{
    return e.m_nCamPos == 1 ? e.m_nPanoH0 : e.m_nPanoH;
}

PanoramaMap outerRows(const FEDSP& e)
{
    const int rows = e.m_nRadius >> 1;
    const int skip = (rows >> 2) * 2;
    return {e.m_nPanoH, rows - skip, std::int64_t(skip) * e.m_nPanoH};
}

void buildPanorama(FEDSP& e)
{
    if (e.m_nCamPos == 1)
        e.Mercator_Projection_360(e.m_nCenterX, e.m_nCenterY, e.m_nRadius, e.m_nInputW, e.m_nInputH,
                                  e.m_pMapTable, 0, e.m_fSinTbl, e.m_fCosTbl, e.m_nCamPos,
                                  e.m_nPanoH0);
    else
        e.InitCPIBuffer_360(e.m_nCenterX, e.m_nCenterY, e.m_nRadius, e.m_nInputW, e.m_nInputH,
                            e.m_pMapTable, e.m_n180Pan, e.m_fSinTbl, e.m_fCosTbl, 0, 0, e.m_nPanoH);
    tableChanged(e, e.m_pMapTable);
}

int mapPanorama(FEDSP& e, unsigned char* in, int inW, int inH, const PanoramaMap& map)
{
    if (!isKnown(e.m_nFormat)) return 0;
    if (e.m_nLineIndex < 0) {
        mapByTable(e, in, e.m_pPanoImage, e.m_pMapTable, map.firstEntry, map.width, map.rows);
        return 0;
    }
    int* table = e.m_pMapTable + map.firstEntry * std::int64_t(kMapEntryBytes / sizeof(int));
    return e.CPIMapping_line(e.m_nFormat, in, e.m_pPanoImage, table, inW, inH, map.rows, 0, 0,
                             map.width, e.m_FishSetting.bEnabled != 0, e.m_nLineIndex);
}

} // namespace fe
