// The dewarping engine: one object per camera slot, with its whole state public.
//
// Most hosts only use LumoFESDK.h. This header is for those that call the kernels or the mapping
// builders themselves, or that read and set engine state between frames.
//
// Field names: m_n integer, m_b flag byte (0 or 1), m_p pointer, m_f float. Angles of views are
// quarter degrees, 1440 to a turn. The engine owns every buffer that an m_p field points to, except
// m_pInput.
#ifndef LUMOFE_FEDSP_H
#define LUMOFE_FEDSP_H

#include "CBilinear.h"
#include "LumoFESDK.h"

#include <cstddef>

// 1 / sqrt(x) by the bit-level estimate and one Newton step; at most 0.18 % too small.
// Source: the "fast inverse square root" of computer graphics, magic number 0x5F3759DF.
FE_API float FastInvSqrt(float x);

// Arctangent by a polynomial, radians, for t >= -1; at most 0.0016 off.
// Source: Rajan, Wang, Inkol, Joyal, "Efficient approximations for the arctangent function", IEEE
// Signal Processing Magazine 23 (2006).
FE_API double FastAtan(double t);

// The engine of one camera slot. Hosts find that of a slot in m_FEDSP; it may also stand alone.
class FE_API FEDSP : public CBilinear {
public:
    // The area of the fisheye circle that a view samples, in input pixels, measured from the top
    // left corner of the square that bounds the circle.
    struct ClonefishRect {
        int x; // left edge, along columns
        int y; // top edge, along rows
        int w; // columns
        int h; // rows
    };

    // Settings of which only the first byte is passed on, to mapping drivers that ignore it.
    struct FISHSETTINGPARAM {
        unsigned char bEnabled; // 1 by default
        FISHSETTINGPARAM() : bEnabled(1) {}
    };

    FEDSP();  // no size, no buffers: call FE_Initialize next
    ~FEDSP(); // frees no buffers: call DeleteAccess_ctr_Mem before
    FEDSP(const FEDSP&) = delete;
    FEDSP& operator=(const FEDSP&) = delete;

    // ---- set-up ----

    // Resets the engine for an input of nInW x nInH pixels: quad layout, all views at position 0,
    // the circle's centre in row nInW / 2 and column nInH / 2, its radius nInW / 2. nScreenRes is
    // the screen class, 4 (4:3) or 16 (16:9). Every buffer pointer is set to null without being
    // freed.
    void FE_Initialize(int nCam, int nInW, int nInH, int nScreenRes);

    // Obtains from the heap every working buffer whose pointer is null. Returns 0, or 1 when a size
    // is negative or too large, or memory is short; buffers obtained before stay.
    int MemoryAllocated_AccessCtr(int nInW, int nInH, int nScreenW, int nScreenH);

    // As above, carving the buffers from the caller's block, which must outlive them. Carved
    // buffers have no slack: frames that need it (packed 24-bit input of full size, screens larger
    // than the input or upright) are refused.
    int MemoryAllocated_AccessCtr_DSP(int nInW, int nInH, int nScreenW, int nScreenH,
                                      unsigned char* pBlock, unsigned int nBlockSize);

    // Bytes of such a block, without those of m_pMapWork and without one spare byte: the caller
    // adds both. m_pMapWork takes 24 bytes for each of max(m_nPanoH * w, area) entries: w is the
    // larger of the circle's radius and 5/8 of the input's width, area that of the screen, or of
    // the input when the screen is wider or higher than it. Also sets the screen size and the
    // panorama heights. -1 for sizes that cannot be served.
    int MemoryAllocated_DSPBuff_Estimate(int nInW, int nInH, int nScreenW, int nScreenH);

    // Frees every buffer (carved ones are only forgotten) and nulls its pointer.
    void DeleteAccess_ctr_Mem();

    // ---- frames ----

    // Renders one frame in the current layout. nReserved is not read. nPitch is what the kernels
    // take as the distance of two rows; staging copies tightly packed rows, so it should be nW.
    // False for a null frame or one that the buffers cannot hold; then nothing was changed.
    bool LumoAccessCtr_FEProc_VideoInput(int nCam, int nReserved, unsigned char* pIn,
                                         unsigned char* pOut, int nW, int nH, FORMAT format,
                                         bool bFlip, int nPitch);

    // Copies a frame into the staging buffer. 4:2:0: nW * nH * 3 / 2 bytes, only while m_nLineIndex
    // is below 1; RGB: TransferButtomToUp; other formats: nothing.
    void AccessCtr_FECopypIn(unsigned char* pSrc, unsigned char* pDst, int nW, int nH,
                             FORMAT format, bool bFlip);

