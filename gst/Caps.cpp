// Which formats and sizes the element offers on one side for what there is on the other.
#include "Caps.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace lumofe {
namespace {

constexpr Size kSmallestOutput{16, 16};
constexpr int kLargestStep = 8; // from one composing width or height to the next, pixels

// What the library takes, and writes.
constexpr GstVideoFormat kTaken[] = {GST_VIDEO_FORMAT_NV12, GST_VIDEO_FORMAT_I420,
                                     GST_VIDEO_FORMAT_YV12, GST_VIDEO_FORMAT_RGB,
                                     GST_VIDEO_FORMAT_BGR};

// What sinks and encoders ask for, of each kind those first that lose nothing and have no alpha,
// which would be opaque throughout.
constexpr GstVideoFormat kGiven[] = {
    GST_VIDEO_FORMAT_NV12, GST_VIDEO_FORMAT_I420, GST_VIDEO_FORMAT_YV12,  GST_VIDEO_FORMAT_NV21,
    GST_VIDEO_FORMAT_YUY2, GST_VIDEO_FORMAT_UYVY, GST_VIDEO_FORMAT_Y42B,  GST_VIDEO_FORMAT_Y444,
    GST_VIDEO_FORMAT_BGRx, GST_VIDEO_FORMAT_RGBx, GST_VIDEO_FORMAT_xRGB,  GST_VIDEO_FORMAT_xBGR,
    GST_VIDEO_FORMAT_RGB,  GST_VIDEO_FORMAT_BGR,  GST_VIDEO_FORMAT_BGRA,  GST_VIDEO_FORMAT_RGBA,
    GST_VIDEO_FORMAT_ARGB, GST_VIDEO_FORMAT_ABGR, GST_VIDEO_FORMAT_RGB16, GST_VIDEO_FORMAT_RGB15,
};

using Formats = std::vector<GstVideoFormat>;

std::span<const GstVideoFormat> formatsOf(GstPadDirection direction)
{
    if (direction == GST_PAD_SINK) return kTaken;
    return kGiven;
}

bool isTaken(View view, GstVideoFormat input)
{
    const PixelFormat format = fedAs(input);
    return fedFormat(view, format) == format;
}

bool isRgb(GstVideoFormat format)
{
    return GST_VIDEO_FORMAT_INFO_IS_RGB(gst_video_format_get_info(format));
}

bool allows(const GstStructure* structure, const char* field, const GValue& value)
{
    const GValue* allowed = gst_structure_get_value(structure, field);
    return !allowed || gst_value_intersect(nullptr, allowed, &value);
}

bool allows(const GstStructure* structure, const char* field, const char* text)
{
    GValue value = G_VALUE_INIT;
    g_value_init(&value, G_TYPE_STRING);
    g_value_set_static_string(&value, text);
    return allows(structure, field, value);
}

bool allows(const GstStructure* structure, const char* field, int number)
{
    GValue value = G_VALUE_INIT;
    g_value_init(&value, G_TYPE_INT);
    g_value_set_int(&value, number);
    return allows(structure, field, value);
}

bool allows(const GstStructure* structure, GstVideoFormat format)
{
    return allows(structure, "format", gst_video_format_to_string(format));
}

void setFormats(GstStructure* structure, std::span<const GstVideoFormat> formats)
{
    GValue list = G_VALUE_INIT, one = G_VALUE_INIT;
    g_value_init(&list, GST_TYPE_LIST);
    g_value_init(&one, G_TYPE_STRING);
    for (GstVideoFormat format : formats) {
        g_value_set_static_string(&one, gst_video_format_to_string(format));
        gst_value_list_append_value(&list, &one);
    }
    gst_structure_set_value(structure, "format", &list);
    g_value_unset(&one);
    g_value_unset(&list);
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

void setEvenRange(GstStructure* structure, const char* field, int least)
{
    GValue range = G_VALUE_INIT;
    g_value_init(&range, GST_TYPE_INT_RANGE);
    gst_value_set_int_range_step(&range, least, kLargestInput.width, 2);
    gst_structure_take_value(structure, field, &range);
}

enum class Conversion { none, needed };

// Formats of the other pad that go with those of the structure.
Formats formatsBehind(const GstStructure* structure, View view, GstPadDirection direction,
                      Conversion conversion)
{
    const bool toOutput = direction == GST_PAD_SINK;
    const auto goTogether = [&](GstVideoFormat one, GstVideoFormat other) {
        const GstVideoFormat input = toOutput ? one : other, output = toOutput ? other : one;
        return isTaken(view, input) &&
               (output == writtenFormat(input)) == (conversion == Conversion::none);
    };
    Formats found;
    for (GstVideoFormat one : formatsOf(direction))
        for (GstVideoFormat other : formatsOf(toOutput ? GST_PAD_SRC : GST_PAD_SINK))
            if (goTogether(one, other) && allows(structure, one) &&
                std::find(found.begin(), found.end(), other) == found.end())
                found.push_back(other);
    return found;
}

GstCaps* capsBehind(View view, GstPadDirection direction, const GstCaps* caps,
                    Conversion conversion)
{
    GstCaps* other = gst_caps_new_empty();
    for (guint i = 0; i < gst_caps_get_size(caps); ++i) {
        const GstStructure* asked = gst_caps_get_structure(caps, i);
        const Formats formats = formatsBehind(asked, view, direction, conversion);
        if (formats.empty()) continue;
        GstStructure* structure = gst_structure_copy(asked);
        setFormats(structure, formats);
        const bool toOutput = direction == GST_PAD_SINK;
        const Size least = toOutput ? kSmallestOutput : kSmallestInput;
        setRange(structure, "width", least.width);
        setRange(structure, "height", least.height);
        gst_structure_remove_field(structure, "pixel-aspect-ratio");
        if (toOutput)
            gst_structure_set(structure, "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, nullptr);
        if (conversion == Conversion::needed)
            gst_structure_remove_fields(structure, "colorimetry", "chroma-site", nullptr);
        gst_caps_append_structure_full(other, structure,
                                       gst_caps_features_copy(gst_caps_get_features(caps, i)));
    }
    return other;
}

// As far as the structure leaves it open.
void keepColours(GstStructure* structure, const GstVideoInfo& input)
{
    gchar* colorimetry = gst_video_colorimetry_to_string(&input.colorimetry);
    gchar* site = gst_video_chroma_site_to_string(input.chroma_site);
    for (const auto& [field, text] : {std::pair("colorimetry", colorimetry), {"chroma-site", site}})
        if (text && allows(structure, field, text))
            gst_structure_set(structure, field, G_TYPE_STRING, text, nullptr);
    g_free(colorimetry);
    g_free(site);
}

// Takes a reference of the caps, and returns one.
GstCaps* within(GstCaps* caps, GstCaps* filter)
{
    if (!filter) return caps;
    GstCaps* wanted = gst_caps_intersect_full(filter, caps, GST_CAPS_INTERSECT_FIRST);
    gst_caps_unref(caps);
    return wanted;
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

GstVideoFormat writtenFormat(GstVideoFormat input)
{
    if (input == GST_VIDEO_FORMAT_RGB) return GST_VIDEO_FORMAT_BGR;
    if (input == GST_VIDEO_FORMAT_BGR) return GST_VIDEO_FORMAT_RGB;
    return input;
}

GstCaps* templateCaps(GstPadDirection direction)
{
    const Size least = direction == GST_PAD_SINK ? kSmallestInput : kSmallestOutput;
    GstStructure* structure = gst_structure_new_empty("video/x-raw");
    setFormats(structure, formatsOf(direction));
    setEvenRange(structure, "width", least.width);
    setEvenRange(structure, "height", least.height);
    return gst_caps_new_full(structure, nullptr);
}

GstCaps* capsOfOtherPad(View view, GstPadDirection direction, const GstCaps* caps, GstCaps* filter)
{
    GstCaps* direct = within(capsBehind(view, direction, caps, Conversion::none), filter);
    if (direction == GST_PAD_SRC && filter && !gst_caps_is_empty(direct)) return direct;
    return gst_caps_merge(direct,
                          within(capsBehind(view, direction, caps, Conversion::needed), filter));
}

GstCaps* orderFormats(GstCaps* caps, const GstVideoInfo& input)
{
    const GstVideoFormat written = writtenFormat(GST_VIDEO_INFO_FORMAT(&input));
    const auto distance = [&](GstVideoFormat format) {
        return format == written ? 0 : isRgb(format) == isRgb(written) ? 1 : 2;
    };
    Formats order(std::begin(kGiven), std::end(kGiven));
    std::ranges::stable_sort(order, {}, distance);
    GstCaps* ordered = gst_caps_new_empty();
    for (GstVideoFormat format : order)
        for (guint i = 0; i < gst_caps_get_size(caps); ++i) {
            if (!allows(gst_caps_get_structure(caps, i), format)) continue;
            GstStructure* structure = gst_structure_copy(gst_caps_get_structure(caps, i));
            setFormats(structure, {&format, 1});
            if (distance(format) == 1) keepColours(structure, input);
            gst_caps_append_structure_full(ordered, structure,
                                           gst_caps_features_copy(gst_caps_get_features(caps, i)));
        }
    gst_caps_unref(caps);
    return ordered;
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
