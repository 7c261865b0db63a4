// The GStreamer element `lumofe`.
#include "LumofeElement.h"

#include "Caps.h"
#include "Error.h"
#include "LiveCamera.h"
#include "Navigation.h"
#include "OutputConverter.h"
#include "Properties.h"

#include <gst/video/gstvideofilter.h>
#include <gst/video/navigation.h>
#include <string>

namespace lumofe {
namespace {

// Why the element does not start, and the property that has to be set anew.
struct Complaint {
    guint property = 0;
    std::string text;
};

// What the threads of one element share is guarded by the object's lock.
struct State {
    Settings settings;                                // guarded
    Size output;                                      // guarded; none before the caps are known
    GstVideoFormat format = GST_VIDEO_FORMAT_UNKNOWN; // of the input; guarded
    Navigation navigation;                            // guarded
    Complaint complaint; // about a camera's file or preset, for start(); guarded

    // The streaming thread's alone.
    Settings negotiated; // what the output's caps were chosen for
    LiveCamera camera;
    OutputConverter converter; // open while the output is not what the library writes
};

struct Element {
    GstVideoFilter parent;
    State* state;
};

struct ElementClass {
    GstVideoFilterClass parent;
};

GstVideoFilterClass* parentClass = nullptr;

class ObjectLock {
public:
    explicit ObjectLock(void* object) : object_(object) { GST_OBJECT_LOCK(object_); }
    ~ObjectLock() { GST_OBJECT_UNLOCK(object_); }
    ObjectLock(const ObjectLock&) = delete;
    ObjectLock& operator=(const ObjectLock&) = delete;

private:
    void* object_;
};

State& stateOf(void* element)
{
    return *static_cast<Element*>(element)->state;
}

Settings settingsOf(void* element)
{
    const ObjectLock lock(element);
    return stateOf(element).settings;
}

GstBaseTransformClass* transformParent()
{
    return GST_BASE_TRANSFORM_CLASS(parentClass);
}

// ---- properties ----

// While caps are in force a property that cannot be changes nothing; before, the element does not
// start.
void complain(GObject* object, guint id, const std::string& text)
{
    bool running = false;
    {
        const ObjectLock lock(object);
        State& state = stateOf(object);
        running = state.format != GST_VIDEO_FORMAT_UNKNOWN;
        if (!running) state.complaint = {id, text};
    }
    if (running) GST_ELEMENT_WARNING(object, LIBRARY, SETTINGS, ("%s", text.c_str()), (nullptr));
}

void setPropertyOf(GObject* object, guint id, const GValue* value, GParamSpec* spec)
{
    Settings before, after;
    bool otherFormat = false;
    try {
        const auto file = readCamera(id, value);
        const ObjectLock lock(object);
        State& state = stateOf(object);
        before = state.settings;
        if (!setProperty(state.settings, id, value, file))
            G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
        after = state.settings;
        if (state.complaint.property == id) state.complaint = {};
        const PixelFormat fed = fedAs(state.format);
        otherFormat = state.format != GST_VIDEO_FORMAT_UNKNOWN && fedFormat(after.view, fed) != fed;
    } catch (const Error& e) {
        complain(object, id, e.what());
        return;
    }
    // A camera's file or preset changes others.
    if (G_IS_PARAM_SPEC_STRING(spec)) notifyChanges(object, before, after);
    if (before.view == after.view && before.mount == after.mount) return;
    // The output's caps follow those of the input when these change, too.
    if (otherFormat)
        gst_base_transform_reconfigure_sink(GST_BASE_TRANSFORM(object));
    else
        gst_base_transform_reconfigure_src(GST_BASE_TRANSFORM(object));
}

void getPropertyOf(GObject* object, guint id, GValue* value, GParamSpec* spec)
{
    if (!getProperty(settingsOf(object), id, value))
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
}

// ---- caps ----

GstCaps* transformCaps(GstBaseTransform* base, GstPadDirection direction, GstCaps* caps,
                       GstCaps* filter)
{
    return capsOfOtherPad(settingsOf(base).view, direction, caps, filter);
}

GstCaps* fixateCaps(GstBaseTransform* base, GstPadDirection direction, GstCaps* caps,
                    GstCaps* other)
{
    GstVideoInfo input;
    if (direction != GST_PAD_SINK || !gst_video_info_from_caps(&input, caps))
        return transformParent()->fixate_caps(base, direction, caps, other);
    Settings& settings = stateOf(base).negotiated;
    settings = settingsOf(base);
    return fixateOutput(orderFormats(other, input), settings.view, settings.mount,
                        {GST_VIDEO_INFO_WIDTH(&input), GST_VIDEO_INFO_HEIGHT(&input)});
}

gboolean setInfo(GstVideoFilter* filter, GstCaps*, GstVideoInfo* in, GstCaps*, GstVideoInfo* out)
{
    State& state = stateOf(filter);
    const Size input{GST_VIDEO_INFO_WIDTH(in), GST_VIDEO_INFO_HEIGHT(in)};
    const Size output{GST_VIDEO_INFO_WIDTH(out), GST_VIDEO_INFO_HEIGHT(out)};
    const GstVideoFormat format = GST_VIDEO_INFO_FORMAT(in);
    try {
        state.camera.open(state.negotiated, input, output, fedAs(format));
        if (GST_VIDEO_INFO_FORMAT(out) == writtenFormat(format))
            state.converter.close();
        else
            state.converter.open(*in, *out);
    } catch (const Error& e) {
        GST_ELEMENT_ERROR(filter, LIBRARY, SETTINGS, ("%s", e.what()), (nullptr));
        return false;
    }
    const ObjectLock lock(filter);
    state.output = output;
    state.format = format;
    return true;
}

// ---- frames ----

void beforeTransform(GstBaseTransform* base, GstBuffer* buffer)
{
    const GstClockTime time =
        gst_segment_to_stream_time(&base->segment, GST_FORMAT_TIME, GST_BUFFER_TIMESTAMP(buffer));
    if (GST_CLOCK_TIME_IS_VALID(time)) gst_object_sync_values(GST_OBJECT(base), time);
}

GstFlowReturn transformFrame(GstVideoFilter* filter, GstVideoFrame* in, GstVideoFrame* out)
{
    LiveCamera& camera = stateOf(filter).camera;
    if (!camera.isOpen()) return GST_FLOW_ERROR; // what closed it has been told
    try {
        camera.follow(settingsOf(filter));
    } catch (const Error& e) {
        // Steering that cannot be is no reason to stop the pipeline.
        if (camera.isOpen())
            GST_ELEMENT_WARNING(filter, LIBRARY, SETTINGS, ("%s", e.what()), (nullptr));
        else {
            GST_ELEMENT_ERROR(filter, LIBRARY, SETTINGS, ("%s", e.what()), (nullptr));
            return GST_FLOW_ERROR;
        }
    }
    try {
        OutputConverter& converter = stateOf(filter).converter;
        camera.dewarp(*in, converter.isOpen() ? converter.picture() : *out);
        if (converter.isOpen()) converter.convert(*out);
    } catch (const Error& e) {
        GST_ELEMENT_ERROR(filter, LIBRARY, FAILED, ("%s", e.what()), (nullptr));
        return GST_FLOW_ERROR;
    }
    const PanReach reach = camera.panReach();
    const ObjectLock lock(filter);
    stateOf(filter).navigation.limitPan(reach);
    return GST_FLOW_OK;
}

gboolean start(GstBaseTransform* base)
{
    std::string complaint;
    {
        const ObjectLock lock(base);
        const State& state = stateOf(base);
        const Settings& settings = state.settings;
        complaint = state.complaint.text;
        if (complaint.empty() && !settings.preset.empty() && !settings.camera)
            complaint =
                "preset: '" + settings.preset + "' is one of a camera's file; set camera-file, too";
    }
    if (complaint.empty()) return true;
    GST_ELEMENT_ERROR(base, LIBRARY, SETTINGS, ("%s", complaint.c_str()), (nullptr));
    return false;
}

gboolean stop(GstBaseTransform* base)
{
    stateOf(base).camera.close();
    stateOf(base).converter.close();
    const ObjectLock lock(base);
    stateOf(base).output = {};
    stateOf(base).format = GST_VIDEO_FORMAT_UNKNOWN;
    return true;
}

// ---- the mouse ----

void navigate(State& state, GstEvent* event)
{
    Settings& settings = state.settings;
    Navigation& navigation = state.navigation;
    double x = 0, y = 0, right = 0, up = 0;
    int button = 0;
    switch (gst_navigation_event_get_type(event)) {
    case GST_NAVIGATION_EVENT_MOUSE_BUTTON_PRESS:
        gst_navigation_event_parse_mouse_button_event(event, &button, &x, &y);
        if (button == 1) navigation.press(settings, state.output, x, y, g_get_monotonic_time());
        // The wheel, as sinks for X tell it.
        if (button == 4 || button == 5)
            Navigation::scroll(settings, state.output, x, y, button == 4 ? 1 : -1);
        break;
    case GST_NAVIGATION_EVENT_MOUSE_BUTTON_RELEASE:
        gst_navigation_event_parse_mouse_button_event(event, &button, &x, &y);
        if (button == 1) navigation.release();
        break;
    case GST_NAVIGATION_EVENT_MOUSE_MOVE:
        gst_navigation_event_parse_mouse_move_event(event, &x, &y);
        navigation.move(settings, state.output, x, y);
        break;
    case GST_NAVIGATION_EVENT_MOUSE_SCROLL:
        gst_navigation_event_parse_mouse_scroll_event(event, &x, &y, &right, &up);
        Navigation::scroll(settings, state.output, x, y, up);
        break;
    default:
        break;
    }
}

gboolean srcEvent(GstBaseTransform* base, GstEvent* event)
{
    if (GST_EVENT_TYPE(event) == GST_EVENT_NAVIGATION) {
        Settings before, after;
        {
            const ObjectLock lock(base);
            State& state = stateOf(base);
            before = state.settings;
            if (state.output.width > 0) navigate(state, event);
            after = state.settings;
        }
        notifyChanges(G_OBJECT(base), before, after);
    }
    return transformParent()->src_event(base, event);
}

// ---- the type ----

void finalize(GObject* object)
{
    delete &stateOf(object);
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initInstance(GTypeInstance* instance, void*)
{
    reinterpret_cast<Element*>(instance)->state = new State;
}

void addTemplate(GstElementClass* klass, const char* name, GstPadDirection direction)
{
    GstCaps* caps = templateCaps(direction);
    gst_element_class_add_pad_template(klass,
                                       gst_pad_template_new(name, direction, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
}

void initClass(void* klass, void*)
{
    parentClass = static_cast<GstVideoFilterClass*>(g_type_class_peek_parent(klass));
    GObjectClass* object = G_OBJECT_CLASS(klass);
    object->set_property = setPropertyOf;
    object->get_property = getPropertyOf;
    object->finalize = finalize;
    installProperties(object);

    GstElementClass* element = GST_ELEMENT_CLASS(klass);
    gst_element_class_set_static_metadata(
        element, "Fisheye dewarper", "Filter/Effect/Video",
        "Shows the straight views of a fisheye camera. Drag to pan and tilt, scroll to zoom, "
        "double "
        "click to go back. Gives the format that it takes, of RGB BGR and the other way round, and "
        "converts to others where these are asked for",
        "LumoFESDK");
    addTemplate(element, "sink", GST_PAD_SINK);
    addTemplate(element, "src", GST_PAD_SRC);

    GstBaseTransformClass* transform = GST_BASE_TRANSFORM_CLASS(klass);
    transform->transform_caps = transformCaps;
    transform->fixate_caps = fixateCaps;
    transform->before_transform = beforeTransform;
    transform->src_event = srcEvent;
    transform->start = start;
    transform->stop = stop;

    GstVideoFilterClass* filter = GST_VIDEO_FILTER_CLASS(klass);
    filter->set_info = setInfo;
    filter->transform_frame = transformFrame;
}

} // namespace

GType elementType()
{
    static const GType type =
        g_type_register_static_simple(GST_TYPE_VIDEO_FILTER, "Lumofe", sizeof(ElementClass),
                                      initClass, sizeof(Element), initInstance, GTypeFlags(0));
    return type;
}

} // namespace lumofe