    // Copies a packed 24-bit image, upside down when bFlip is set. Without it the last row is left
    // out.
    void TransferButtomToUp(unsigned char* pSrc, unsigned char* pDst, int nW, int nH, bool bFlip);

    // Turns a 4:2:0 image (planes by m_nFormat) upside down, or without bFlip mirrors it left-right
    // with an offset of one element: element 0 of a row comes from the first element behind the
    // row, so the source must be readable one element past each plane.
    void TransferButtomToUpPlanar(unsigned char* pSrc, unsigned char* pDst, int nW, int nH,
                                  bool bFlip);

    void OnScreenres4();  // 4:3: tilts limited to 45, stored tilts lowered to it
    void OnScreenres16(); // 16:9: tilts limited to 60

    // ---- parameters ----

    // Takes over layout, mounting, circle and step. pEvent is consumed. Always true.
    bool FEParamsUpdated(FE_EventParams* pEvent, FE_ViewParams* pView);
    // Clears the working buffers and applies the limits of the current mounting.
    void OnViewModeChange();

    // ---- positions: nCam is not used ----

    // As the calls of IFishEye; a null record does nothing.
    void LmFESetPosition(int nCam, FE_CurPosParams* p);
    void LmFEGetPosition(int nCam, FE_CurPosParams* p);

    // nZoom limited to the range of p's nCamPos and nViewMode. p must not be null.
    int LmFEZoom(int nZoom, FE_ViewParams* p);

    // Pan and tilt of an input pixel; nX counts columns, nY rows. This variant has full resolution:
    // pan in tenths of a degree, clockwise from the picture's top (ceiling) or counter-clockwise
    // from its bottom (floor); tilt 0 to -900 on the ceiling, 0 to 900 on the floor. Wall: offsets
    // with the opposite sign of the variant below.
    void GetAbsolutePositionFromInputVideoPoint(int nX, int nY, short& nPan, short& nTilt);
    // The variant behind IFishEye: pan in steps of a quarter degree, clockwise; see LumoFESDK.h.
    void GetAbsolutePositionFromInputVideoPointCPU(int nX, int nY, short& nPan, short& nTilt);
    // Steers view nSubView of the layout in m_ViewParams; see IFishEye::SetAbsolutePTZ.
    void SetAbsolutePTZCPU(int nCam, short nPan, short nTilt, short nZoom, unsigned short nSubView);

    // ---- mapping ----

    // Builds the mapping table of one perspective view: a pinhole picture of an equidistant lens,
    // turned about the optical axis and tilted by a keystone (a homography).
    //
    //   u, v         circle centre, input pixels: u counts rows, v counts columns
    //   Lr           circle radius, input pixels
    //   Sr, Scale_N  only printed
    //   rcArea       area that the view samples
    //   Ang          rotation, quarter degrees; the fraction is dropped
    //   nOutW/H      view size in pixels
    //   pMapTbl      nOutW * nOutH entries; null: nothing is done
    //   Tile_Angle   tilt, 0 for none
    //   CamPos       1 and 2 mirror the view left-right
    //
    // Source: the equidistant ("f-theta") projection r = f * theta. A pixel whose source lies
    // outside the input zeroes entry 0 and keeps the previous content of its own entry.
    void Fisheye_calibration_Init_byArea(int u, int v, int Lr, int Sr, ClonefishRect rcArea,
                                         float Ang, int Scale_N, int nOutW, int nOutH, int* pMapTbl,
                                         int Tile_Angle, int CamPos);

    // Builds the table of a panorama by polar unwrap: a column is a direction about the centre, a
    // row two input pixels of distance.
    //
    //   c1, c2    circle centre, input pixels: c1 counts rows, c2 counts columns
    //   R         circle radius, input pixels
    //   nInW/H    input size in pixels
    //   pTable    modes 0 and 1: R / 2 rows of nW entries, or as many entries as the input has
    //             pixels if that is less, and one entry; mode 2: (R - 3) * nW + 1 entries. Null:
    //             nothing is done
    //   nRot      direction of column 0, degrees from the column axis towards the row axis; reduced
    //             modulo nW
    //   nMode     0 unwrap; 1 straight copy; 2 unwrap mirrored, with a blank centre, in which only
    //             every second row is written; others do nothing
    //   nShift    mode 2: not 0 moves all but the centre up by R / 5 rows
    //   nW        columns of a full turn
    //   pSinTbl, pCosTbl  not used
    //
    // A point outside the input gets the entry {0, 0}.
    void InitCPIBuffer_360(int c1, int c2, int R, int nInW, int nInH, int* pTable, int nRot,
                           float* pSinTbl, float* pCosTbl, int nMode, int nShift, int nW);

