// Which formats and sizes the element offers on one side for what there is on the other.
#ifndef LUMOFE_GST_CAPS_H
#define LUMOFE_GST_CAPS_H

#include "Layout.h"

#include <gst/video/video.h>

namespace lumofe {

// Caps of the pads' templates. 4:2:0 needs even sizes.
#define LUMOFE_CAPS(sizes) "video/x-raw, format=(string){ NV12, I420, YV12, RGB, BGR }, " sizes
inline constexpr const char* kInputCaps =
    LUMOFE_CAPS("width=(int)[ 320, 4096, 2 ], height=(int)[ 240, 4096, 2 ]");
inline constexpr const char* kOutputCaps =
    LUMOFE_CAPS("width=(int)[ 16, 4096, 2 ], height=(int)[ 16, 4096, 2 ]");
#undef LUMOFE_CAPS

// How the library is fed a format of the element. It never asks which chroma plane is which, and
// gives RGB back as BGR.
PixelFormat fedAs(GstVideoFormat format);

// What the other pad can have for these caps of the pad of that direction. Formats that the layout
// garbles are left out; pixels become square; other fields stay. Returns new caps.
GstCaps* capsOfOtherPad(View view, GstPadDirection direction, const GstCaps* caps);

// Makes the output's caps fixed for an input of that size: the layout's default size, else the one
// nearest to its shape that composes, in the first structure that allows for it. Where none does,
// the size that comes out does not compose. Takes and returns a reference.
GstCaps* fixateOutput(GstCaps* caps, View view, Mount mount, Size input);

} // namespace lumofe

#endif
