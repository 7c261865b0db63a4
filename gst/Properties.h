// The element's properties: what they are called, and where their values go.
#ifndef LUMOFE_GST_PROPERTIES_H
#define LUMOFE_GST_PROPERTIES_H

#include "Settings.h"

#include <gst/gst.h>
#include <memory>

namespace lumofe {

// Makes the properties known to the class.
void installProperties(GObjectClass* klass);

// The file that this property names; null for others, and for an empty name. Without the element's
// lock, for it may take its time. Throws Error when it cannot be read.
std::shared_ptr<const CameraFile> readCamera(guint id, const GValue* value);

// Sets one of them; `file` is what readCamera() gave. False for ids that are none of them. Throws
// Error, and changes nothing, for a preset that there is not.
bool setProperty(Settings& settings, guint id, const GValue* value,
                 std::shared_ptr<const CameraFile> file);

// Reads what is in force. False for ids that are none of them.
bool getProperty(const Settings& settings, guint id, GValue* value);

// Tells listeners of what changed other than by its own property. Without the element's lock.
void notifyChanges(GObject* object, const Settings& before, const Settings& after);

} // namespace lumofe

#endif