    // Builds the table of a panorama by remapping the circle's bounding square: R - 1 rows of nW
    // columns that span its width and 0.85 of its height. Arguments as above; nAngle, nMode and the
    // angle tables are not used.
    void Mercator_Projection_360(int c1, int c2, int R, int nInW, int nInH, int* pTable, int nAngle,
                                 float* pSinTbl, float* pCosTbl, int nMode, int nW);

    // ---- renderers: staged input to the caller's frame; true when the frame is complete ----
    //
    // The dispatcher above checks sizes and clips what they write to the frame; called by hosts,
    // they do neither.
    //
    // With m_nLineIndex at 0 or more they map the band of 64 rows that starts there; the host sets
    // m_nLineIndex to the next band's row between the calls.

    bool AccessCtr_FEQuad12(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                            int nScreenW, int nScreenH);
    bool AccessCtr_FEQuad34(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                            int nScreenW, int nScreenH);
    bool AccessCtr_FE360PTZ(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                            int nScreenW, int nScreenH);
    unsigned int AccessCtr_FE360(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                                 int nScreenW, int nScreenH);
    unsigned int AccessCtr_FE180(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                                 int nScreenW, int nScreenH);
    bool AccessCtr_FESingleView(unsigned char* pIn, unsigned char* pOut, int nInW, int nInH,
                                int nScreenW, int nScreenH);

    // ---- composition: copies finished views into a frame ----
    //
    // Images have their rows without padding; their planes follow m_nFormat: chroma is composed for
    // NV12 and YV12 only, (nH + 1) / 2 rows of it. Called by hosts, nothing is clipped: pDst must
    // hold the whole frame, one byte more, and for odd heights one more row of chroma in each
    // plane.

    // Places the first source that is not null, nW x nH pixels, in its quadrant of a frame of
    // 2 * nW x 2 * nH: top left, top right, bottom left, bottom right. Luma of the right-hand
    // quadrants is shifted by one byte.
    void SnapShotM1(unsigned char* pSrc1, unsigned char* pSrc2, unsigned char* pSrc3,
                    unsigned char* pSrc4, unsigned char* pDst, int nW, int nH);

    // Places the first source that is not null in a frame of nFrameH rows: 1 and 2 as the left and
    // right upper view, nW being half the frame's width; 3 as the strip from row nFrameH / 1.538
    // (rounded down to a multiple of 4) on, nW being the frame's width. fScale and nReserved are
    // not used.
    void SnapShotM2(unsigned char* pSrc1, unsigned char* pSrc2, unsigned char* pSrc3,
                    unsigned char* pDst, int nW, int nH, float fScale, int nReserved, int nFrameH);

    // Packed 24-bit images of nW x nH pixels, one at the top (or, when nCentre is 1, nH / 2 rows
    // down) and one from row nH on. Null sources are skipped, last rows not copied.
    void SnapShotM3(unsigned char* pSrc1, unsigned char* pSrc2, unsigned char* pDst, int nW, int nH,
                    int nCentre);
    // Copies a packed 24-bit image but for its last row.
    void SnapShotM45(unsigned char* pSrc, unsigned char* pDst, int nW, int nH);
    // Resizes a packed 24-bit image bilinearly. A source under 2 pixels wide or high is ignored.
    void lcvScale(unsigned char* pDst, unsigned char* pSrc, int nSrcW, int nSrcH, int nDstW,
                  int nDstH);

    // Places a picture of the engine's format in a frame of nScreenW x nScreenH. nCamPos 0: its
    // left half at the top, its right half from below the middle on; 2: the same mirrored; others:
    // whole, from a quarter (bTall: an eighth) of the height on. The upper half's rows are
    // nScreenW pixels whatever nImgW is, and mirrors read one element past a row.
    void Access_ctr_M3_Half_Display(unsigned char* pImg, int nImgW, int nImgH, unsigned char* pDst,
                                    int nScreenW, int nScreenH, int nCamPos, bool bTall);

