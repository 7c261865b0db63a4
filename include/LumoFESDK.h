// LumoFESDK: dewarps the frames of fisheye surveillance cameras.
//
// A host addresses one of sixteen independent camera slots by number, 0 to 15:
//
//     Initialize(slot, inputW, inputH, screenW, screenH, format)   once
//     ParamsUpdated(slot, &event, &view)                           whenever the view changes
//     VideoInput(slot, in, out, inputW, inputH, format, flip)      per frame
//     Close(slot)                                                  at the end
//
// Everything runs on the calling thread. Calls for one slot must not overlap; different slots may
// be served by different threads. The library keeps no pointer to a record or frame beyond a call.
// It prints diagnostic lines on standard output, among them two timing lines per mapped 4:2:0 view.
//
// No call reads or writes outside of the memory that it is handed, and none crashes, whatever its
// arguments are, as long as every pointer leads to memory of the size stated with it. What cannot
// be done is refused:
//
//     Initialize      1   a slot or input size out of range; the slot is left alone
//                     2   no memory, or an impossible screen; the slot refuses frames until Close
//     VideoInput      1   a bad slot, or one without an engine
//                     16  no frame, or one that the buffers cannot hold; nothing is written
//     ParamsUpdated   1   a bad slot, a null record, a slot without an engine
//     Close           1   a bad slot
//     position calls  0   always; a bad slot, no engine or a null record has no effect
//
// The header compiles as C99, where the records have no constructors and IFishEye is opaque, and
// as C++11 or later.
#ifndef LUMOFESDK_H
#define LUMOFESDK_H

// The one place where the version is written.
#define LUMOFESDK_VERSION_MAJOR 0
#define LUMOFESDK_VERSION_MINOR 1
#define LUMOFESDK_VERSION_PATCH 0

// Marks what the library exports.
#define FE_API __attribute__((visibility("default")))

// Number of camera slots.
#define FE_MAX_CAMERAS 16

// ---- status bits of the slot functions ----

#define FE_STATUS_OK 0             // success
#define FE_STATUS_INVALID 1        // a bad slot number, size or record
#define FE_STATUS_NO_BUFFERS 2     // Initialize could not obtain its working buffers
#define FE_STATUS_NOT_PROCESSED 16 // the frame or update was refused, or the call is unsupported

#ifdef __cplusplus
class FEDSP;
class IFishEye;
// Pixel layout of a frame of W x H pixels. Rows follow one another without padding.
enum FORMAT : int {
#else
#include <stdbool.h>
typedef struct FEDSP FEDSP;
typedef struct IFishEye IFishEye;
typedef enum FORMAT {
#endif
    FORMAT_YUYV = 0, // packed 4:2:2. Accepted, but input of this format is not staged
    FORMAT_RGB = 1,  // packed 24-bit, 3 * W bytes a row; the single view exchanges bytes 0 and 2
    FORMAT_NV12 = 2, // W * H luma bytes, then W * H / 2 bytes of interleaved chroma pairs
    FORMAT_YV12 = 3  // W * H luma bytes, then two chroma planes of (W / 2) * (H / 2) bytes
#ifdef __cplusplus
};
#else
} FORMAT;
#endif

// A relative steering step, as from a joystick or mouse. 6 bytes.
typedef struct FE_EventParams {
#ifdef __cplusplus
    FE_API FE_EventParams(); // all fields 0
#endif
    short nPanStep;  // horizontal move; repeated on every frame until the next update
    short nTiltStep; // vertical move; repeated on every frame until the next update
    short nZoomStep; // added once to the zoom of the selected sub-view, four times over in the
                     // single view
} FE_EventParams;

