// Which formats and sizes the element offers on one side for what there is on the other.
#include "Caps.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

namespace lumofe {
namespace {

constexpr int kLargestStep = 8; // from one composing width or height to the next, pixels

constexpr const char* kFormats[] = {"NV12", "I420", "YV12", "RGB", "BGR"};

// The library exchanges red and blue.
const char* formatBehind(const char* name)
{
    if (name == std::string_view("RGB")) return "BGR";
    if (name == std::string_view("BGR")) return "RGB";
    return name;
}

bool isOffered(View view, const char* name)
{
    const PixelFormat format = fedAs(gst_video_format_from_string(name));
    return fedFormat(view, format) == format;
}

bool allows(const GstStructure* structure, const char* field, int value)
{
    const GValue* allowed = gst_structure_get_value(structure, field);
    if (!allowed) return true;
    GValue wanted = G_VALUE_INIT;
    g_value_init(&wanted, G_TYPE_INT);
    g_value_set_int(&wanted, value);
    return gst_value_intersect(nullptr, allowed, &wanted);
}

bool allows(const GstStructure* structure, Size size)
{
    return allows(structure, "width", size.width) && allows(structure, "height", size.height);
}

int nearestAllowed(const GstStructure* structure, const char* field, double target)
{
    GstStructure* copy = gst_structure_copy(structure);
    gst_structure_fixate_field_nearest_int(copy, field, int(std::lround(target)));
    int value = 0;
    gst_structure_get_int(copy, field, &value);
    gst_structure_free(copy);
    return value;
}

void setRange(GstStructure* structure, const char* field, int least)
{
    gst_structure_set(structure, field, GST_TYPE_INT_RANGE, least, kLargestInput.width, nullptr);
}

// Of the formats in the field, those that the layout takes, as they are on the other pad. False
// when there is none.
bool exchangeFormats(GstStructure* structure, View view)
{
    const GValue* asked = gst_structure_get_value(structure, "format");
    GValue list = G_VALUE_INIT, one = G_VALUE_INIT;
    g_value_init(&list, GST_TYPE_LIST);
    g_value_init(&one, G_TYPE_STRING);
    for (const char* name : kFormats) {
        g_value_set_static_string(&one, name);
        if (!isOffered(view, name) || (asked && !gst_value_intersect(nullptr, asked, &one)))
            continue;
        g_value_set_static_string(&one, formatBehind(name));
        gst_value_list_append_value(&list, &one);
    }
    const bool some = gst_value_list_get_size(&list) > 0;
    if (some) gst_structure_set_value(structure, "format", &list);
    g_value_unset(&one);
    g_value_unset(&list);
    return some;
}

// How much a size stretches the layout's natural shape, 0 for not at all.
double stretch(Size size, Size usual)
{
    return std::abs(
        std::log(double(size.width) * usual.height / (double(size.height) * usual.width)));
}

// The composing size nearest to `size` that the structure allows. Of a range that ends at a size
// that does not compose, the one further in is found.
std::optional<Size> composingNear(const GstStructure* structure, View view, Mount mount, Size size,
                                  Size input)
{
    for (int away = 0; away <= kLargestStep; away += 2)
        for (int by : {-away, away}) {
            const Size asked{std::max(size.width + by, 1), std::max(size.height + by, 1)};
            const Size near = nearestComposing(view, mount, asked, input);
            if (allows(structure, near)) return near;
        }
    return {};
}

struct Choice {
    Size size;
    bool composes;
};

Choice chooseSize(const GstStructure* structure, View view, Mount mount, Size input)
{
    const Size usual = defaultOutputSize(view, mount, input);
    const double shape = double(usual.width) / usual.height;
    // One side as near as can be to the usual one, the other following it.
    Size byWidth, byHeight;
    byWidth.width = nearestAllowed(structure, "width", usual.width);
    byWidth.height = nearestAllowed(structure, "height", byWidth.width / shape);
    byHeight.height = nearestAllowed(structure, "height", usual.height);
    byHeight.width = nearestAllowed(structure, "width", byHeight.height * shape);
    std::optional<Size> best;
    for (Size size : {byWidth, byHeight}) {
        const auto near = composingNear(structure, view, mount, size, input);
        if (near && (!best || stretch(*near, usual) < stretch(*best, usual))) best = near;
    }
    return best ? Choice{*best, true} : Choice{byWidth, false};
}

} // namespace

PixelFormat fedAs(GstVideoFormat format)
{
    switch (format) {
    case GST_VIDEO_FORMAT_NV12:
        return PixelFormat::nv12;
    case GST_VIDEO_FORMAT_I420:
    case GST_VIDEO_FORMAT_YV12:
        return PixelFormat::yv12;
    default:
        return PixelFormat::rgb;
    }
}

GstCaps* capsOfOtherPad(View view, GstPadDirection direction, const GstCaps* caps)
{
    GstCaps* other = gst_caps_new_empty();
    for (guint i = 0; i < gst_caps_get_size(caps); ++i) {
        GstStructure* structure = gst_structure_copy(gst_caps_get_structure(caps, i));
        if (!exchangeFormats(structure, view)) {
            gst_structure_free(structure);
            continue;
        }
        const bool toOutput = direction == GST_PAD_SINK;
        setRange(structure, "width", toOutput ? 16 : kSmallestInput.width);
        setRange(structure, "height", toOutput ? 16 : kSmallestInput.height);
        gst_structure_remove_field(structure, "pixel-aspect-ratio");
        if (toOutput)
            gst_structure_set(structure, "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, nullptr);
        gst_caps_append_structure_full(other, structure,
                                       gst_caps_features_copy(gst_caps_get_features(caps, i)));
    }
    return other;
}

GstCaps* fixateOutput(GstCaps* caps, View view, Mount mount, Size input)
{
    if (gst_caps_is_empty(caps)) return caps;
    guint chosen = 0;
    Choice choice = chooseSize(gst_caps_get_structure(caps, 0), view, mount, input);
    for (guint i = 1; !choice.composes && i < gst_caps_get_size(caps); ++i) {
        const Choice next = chooseSize(gst_caps_get_structure(caps, i), view, mount, input);
        if (!next.composes) continue;
        choice = next;
        chosen = i;
    }
    GstCaps* fixed = gst_caps_copy_nth(caps, chosen);
    gst_caps_unref(caps);
    gst_caps_set_simple(fixed, "width", G_TYPE_INT, choice.size.width, "height", G_TYPE_INT,
                        choice.size.height, nullptr);
    return gst_caps_fixate(fixed);
}

} // namespace lumofe
