// What GStreamer looks for in the plugin's file.
#include "LumofeElement.h"

#include <LumoFESDK.h>
#include <gst/gst.h>

namespace {

gboolean initPlugin(GstPlugin* plugin)
{
    return gst_element_register(plugin, "lumofe", GST_RANK_NONE, lumofe::elementType());
}

} // namespace

GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, lumofe, "Dewarps fisheye cameras",
                  initPlugin, LUMOFE_VERSION, GST_LICENSE_UNKNOWN, PACKAGE, "LumoFESDK")
