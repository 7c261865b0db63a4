// The element's properties: what they are called, and where their values go.
#ifndef LUMOFE_GST_PROPERTIES_H
#define LUMOFE_GST_PROPERTIES_H

#include "Settings.h"

#include <gst/gst.h>

namespace lumofe {

// Makes the properties known to the class.
void installProperties(GObjectClass* klass);

// Sets one of them, and reads what is in force. False for ids that are none of them.
bool setProperty(Settings& settings, guint id, const GValue* value);
bool getProperty(const Settings& settings, guint id, GValue* value);

// Tells listeners that the mouse may have changed what they read. Without the element's lock.
void notifySteered(GObject* object, const Settings& before, const Settings& after);

} // namespace lumofe

#endif