// What to show, and where the fisheye circle lies in the input. 16 bytes.
typedef struct FE_ViewParams {
#ifdef __cplusplus
    FE_API FE_ViewParams(); // the defaults below; nOverlay keeps what the memory held
#endif
    unsigned short nViewMode; // 1 quad, 2 360 with two PTZ views, 4 180, 8 single. Default 1
    unsigned short nCamPos;   // mounting: 0 ceiling, 1 wall, 2 floor. Default 0
    unsigned short nSubView; // view that steps apply to: quad 1..4, 360 1..2, single 1 (its pan and
                             // tilt steps always apply). Default 0
    unsigned short nCenterX; // circle centre along the input's ROWS, pixels from the top (the
                             // name misleads). Default 640
    unsigned short nCenterY; // circle centre along the input's COLUMNS, pixels from the left.
                             // Default 512
    unsigned short nRadius;  // circle radius, input pixels. Default 640
    unsigned short nRadius2; // stored and reported, not used for mapping. Default 640
    unsigned short nOverlay; // 0 off; 1, 2, 3 select overlay code 1, 2, 4. NOT set by default
} FE_ViewParams;

// The position of one sub-view.
typedef struct FE_ViewPosition {
    short nPan;  // quarter degrees, 1440 to a turn
    short nTilt; // 0 .. 45; on the wall -45 .. 45
    short nZoom; // steps: 0 .. 44, single view 0 .. 88; wall 10 .. 44, single view 10 .. 70
    short nAux;  // offset of the viewed area towards the circle's rim, input pixels
} FE_ViewPosition;

// The full position state of a slot. 52 bytes.
typedef struct FE_CurPosParams {
    unsigned short nViewMode;  // as in FE_ViewParams
    unsigned short nCamPos;    // as in FE_ViewParams
    unsigned short nCenterX;   // as in FE_ViewParams
    unsigned short nCenterY;   // as in FE_ViewParams
    unsigned short nRadius;    // as in FE_ViewParams
    unsigned short nRadius2;   // as in FE_ViewParams
    FE_ViewPosition view[4];   // quad: views 1..4; 360: the first two; single: the first
    unsigned char bQuadOption; // quad only: non-zero is on
    int n180Pos;               // 180 only: panorama position
} FE_CurPosParams;

#ifdef __cplusplus
extern "C" {
#endif

// ---- slot tables: process-wide ----

extern FE_API FEDSP* m_FEDSP[FE_MAX_CAMERAS];               // null: the slot is not initialised
extern FE_API FE_EventParams* m_EventParam[FE_MAX_CAMERAS]; // last event; survives Close
extern FE_API FE_ViewParams* m_ViewParam[FE_MAX_CAMERAS];   // defaults; not read; survives Close
extern FE_API int g_count;                                  // not used
extern FE_API unsigned char bFirstTimeSetup;                // 1 until the first Initialize

// ---- slot functions ----

// Creates the slot's engine on first use and sizes its buffers; resets a live slot. Call Close
// before initialising a live slot again: the old buffers are otherwise lost until the process ends.
//
//   nCam              slot, 0..15
//   nInW, nInH        input size in pixels, 320..4096 by 240..4096
//   nScreenW/H        output size in pixels; not negative
//   format            not used; every frame brings its own
//
// Returns 0; 1 for a bad slot or input size (the slot is untouched); 2 when a buffer could not be
// had or the screen's size is impossible (the slot is live but refuses frames until it is closed
// and initialised again). Throws std::bad_alloc when there is no memory for the engine object
// itself.
FE_API int Initialize(int nCam, int nInW, int nInH, int nScreenW, int nScreenH, FORMAT format);

// Dewarps one frame.
//
//   nCam     slot, 0..15
//   pIn      nW x nH pixels: nW * nH * 3 / 2 bytes, RGB nW * nH * 3. Read only
//   pOut     screenW x screenH pixels of the format in force (see below): screenW * screenH * 3 / 2
//            bytes, RGB screenW * screenH * 3. On a set-up frame the first screenW * screenH bytes
//            are set to 0 and half as many more to 128, for RGB too
//   nW, nH   frame size in pixels, normally that given to Initialize; at least 4 x 4
//   format   of the input. It comes into force on a set-up frame: the first one after Initialize,
//            after a change of layout or mounting, and after every update in the 180 layout. The
//            output keeps the format in force whatever comes in between
//   bFlip    RGB only: the input is stored bottom row first. Without it, the last row of an RGB
//            frame is not used
//
// Returns 0; 1 for a bad slot or one without an engine; 16 for a null frame, or one that the slot's
// buffers cannot hold (nothing is written).
FE_API int VideoInput(int nCam, unsigned char* pIn, unsigned char* pOut, int nW, int nH,
                      FORMAT format, bool bFlip);

// Selects layout, mounting and circle (pView) and hands over a steering step (pEvent). A change of
// layout or mounting rebuilds everything on the next frame. A change of the circle alone moves no
// view before something else rebuilds it, except in the 180 layout. Both records are only read.
//
// Returns 0; 1 for a bad slot, a null record or a slot without an engine. On a closed slot the
// event is still copied into m_EventParam.
FE_API int ParamsUpdated(int nCam, FE_EventParams* pEvent, FE_ViewParams* pView);

// Frees the slot's buffers and engine. Returns 0, also for an empty slot; 1 for a bad slot.
FE_API int Close(int nCam);

// Not supported: prints a line and returns 16.
FE_API int LmFEalignmentTool(int nCam, unsigned char* pIn, int nW, int nH, FORMAT format,
                             FE_ViewParams* pView);
FE_API int SetInfo(int nCam, int a, int b, void* p);

// ---- object face ----

// Creates an object face of the slots; every object sees the same sixteen.
FE_API IFishEye* IFishEye_Create(void);
// Frees the object, but closes no slot; null is allowed. Returns 0.
FE_API int IFishEye_Release(IFishEye* p);

#ifdef __cplusplus
} // extern "C"