    // Resizes a semi-planar image bilinearly. Pixels that fall on the source's last two columns or
    // rows become black. Returns 0; -1 for sizes below 2; the length of a printed line when the
    // scale cannot be inverted, as for a destination size of 0.
    int resize_image(unsigned char* pSrc, unsigned char* pDst, const int& nSrcW, const int& nSrcH,
                     const int& nDstW, const int& nDstH);

    // ---- mapping drivers: choose the kernel by format ----
    //
    // The FC and CPI drivers differ only in the order of their sizes. bSetting and the reserved
    // arguments are ignored. The whole-frame drivers use m_nPitch as stride, those by lines nInW.
    // Whole frame: a null table does nothing. By lines: see CBilinear for the result; a null table
    // gives -1, RGB is refused with a printed line and 0. The _YV12 drivers run the semi-planar
    // kernels, as the _NV12 ones do.

    void FCMapping(FORMAT format, unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                   int nInH, int nOutW, int nOutH, bool bSetting);
    int FCMapping_line(FORMAT format, unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                       int nInH, int nOutW, int nOutH, bool bSetting, int nLine);
    void CPIMapping(FORMAT format, unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                    int nInH, int nOutH, int nReserved1, int nReserved2, int nOutW, bool bSetting);
    int CPIMapping_line(FORMAT format, unsigned char* pSrc, unsigned char* pDst, int* pTbl,
                        int nInW, int nInH, int nOutH, int nReserved1, int nReserved2, int nOutW,
                        bool bSetting, int nLine);

    void FCMapping_NV12(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                        int nOutW, int nOutH, bool bSetting);
    void FCMapping_YV12(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                        int nOutW, int nOutH, bool bSetting);
    int FCMapping_NV12_line(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                            int nOutW, int nOutH, bool bSetting, int nLine);
    int FCMapping_YV12_line(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                            int nOutW, int nOutH, bool bSetting, int nLine);
    void CPIMapping_NV12(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                         int nOutH, int nReserved1, int nReserved2, int nOutW, bool bSetting);
    void CPIMapping_YV12(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW, int nInH,
                         int nOutH, int nReserved1, int nReserved2, int nOutW, bool bSetting);
    int CPIMapping_NV12_line(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                             int nInH, int nOutH, int nReserved1, int nReserved2, int nOutW,
                             bool bSetting, int nLine);
    int CPIMapping_YV12_line(unsigned char* pSrc, unsigned char* pDst, int* pTbl, int nInW,
                             int nInH, int nOutH, int nReserved1, int nReserved2, int nOutW,
                             bool bSetting, int nLine);

    // ---- colour conversions, ITU-R BT.601 studio range; called from nowhere in the library ----
    //
    // Sizes are in pixels, and n stands for nWidth * nHeight. A null pointer, a width below 1 or a
    // height of 0 does nothing. In the first two, a stride below 1 means rows without padding, and
    // with a negative height |nHeight| rows are read from the last one in memory upwards and
    // written from the top down; in the others a negative height does nothing.

    // Packed 4:2:2 (Y0 U Y1 V) to packed 24-bit (B G R) in fixed point; full luma gives 254. Of an
    // odd width the last column is left out.
    //
    //   pSrc        of each row nWidth / 2 * 4 bytes are read
    //   nSrcStride  distance of two rows, bytes; below 1: nWidth * 2
    //   pDst        of each row nWidth / 2 * 6 bytes are written
    //   nWidth, nHeight  picture size
    //   nDstStride  distance of two rows, bytes; below 1: nWidth * 3
    void YUY2_to_RGB24_Normal_c(const unsigned char* pSrc, int nSrcStride, unsigned char* pDst,
                                int nWidth, int nHeight, int nDstStride);

    // Packed 24-bit (B G R) to packed 4:2:2, components truncated, chroma averaged over the pair.
    // Pixels go in pairs, so an odd width takes one pixel more from behind each row and adds one.
    //
    //   pSrc        of each row (nWidth + 1) / 2 * 6 bytes are read. Of an odd width the last row
    //               needs 3 bytes more than its pixels
    //   nSrcStride  distance of two rows, bytes; below 1: nWidth * 3
    //   pDst        of each row (nWidth + 1) / 2 * 4 bytes are written. Of an odd width the last
    //               row needs 2 bytes more than its pixels
    //   nWidth, nHeight  picture size
    //   nDstStride  distance of two rows, bytes; below 1: nWidth * 2
    void RGB24_to_YUY2_Normal_c(unsigned char* pSrc, int nSrcStride, unsigned char* pDst,
                                int nWidth, int nHeight, int nDstStride);

