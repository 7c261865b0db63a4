// The single view: one steerable perspective view fills the screen.
#include "FEDSP.h"

#include "engine/Numeric.h"
#include "views/PackedTable.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

using fe::trunc32;

namespace {

constexpr int kPanOffset = 90;       // quarter degrees
constexpr int kWallAngle = 720;      // quarter degrees: wall views are turned by half a turn
constexpr int kWallLowestTilt = -45; // degrees

// Growth of the lens radius per zoom step, before the layout's own factors.
double zoomGain(const FEDSP& e)
{
    const double scale = double(e.m_fScaleX);
    return scale <= 1 ? 1.5 : 1.5 * scale * scale * scale;
}

int lensRadius(const FEDSP& e)
{
    const int zoom = e.m_nSingleZoom;
    if (e.m_bLargeInput) return trunc32(e.m_nRadius * 1.04 + zoom * 3.0 * 0.5);
    double growth = zoom * zoomGain(e) * 0.4;
    if (e.m_fScaleX > 1) growth *= double(e.m_fScaleX);
    return fe::saturate32(std::int64_t(e.m_nRadius) + trunc32(growth));
}

int wallLensRadius(const FEDSP& e)
{
    const std::int64_t zoom = e.m_nSingleZoom;
    if (e.m_bLargeInput) return fe::saturate32(e.m_nRadius + zoom * 3 - 30);
    return fe::saturate32(std::int64_t(e.m_nRadius) + trunc32(double(zoom - 10) * zoomGain(e)));
}

void limitAux(FEDSP& e, float top, int bottom)
{
    if (float(e.m_nSingleAux) > top) e.m_nSingleAux = trunc32(double(top));
    e.m_nSingleAux = std::max(e.m_nSingleAux, bottom);
}

void addTruncated(int& field, double amount)
{
    field = fe::saturate32(std::int64_t(field) + trunc32(amount));
}

// Ceiling and floor, which is its mirror image.
void steerOnAxis(FEDSP& e)
{
    const int panStep = e.m_nEventPan, tiltStep = e.m_nEventTilt;
    const bool floor = e.m_nCamPos == 2;
    const float top = float(e.m_nSingleZoom) * 9 + float(trunc32(e.m_nRadius * 0.1));
    const float slope = top / float(e.m_nAngleLimit);

    if (std::abs(tiltStep) <= std::abs(panStep)) {
        const float amount = float(2 * std::abs(4 * panStep)) * e.m_fScreenScaleX / (slope + 1);
        const bool down = (panStep < 1) != floor;
        addTruncated(e.m_nSinglePan, double(down ? -amount : amount));
    } else {
        const int size = std::abs(tiltStep);
        const float offset = float(size) * slope;
        int& tilt = e.m_nSingleTilt;
        int& aux = e.m_nSingleAux;
        if ((tiltStep >= 0) != floor) {
            tilt = std::max(tilt > 0 ? tilt - size : tilt, 0);
            aux = trunc32(double(float(aux) - offset));
        } else {
            tilt = std::min(tilt < e.m_nAngleLimit ? tilt + size : tilt, e.m_nAngleLimit);
            aux = trunc32(double(float(aux) + offset));
        }
    }
    limitAux(e, top, 0);
}

void steerOnWall(FEDSP& e)
{
    const int panStep = e.m_nEventPan, tiltStep = e.m_nEventTilt;
    const double zoom = e.m_nSingleZoom;
    const float top = float((zoom * 3 - 30) * 3);
    float slope = top / float(e.m_nAngleLimit * 4);
    int& tilt = e.m_nSingleTilt;
    int& aux = e.m_nSingleAux;

    if (std::abs(tiltStep) <= std::abs(panStep)) {
        const double amount =
            double(float(std::abs(2 * panStep)) * e.m_fScreenScaleX) / (double(slope) * 0.25 + 1);
        addTruncated(e.m_nSinglePan, panStep < 1 ? -amount : amount);
    } else {
        const bool up = tiltStep < 0;
        const float sign = up ? -1.0f : 1.0f;
        if (up ? tilt >= kWallLowestTilt : tilt <= e.m_nAngleLimit) {
            slope = std::max(slope, 1.0f);
            const float size = float(std::abs(tiltStep));
            tilt = trunc32(double(float(tilt) + sign * (size / slope)));
            aux = trunc32(double(float(aux) + sign * (size * slope)));
        }
        if (up)
            tilt = std::max(tilt, kWallLowestTilt);
        else
            tilt = std::min(tilt, e.m_nAngleLimit);
    }
    limitAux(e, top, trunc32(-(zoom * 0.5 - 10) * 3.0 * 3));
}

int rebuildKey(const FEDSP& e, int width)
{
    return fe::wrappingSum(e.m_nSingleAux, e.m_nSingleZoom, width, e.m_nSingleTilt, e.m_nCamPos,
                           e.m_nScreenRes, int(e.m_bKeyFlag2), int(e.m_bKeyFlag1));
}

bool needsRebuild(const FEDSP& e, int key)
{
    return e.m_nSinglePan != e.m_nSinglePanBuilt || key != e.m_nSingleKey || e.m_bKeyFlag3 ||
           e.m_bSetup;
}

// On the wall the pan shifts the view sideways instead of turning it. Limits it to what the zoom
// allows and returns the shift in input pixels.
int limitWallPan(FEDSP& e)
{
    const double scale = double(e.m_fScaleX + e.m_fScaleY) * 0.5;
    const float limit =
        float((scale * 90 + (e.m_nSingleZoom * 0.5 - 10) * 3.0) * double(e.m_fScaleX));
    if (float(e.m_nSinglePan) > limit) e.m_nSinglePan = trunc32(double(limit));
    if (float(e.m_nSinglePan) < -limit) e.m_nSinglePan = trunc32(double(-limit));
    return e.m_nSinglePan;
}

FEDSP::ClonefishRect viewedArea(const FEDSP& e, int radius, int shift)
{
    const double rowsPerZoom = e.m_nScreenRes == 16 ? 2.25 : 3.0;
    const double zoom = e.m_nSingleZoom;
    const double left = double(radius) - e.m_nRefW / 2;
    const double top = double(radius) - e.m_nRefH / 2;
    return {trunc32(left + zoom * 4 - shift * 0.5),
            trunc32(top - e.m_nSingleAux + zoom * rowsPerZoom), trunc32(e.m_nRefW - 2 * zoom * 4),
            trunc32(e.m_nRefH - 2 * zoom * rowsPerZoom)};
}

void buildTable(FEDSP& e, int radius, int width, int height)
{
    const bool wall = e.m_nCamPos == 1;
    if (e.m_nCamPos < 0 || e.m_nCamPos > 2) return;
    const int shift = wall ? limitWallPan(e) : 0;
    const float angle = float(wall ? kWallAngle : fe::wrapAngle(e.m_nSinglePan, kPanOffset));
    e.Fisheye_calibration_Init_byArea(
        e.m_nCenterX, fe::saturate32(std::int64_t(e.m_nCenterY) + shift), radius, radius,
        viewedArea(e, radius, shift), angle, e.m_nSingleZoom, width, height, e.m_pMapTable,
        e.m_nSingleTilt, wall ? 2 : e.m_nCamPos);
}

void mapWholeFrame(FEDSP& e, unsigned char* in, unsigned char* out, int* table, int width,
                   int height)
{
    const auto map = [&](unsigned char* dst) {
        e.FCMapping(e.m_nFormat, in, dst, table, e.m_nInputW, e.m_nInputH, width, height,
                    e.m_FishSetting.bEnabled != 0);
    };
    const bool packed = e.m_nFormat == FORMAT_RGB;
    if (!packed && e.m_nCamPos != 0) {
        map(e.m_pViewImage);
        e.TransferButtomToUpPlanar(e.m_pViewImage, out, width, height, true);
    } else if (!packed && (width % 2 != 0 || height % 2 != 0)) {
        // The kernels round odd chroma sizes up, which is more than the caller's frame holds.
        map(e.m_pViewImage);
        std::memcpy(out, e.m_pViewImage, std::size_t(width) * std::size_t(height) * 3 / 2);
    } else {
        map(out);
    }
}

// Maps one band and returns the number of lines done.
int mapBand(FEDSP& e, unsigned char* in, unsigned char* out, int width, int height)
{
    const bool flipped = e.m_nFormat != FORMAT_RGB && e.m_nCamPos != 0;
    const int lines = e.FCMapping_line(e.m_nFormat, in, flipped ? e.m_pViewImage : out,
                                       e.m_pMapTable, e.m_nInputW, e.m_nInputH, width, height,
                                       e.m_FishSetting.bEnabled != 0, e.m_nLineIndex);
    if (flipped && (e.m_nLineIndex >= height - 1 || lines == height))
        e.TransferButtomToUpPlanar(e.m_pViewImage, out, width, height, true);
    return lines;
}

} // namespace

bool FEDSP::AccessCtr_FESingleView(unsigned char* pIn, unsigned char* pOut, int, int, int nScreenW,
                                   int nScreenH)
{
    int radius = lensRadius(*this);
    if (m_nLineIndex < 1) {
        if (m_nCamPos == 0 || m_nCamPos == 2) {
            steerOnAxis(*this);
        } else if (m_nCamPos == 1) {
            radius = wallLensRadius(*this);
            steerOnWall(*this);
        }
    }

    const int key = rebuildKey(*this, nScreenW);
    if (needsRebuild(*this, key)) {
        buildTable(*this, radius, nScreenW, nScreenH);
        fe::dropPackedTable(*this);
        m_nSinglePanBuilt = m_nSinglePan;
        m_nSingleKey = key;
    }

    const bool wholeFrame = m_nLineIndex < 0;
    if (m_nFormat < FORMAT_YUYV || m_nFormat > FORMAT_YV12) return wholeFrame;
    if (!wholeFrame) return mapBand(*this, pIn, pOut, nScreenW, nScreenH) >= nScreenH;
    int* table = fe::tableForFormat(*this, nScreenW * nScreenH);
    mapWholeFrame(*this, pIn, pOut, table, nScreenW, nScreenH);
    return true;
}