// The slot functions as an object, and the position calls. It has no state of its own.
class FE_API IFishEye {
public:
    IFishEye();  // for objects of a host's own; see also IFishEye_Create
    ~IFishEye(); // closes no slot

    // ---- slots ----

    // As the slot function of the same name.
    int LmFE_Initialize(int nCam, int nInW, int nInH, int nScreenW, int nScreenH, FORMAT format);
    int LmFE_VideoInput(int nCam, unsigned char* pIn, unsigned char* pOut, int nW, int nH,
                        FORMAT format, bool bFlip);
    int LmFE_ParamsUpdated(int nCam, FE_EventParams* pEvent, FE_ViewParams* pView);
    int LmFE_Close(int nCam);

    // ---- positions: these calls return 0 whether or not anything was done ----
    //
    // They do nothing for a bad slot, a slot without an engine or a null record.

    // Restores a position state and switches to its layout, without the clearing and full rebuild
    // of ParamsUpdated: the next frame rebuilds a view when its position changed, but not for a
    // change of the circle alone.
    int LmFESetPosition(int nCam, FE_CurPosParams* pPos);

    // Reports the current layout and the positions of its views.
    int LmFEGetPosition(int nCam, FE_CurPosParams* pPos);

    // Where a point of the raw input picture lies as seen from the camera.
    //
    //   nCam    slot, 0..15
    //   nX, nY  input pixels, columns from the left and rows from the top
    //   nPan    ceiling and floor: tenths of a degree, 0..3599, clockwise from the picture's top;
    //           wall: offset from the centre to the right, 900 at the rim
    //   nTilt   ceiling: 0 at the centre to 900 at the rim; floor: 0 to -900; wall: offset from the
    //           centre down, 900 at the rim
    //
    // A mounting other than 0, 1, 2 leaves nPan and nTilt as they were.
    int GetAbsolutePositionFromInputVideoPoint(int nCam, int nX, int nY, short& nPan, short& nTilt);

    // Steers one view of the current layout to an absolute position.
    //
    //   nCam    slot, 0..15
    //   nPan    ceiling and floor: tenths of a degree, clockwise. The single view looks 22.5
    //           degrees further round than a point looked up above: take 225 off that point's
    //           pan. Wall: -900..900, left to right; limited by the zoom
    //   nTilt   ceiling: 0 looks along the lens axis, 900 furthest from it; floor: 0 to -900;
    //           wall: -900..900, up to down
    //   nZoom   0..800; negative keeps the zoom. On the wall only the two ends are of use: 0..9 is
    //           the lowest zoom, 70 and more the single view's highest. Not for quad view 4
    //   nFlags  number of the view: quad 1..4, 360 1..2, single 1
    //
    // The layout is the one last selected with ParamsUpdated. On the wall, quad view 4 and 360 view
    // 1 take nPan as on the ceiling.
    int SetAbsolutePTZ(int nCam, short nPan, short nTilt, short nZoom, unsigned short nFlags);
};
#endif

#endif
