// The element's properties: what they are called, and where their values go.
#include "Properties.h"

#include "Error.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace lumofe {
namespace {

enum Id : guint {
    kLayout = 1,
    kMount,
    kCircleX,
    kCircleY,
    kCircleRadius,
    kOffset,
    kCamera,
    kPreset,
    kFirstOfViews
};

constexpr int kAutomatic = -1;

constexpr auto kLive =
    GParamFlags(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS | GST_PARAM_MUTABLE_PLAYING);
constexpr auto kControlled = GParamFlags(kLive | GST_PARAM_CONTROLLABLE);

// What each view can be steered by.
struct ViewProperty {
    const char* name;
    std::optional<double> ViewDirection::*field;
    double Aim::*inForce;
    double least, most;
    const char* blurb;
};
constexpr ViewProperty kViewProperties[] = {
    {"pan", &ViewDirection::pan, &Aim::pan, -360, 360,
     "degrees clockwise as seen in the raw picture; on the wall -90 (left) to 90 (right). Until it "
     "is set: the layout's usual one"},
    {"tilt", &ViewDirection::tilt, &Aim::tilt, -90, 90,
     "degrees; ceiling 0 (down) to 90, floor -90 to 0 (up), wall -90 (up) to 90 (down); beyond the "
     "mounting's range its end holds. Until it is set: the layout's usual one"},
    {"zoom", &ViewDirection::zoom, &Aim::zoom, 0, 100,
     "percent of the zoom range, 0 is the widest. Until it is set: the layout's usual one"},
};
constexpr guint kPerView = std::size(kViewProperties);
constexpr guint kEnd = kFirstOfViews + kMaxViews * kPerView;

GType layoutType()
{
    static const GEnumValue values[] = {
        {int(View::single), "One view that fills the picture, 4:3", "single"},
        {int(View::quad), "Four views, 4:3", "quad"},
        {int(View::ptz360), "Two views above a panorama strip, 16:9", "360"},
        {int(View::half180), "The panorama in two halves, 16:9; on the wall one, 4:3", "180"},
        {0, nullptr, nullptr}};
    static const GType type = g_enum_register_static("LumofeLayout", values);
    return type;
}

GType mountType()
{
    static const GEnumValue values[] = {{int(Mount::ceiling), "Looks down", "ceiling"},
                                        {int(Mount::wall), "Looks ahead", "wall"},
                                        {int(Mount::floor), "Looks up", "floor"},
                                        {0, nullptr, nullptr}};
    static const GType type = g_enum_register_static("LumofeMount", values);
    return type;
}

std::string nameOf(const ViewProperty& property, int number)
{
    return property.name + std::to_string(number);
}

void installViews(GObjectClass* klass)
{
    guint id = kFirstOfViews;
    for (int number = 1; number <= kMaxViews; ++number)
        for (const ViewProperty& property : kViewProperties) {
            const std::string name = nameOf(property, number);
            const std::string blurb = "View " + std::to_string(number) + ": " + property.blurb;
            constexpr auto kFlags = GParamFlags(kControlled & ~G_PARAM_STATIC_STRINGS);
            g_object_class_install_property(klass, id++,
                                            g_param_spec_double(name.c_str(), name.c_str(),
                                                                blurb.c_str(), property.least,
                                                                property.most, 0, kFlags));
        }
}

void installPixels(GObjectClass* klass, guint id, const char* name, int most, const char* blurb)
{
    g_object_class_install_property(
        klass, id, g_param_spec_int(name, name, blurb, kAutomatic, most, kAutomatic, kControlled));
}

void installText(GObjectClass* klass, guint id, const char* name, const char* blurb)
{
    g_object_class_install_property(klass, id, g_param_spec_string(name, name, blurb, "", kLive));
}

std::string textOf(const GValue* value)
{
    const char* text = g_value_get_string(value);
    return text ? text : "";
}

std::optional<int> pixels(const GValue* value, int least)
{
    const int number = g_value_get_int(value);
    if (number == kAutomatic) return {};
    return std::max(number, least);
}

struct OfView {
    const ViewProperty& property;
    int number;
};

OfView viewProperty(guint id)
{
    return {kViewProperties[(id - kFirstOfViews) % kPerView],
            int((id - kFirstOfViews) / kPerView) + 1};
}

} // namespace

