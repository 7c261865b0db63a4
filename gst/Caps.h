// Which formats and sizes the element offers on one side for what there is on the other.
#ifndef LUMOFE_GST_CAPS_H
#define LUMOFE_GST_CAPS_H

#include "Layout.h"

#include <gst/video/video.h>

namespace lumofe {

// Caps of the pad's template: what the library takes, or everything that can be had of it, best
// first. 4:2:0 needs even sizes. Returns new caps.
GstCaps* templateCaps(GstPadDirection direction);

// How the library is fed a format of the element. It never asks which chroma plane is which.
PixelFormat fedAs(GstVideoFormat format);

// The format in which the library gives its pictures for an input of that format: RGB comes out as
// BGR and the other way round. What else the output can be is converted from it.
GstVideoFormat writtenFormat(GstVideoFormat input);

// What the other pad can have for these caps of the pad of that direction: first what needs no
// conversion, then what does. With a filter, only what that has, too; and of inputs none that needs
// a conversion if the filter has one that does not, so that elements in front which can choose
// spare it. Formats that the layout garbles are left out; pixels become square; colorimetry passes
// where nothing is converted; other fields and the features stay. Returns new caps.
GstCaps* capsOfOtherPad(View view, GstPadDirection direction, const GstCaps* caps,
                        GstCaps* filter = nullptr);

// Puts the output's caps in order for such an input: the format that needs no conversion, then
// others of the same colour space, which keep the input's colorimetry if they may, then the rest.
// Takes and returns a reference.
GstCaps* orderFormats(GstCaps* caps, const GstVideoInfo& input);

// Makes the output's caps fixed for an input of that size: the layout's default size, else the one
// nearest to its shape that composes, in the first structure that allows for it. Where none does,
// the size that comes out does not compose. Takes and returns a reference.
GstCaps* fixateOutput(GstCaps* caps, View view, Mount mount, Size input);

} // namespace lumofe

#endif