    // Packed 4:2:2 to packed 4:4:4 (Y U V), both without padding.
    //
    //   pSrc  n / 2 * 4 bytes are read
    //   pDst  n / 2 * 6 bytes are written; of an odd n the last pixel is left out
    //   nWidth, nHeight  picture size
    void YUY2_to_YUV444(unsigned char* pSrc, unsigned char* pDst, int nWidth, int nHeight);

    // Semi-planar 4:2:0 (not 4:2:2, as the name has it) to packed 4:4:4. Pixel i takes chroma pair
    // i / 4, counted through the plane without regard to rows, with its bytes exchanged: NV12
    // becomes (Y V U).
    //
    //   pSrc  n luma bytes and (n + 3) / 4 chroma pairs are read: n * 3 / 2 bytes when n is a
    //         multiple of 4, else up to 2 bytes more
    //   pDst  n * 3 bytes are written
    //   nWidth, nHeight  picture size
    void YUY2_to_NV12_YUV444(unsigned char* pSrc, unsigned char* pDst, int nWidth, int nHeight);

    // Semi-planar 4:2:0 to pairs of a luma byte and a chroma byte: pixel i takes byte i + 1 of the
    // chroma plane.
    //
    //   pSrc  n * 2 + 1 bytes are read, all but byte n: more than a 4:2:0 frame has. The caller
    //         provides n / 2 + 1 bytes behind its n * 3 / 2 (one more when n is odd); they end up
    //         in the output
    //   pDst  n * 2 bytes are written
    //   nWidth, nHeight  picture size
    void YUY2_to_YUV444_NV12(unsigned char* pSrc, unsigned char* pDst, int nWidth, int nHeight);

    // ---- frame description ----

    unsigned char* m_pInput = nullptr; // caller's frame, only meaningful during a call
    FORMAT m_nFormat = FORMAT_YUYV;    // of the last set-up frame
    int m_nInputW = 1280;              // input width in pixels, of the last set-up frame
    int m_nInputH = 1024;              // input height, of the last set-up frame
    float m_fScaleX = 1.0f;            // input width / 1280
    float m_fScaleY = 1.0f;            // input height / 1024
    int m_nPitch = 0;                  // distance of two input rows, pixels
    int m_nLineIndex = -1;             // -1 whole frames; 0 and more: first row of the next band
    int m_nCam = 0;                    // slot number that FE_Initialize was given

    // ---- output description ----

    int m_nScreenW = 800;      // output width in pixels
    int m_nScreenH = 600;      // output height in pixels
    float m_fScreenScaleX = 0; // screen width / 800
    float m_fScreenScaleY = 0; // screen height / 600
    int m_nScreenRes = 4;      // screen class: 4 is 4:3, 16 is 16:9
    int m_nRefW = 0; // width of the area that views sample, input pixels: the reference screen
    int m_nRefH = 0; // height of that area
    int m_nAngleLimit = 0; // highest tilt, degrees

    // ---- lens ----

    int m_nCenterX = 0; // circle centre along the input's rows
    int m_nCenterY = 0; // circle centre along the input's columns
    int m_nRadius = 0;  // circle radius, input pixels
    int m_nRadius2 = 0; // stored and reported only
    int m_nCamPos = 0;  // mounting: 0 ceiling, 1 wall, 2 floor

    // ---- layout: the first of the four layout flags that is set counts ----

    unsigned char m_bQuad = 0;        // the quad layout
    unsigned char m_b360 = 0;         // the 360 layout
    unsigned char m_b180 = 0;         // the 180 layout
    unsigned char m_bSingle = 0;      // the single view
    unsigned char m_bSpareLayout = 0; // not used
    unsigned char m_bLargeInput = 0;  // input wider than 2048 (until the first frame: 2559)
    unsigned char m_bSetup = 0;       // rebuild everything on the next frame
    unsigned char m_bModeChanged = 0; // set with m_bSetup on every change of the view mode
    unsigned char m_bKeyFlag1 = 0;    // added into the rebuild keys; never set by the library
    unsigned char m_bKeyFlag2 = 0;    // as m_bKeyFlag1
    unsigned char m_bKeyFlag3 = 0; // as m_bKeyFlag1 in 360 views; single view: rebuild every frame
    unsigned char m_bTall180 = 0;  // 1: the 180 picture of the wall is half as much higher again
    int m_nModeKey = 0;            // view mode + mounting + screen class of the last update
    int m_nEventPan = 0;           // pan step of the last update, repeated on every frame
    int m_nEventTilt = 0;          // tilt step of the last update, repeated on every frame