void installProperties(GObjectClass* klass)
{
    g_object_class_install_property(
        klass, kLayout,
        g_param_spec_enum("layout", "layout",
                          "What to show; may change the size and format of the output",
                          layoutType(), int(View::single), kLive));
    g_object_class_install_property(klass, kMount,
                                    g_param_spec_enum("mount", "mount", "Where the camera hangs",
                                                      mountType(), int(Mount::ceiling), kLive));
    installPixels(klass, kCircleX, "circle-x", kLargestInput.width,
                  "Centre of the fisheye circle, input pixels from the left; -1 is the middle");
    installPixels(klass, kCircleY, "circle-y", kLargestInput.height,
                  "Centre of the fisheye circle, input pixels from the top; -1 is the middle");
    installPixels(klass, kCircleRadius, "circle-radius", kLargestInput.width,
                  "Radius of the fisheye circle, input pixels, 16 at the least; -1 is half the "
                  "shorter side");
    g_object_class_install_property(
        klass, kOffset,
        g_param_spec_int("panorama-offset", "panorama-offset",
                         "180 on ceiling and floor: turns the panorama, degrees clockwise as seen "
                         "in the raw picture",
                         -360, 360, 0, kControlled));
    installText(klass, kCamera, "camera-file",
                "File of the camera, as `lumofe camera` writes it: sets mount, circle-x, circle-y, "
                "circle-radius and layout; what is set after it wins");
    installText(klass, kPreset, "preset",
                "Preset of the camera's file: sets layout and views; the same one again goes back "
                "to it");
    installViews(klass);
}

std::shared_ptr<const CameraFile> readCamera(guint id, const GValue* value)
{
    const std::string path = id == kCamera ? textOf(value) : "";
    if (path.empty()) return nullptr;
    // Standard input is the program's.
    if (path == "-") throw Error("camera-file: - is no file; give its name");
    return std::make_shared<CameraFile>(readCameraFile(path));
}

bool setProperty(Settings& settings, guint id, const GValue* value,
                 std::shared_ptr<const CameraFile> file)
{
    switch (id) {
    case kLayout:
        settings.view = View(g_value_get_enum(value));
        return true;
    case kMount:
        settings.mount = Mount(g_value_get_enum(value));
        return true;
    case kCircleX:
        settings.circleX = pixels(value, 0);
        return true;
    case kCircleY:
        settings.circleY = pixels(value, 0);
        return true;
    case kCircleRadius:
        settings.circleRadius = pixels(value, kSmallestRadius);
        return true;
    case kOffset:
        settings.set.panoramaOffset = settings.now.panoramaOffset = g_value_get_int(value);
        return true;
    case kCamera:
        settings.takeCamera(textOf(value), std::move(file));
        return true;
    case kPreset:
        settings.showPreset(textOf(value));
        return true;
    default:
        break;
    }
    if (id < kFirstOfViews || id >= kEnd) return false;
    const auto& [property, number] = viewProperty(id);
    for (Settings::Steering* steering : {&settings.set, &settings.now}) {
        ViewDirection& direction = steering->views[std::size_t(number) - 1];
        direction.*property.field = g_value_get_double(value);
        if (property.field != &ViewDirection::pan) direction.offset.reset();
    }
    return true;
}

bool getProperty(const Settings& settings, guint id, GValue* value)
{
    switch (id) {
    case kLayout:
        g_value_set_enum(value, int(settings.view));
        return true;
    case kMount:
        g_value_set_enum(value, int(settings.mount));
        return true;
    case kCircleX:
        g_value_set_int(value, settings.circleX.value_or(kAutomatic));
        return true;
    case kCircleY:
        g_value_set_int(value, settings.circleY.value_or(kAutomatic));
        return true;
    case kCircleRadius:
        g_value_set_int(value, settings.circleRadius.value_or(kAutomatic));
        return true;
    case kOffset:
        g_value_set_int(value, settings.panoramaOffset());
        return true;
    case kCamera:
        g_value_set_string(value, settings.cameraPath.c_str());
        return true;
    case kPreset:
        g_value_set_string(value, settings.preset.c_str());
        return true;
    default:
        break;
    }
    if (id < kFirstOfViews || id >= kEnd) return false;
    const auto& [property, number] = viewProperty(id);
    g_value_set_double(value, settings.aim(number).*property.inForce);
    return true;
}

void notifyChanges(GObject* object, const Settings& before, const Settings& after)
{
    for (int number = 1; number <= kMaxViews; ++number)
        for (const ViewProperty& property : kViewProperties) {
            const auto value = [&](const Settings& s) { return s.aim(number).*property.inForce; };
            if (value(before) != value(after))
                g_object_notify(object, nameOf(property, number).c_str());
        }
    if (before.view != after.view) g_object_notify(object, "layout");
    if (before.mount != after.mount) g_object_notify(object, "mount");
    if (before.circleX != after.circleX) g_object_notify(object, "circle-x");
    if (before.circleY != after.circleY) g_object_notify(object, "circle-y");
    if (before.circleRadius != after.circleRadius) g_object_notify(object, "circle-radius");
    if (before.panoramaOffset() != after.panoramaOffset())
        g_object_notify(object, "panorama-offset");
}

} // namespace lumofe
