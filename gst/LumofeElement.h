// The GStreamer element `lumofe`: dewarps the frames of a fisheye camera.
#ifndef LUMOFE_GST_LUMOFE_ELEMENT_H
#define LUMOFE_GST_LUMOFE_ELEMENT_H

#include <gst/gst.h>

namespace lumofe {

// A GstVideoFilter. Registered with the type system on the first call.
GType elementType();

} // namespace lumofe

#endif