    // ---- overlay and options: stored, not drawn ----

    unsigned char m_bOverlay = 0;
    unsigned char m_bOverlayAux = 0;
    unsigned char m_bOverlaySpare[3] = {0, 0, 0};
    short m_nOverlayCode = 0;
    short m_nQuadOption = 0;
    int m_nOverlaySpare = 0;

    // ---- sub-view positions: pan in quarter degrees, zoom in steps, offset in pixels ----

    int m_nQuad1Pan = 0, m_nQuad1Tilt = 0, m_nQuad1Zoom = 0, m_nQuad1Aux = 0;
    int m_nQuad2Pan = 0, m_nQuad2Tilt = 0, m_nQuad2Zoom = 0, m_nQuad2Aux = 0;
    int m_nQuad3Pan = 0, m_nQuad3Tilt = 0, m_nQuad3Zoom = 0, m_nQuad3Aux = 0;
    int m_nQuad4Pan = 0, m_nQuad4Tilt = 0, m_nQuad4Zoom = 0, m_nQuad4Aux = 0;
    int m_n360View1Pan = 0, m_n360View1Tilt = 0, m_n360View1Zoom = 0, m_n360View1Aux = 0;
    int m_n360View2Pan = 0, m_n360View2Tilt = 0, m_n360View2Zoom = 0, m_n360View2Aux = 0;
    int m_nSinglePan = 0, m_nSingleTilt = 0, m_nSingleZoom = 0, m_nSingleAux = 0;
    int m_n180Pan = 0;  // panorama position of the 180 layout, degrees
    int m_nAngle30 = 0; // 30, of the tilt range on the wall

    // ---- rebuild keys: key and pan that each view's table was last built for ----

    int m_nQuad1Key = 0, m_nQuad1PanBuilt = 0;
    int m_nQuad3Key = 0, m_nQuad3PanBuilt = 0;
    int m_nQuad4Key = 0, m_nQuad4PanBuilt = 0;
    int m_n360View1Key = 0, m_n360View1PanBuilt = 0;
    int m_n360View2Key = 0, m_n360View2PanBuilt = 0;
    int m_nSingleKey = 0, m_nSinglePanBuilt = 0;
    float m_f360PanLimit = 0; // pan limit of the second 360 view on the wall, input pixels
    int m_nQuadBytes = 0;     // grows with every quad frame; not read

    // ---- panorama sizing, pixels ----

    int m_nPanoBase = 0;   // columns before scaling: 720
    int m_nPanoH = 0;      // columns of the unwrap's table
    int m_nPanoHSmall = 0; // the same, set for inputs up to 1280 pixels wide
    int m_nPanoHLarge = 0; // the same, set for wider inputs
    int m_nPanoH0 = 0;     // columns of the remap's table

    // ---- sine and cosine of 0..1439 quarter degrees ----

    float m_fSinTbl[1440] = {}; // sines
    float m_fCosTbl[1440] = {}; // cosines

    // ---- working buffers ----

    unsigned char* m_pStaged = nullptr;     // staged input frame
    unsigned char* m_pViewImage = nullptr;  // work image: rendered views
    unsigned char* m_pWorkImageA = nullptr; // work image: views turned over
    unsigned char* m_pPanoImage = nullptr;  // work image: panorama
    int* m_pSubMapA = nullptr;              // mapping table, see CBilinear.h: quad and 360 view 2
    int* m_pSubMapB = nullptr;              // mapping table: quad and 360 view 1
    int* m_pMapTable = nullptr;             // mapping table: everything else
    int* m_pMapWork = nullptr;              // second forms of the tables, made from them
    unsigned char* m_pSpare[9] = {};        // not used; freed with the others when a host sets them
    std::size_t m_nCapacity[8] = {};        // bytes that each buffer really holds
    unsigned char* m_pBlock = nullptr;      // host's block, when the buffers were carved from one
    unsigned int m_nBlockSize = 0;          // its bytes
    int m_nPackedEntries[3] =
        {}; // of each table: entries of the copy with byte offsets in m_pMapWork
            // that are up to date, -1 when there is another form instead
    unsigned char* m_pOutput = nullptr; // caller's output frame during a call
    long long m_nOutputBytes = 0;       // its bytes

    // ---- records ----

    FISHSETTINGPARAM m_FishSetting; // handed to the mapping drivers
    FE_ViewParams m_ViewParams;     // layout, mounting and sub-view of the last update
};

#endif
