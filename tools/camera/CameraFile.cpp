// The file that holds what is known of one camera.
#include "camera/CameraFile.h"

#include "Error.h"
#include "OutputFile.h"
#include "camera/JsonField.h"

#include <algorithm>
#include <unistd.h>

namespace lumofe {
namespace {

constexpr int kVersion = 1;
constexpr int kLargestOffset = 4096;
constexpr std::size_t kLongestName = 64;
constexpr double kLongestStay = 86400, kLongestGlide = 3600; // seconds

bool turns(View layout, Mount mount)
{
    return layout == View::half180 && mount != Mount::wall;
}

Size readSize(const JsonField& field)
{
    field.allow({"width", "height"});
    const JsonField width = field.at("width"), height = field.at("height");
    const Size size{width.integer(kSmallestInput.width, kLargestInput.width, " pixels"),
                    height.integer(kSmallestInput.height, kLargestInput.height, " pixels")};
    for (const auto& [side, pixels] :
         {std::pair(width, size.width), std::pair(height, size.height)})
        if (pixels % 2 != 0)
            side.fail(std::to_string(pixels) + " is odd; only " + std::to_string(pixels - 1) +
                      " pixels are used of it, write that");
    return size;
}

Circle readCircle(const JsonField& field, Size input)
{
    field.allow({"x", "y", "radius"});
    return {field.at("x").integer(0, input.width - 1, " pixels, the input's width"),
            field.at("y").integer(0, input.height - 1, " pixels, the input's height"),
            field.at("radius").integer(kSmallestRadius, kLargestRadius, " pixels")};
}

Mount readMount(const JsonField& field)
{
    return field.choice<Mount>(
        {{"ceiling", Mount::ceiling}, {"wall", Mount::wall}, {"floor", Mount::floor}});
}

View readLayout(const JsonField& field)
{
    return field.choice<View>({{"single", View::single},
                               {"quad", View::quad},
                               {"360", View::ptz360},
                               {"180", View::half180}});
}

Aim readAim(const JsonField& field, Mount mount)
{
    field.allow({"pan", "tilt", "zoom", "offset"});
    const MountRule& rule = mountRule(mount);
    Aim aim{field.at("pan").number(rule.panMin, rule.panMax, " degrees"),
            field.at("tilt").number(rule.tiltMin, rule.tiltMax, " degrees"),
            field.at("zoom").number(0, 100, " percent")};
    if (const auto offset = field.find("offset"))
        aim.offset = offset->integer(-kLargestOffset, kLargestOffset, " pixels");
    return aim;
}

Preset readPreset(const std::string& name, const JsonField& field, const CameraFile& camera)
{
    try {
        checkPresetName(name, "the name");
    } catch (const Error& e) {
        field.fail(e.what());
    }
    field.allow({"layout", "views", "turn"});
    Preset preset{name, camera.layout, {}};
    if (const auto layout = field.find("layout")) preset.layout = readLayout(*layout);

    const LayoutRule& rule = layoutRule(preset.layout);
    if (rule.views > 0 || field.find("views"))
        for (const JsonField& view : field.at("views").items())
            preset.position.views.push_back(readAim(view, camera.mount));
    if (int(preset.position.views.size()) != rule.views)
        field.at("views").fail("has " + std::to_string(preset.position.views.size()) +
                               " views; the " + rule.name + " layout steers " +
                               std::to_string(rule.views));
    if (const auto turn = field.find("turn")) {
        if (!turns(preset.layout, camera.mount))
            turn->fail("turns the 180 layout of ceiling and floor only; remove it");
        preset.position.panoOffset = turn->integer(-360, 360, " degrees");
    }
    return preset;
}

TourStop readStop(const JsonField& field, const CameraFile& camera)
{
    field.allow({"preset", "stay", "glide"});
    const JsonField name = field.at("preset");
    if (!findPreset(camera, name.text()))
        name.fail("there is no preset '" + quotable(name.text()) + "'");
    return {name.text(), field.at("stay").number(0, kLongestStay, " seconds"),
            field.at("glide").number(0, kLongestGlide, " seconds")};
}

Tour readTour(const JsonField& field, const CameraFile& camera)
{
    field.allow({"repeat", "stops"});
    Tour tour;
    if (const auto repeat = field.find("repeat")) tour.repeat = repeat->boolean();
    double seconds = 0;
    for (const JsonField& item : field.at("stops").items()) {
        tour.stops.push_back(readStop(item, camera));
        const TourStop& stop = tour.stops.back();
        seconds += stop.stay + stop.glide;
        const View first = findPreset(camera, tour.stops.front().preset)->layout;
        const View layout = findPreset(camera, stop.preset)->layout;
        if (layout != first)
            item.at("preset").fail("'" + quotable(stop.preset) + "' is of the " +
                                   layoutRule(layout).name + " layout, the first stop of the " +
                                   layoutRule(first).name + "; a tour keeps to one layout");
    }
    if (!tour.stops.empty() && !(seconds > 0))
        field.at("stops").fail("take no time; give one of them a stay or a glide");
    return tour;
}

void checkVersion(const JsonField& root)
{
    const auto version = root.find("version");
    if (!version) root.fail("version: is missing; begin the file with \"version\": 1");
    const int number = version->integer(1, 1000000, "");
    if (number > kVersion)
        version->fail(std::to_string(number) + " is newer than " + std::to_string(kVersion) +
                      ", the newest that this lumofe reads; update lumofe");
}

CameraFile cameraOf(const JsonField& root)
{
    checkVersion(root);
    root.allow({"version", "input", "mount", "circle", "layout", "presets", "tour"});
    CameraFile camera;
    camera.input = readSize(root.at("input"));
    camera.mount = readMount(root.at("mount"));
    camera.circle = readCircle(root.at("circle"), camera.input);
    if (const auto layout = root.find("layout")) camera.layout = readLayout(*layout);
    if (const auto presets = root.find("presets"))
        for (const auto& [name, field] : presets->members())
            camera.presets.push_back(readPreset(name, field, camera));
    if (const auto tour = root.find("tour")) camera.tour = readTour(*tour, camera);
    return camera;
}

Json jsonOf(const Aim& aim)
{
    Json json{{"pan", aim.pan}, {"tilt", aim.tilt}, {"zoom", aim.zoom}};
    if (aim.offset) json["offset"] = *aim.offset;
    return json;
}

Json jsonOf(const Preset& preset, Mount mount)
{
    Json json{{"layout", layoutRule(preset.layout).name}};
    for (const Aim& aim : preset.position.views)
        json["views"].push_back(jsonOf(aim));
    if (turns(preset.layout, mount)) json["turn"] = preset.position.panoOffset;
    return json;
}

Json jsonOf(const Tour& tour)
{
    Json json{{"repeat", tour.repeat}, {"stops", Json::array()}};
    for (const TourStop& stop : tour.stops)
        json["stops"].push_back(
            Json{{"preset", stop.preset}, {"stay", stop.stay}, {"glide", stop.glide}});
    return json;
}

Json jsonOf(const CameraFile& camera)
{
    Json json{{"version", kVersion},
              {"input", {{"width", camera.input.width}, {"height", camera.input.height}}},
              {"mount", mountRule(camera.mount).name},
              {"circle",
               {{"x", camera.circle.x}, {"y", camera.circle.y}, {"radius", camera.circle.radius}}},
              {"layout", layoutRule(camera.layout).name},
              {"presets", Json::object()}};
    for (const Preset& preset : camera.presets)
        json["presets"][preset.name] = jsonOf(preset, camera.mount);
    if (!camera.tour.stops.empty()) json["tour"] = jsonOf(camera.tour);
    return json;
}

} // namespace

CameraFile parseCameraFile(std::string_view text, const std::string& name)
{
    const JsonFile file{name, parseJson(text, name)};
    return cameraOf(JsonField(file));
}

CameraFile readCameraFile(const std::string& path)
{
    const JsonFile file = readJson(path);
    return cameraOf(JsonField(file));
}

std::string cameraFileText(const CameraFile& camera, const std::string& name)
{
    const Json json = jsonOf(camera);
    if (json["presets"].size() != camera.presets.size())
        throw Error(name + ": presets: a name appears twice; remove one of them");
    std::string text;
    try {
        text = json.dump(2) + "\n";
    } catch (const Json::exception&) {
        throw Error(name + ": presets: a name is not UTF-8; write it in UTF-8");
    }
    // Whatever is wrong is told as it would be when the file is read.
    parseCameraFile(text, name);
    return text;
}

void writeCameraFile(const std::string& path, const CameraFile& camera)
{
    const std::string text = cameraFileText(camera, path == "-" ? "standard output" : path);
    OutputFile output(path, STDOUT_FILENO);
    output.write(text);
    output.commit();
}

Position positionOf(const Dewarper& dewarper)
{
    const MountRule& rule = mountRule(dewarper.setup().mount);
    Position position{dewarper.aims(), dewarper.setup().panoOffset % 360};
    for (Aim& aim : position.views) {
        aim.pan = std::clamp(aim.pan, rule.panMin, rule.panMax);
        aim.tilt = std::clamp(aim.tilt, rule.tiltMin, rule.tiltMax);
        aim.zoom = std::clamp(aim.zoom, 0.0, 100.0);
    }
    return position;
}

const Preset* findPreset(const CameraFile& camera, std::string_view name)
{
    const auto found = std::ranges::find(camera.presets, name, &Preset::name);
    return found == camera.presets.end() ? nullptr : &*found;
}

const Preset& presetNamed(const CameraFile& camera, std::string_view name, const std::string& file)
{
    if (const Preset* preset = findPreset(camera, name)) return *preset;
    std::string names;
    for (const Preset& preset : camera.presets)
        names.append(names.empty() ? "" : ", ").append(preset.name);
    throw Error(file + ": there is no preset '" + quotable(name) + "'; " +
                (names.empty() ? "the file has none, make one with lumofe preset save"
                               : "choose one of " + quotable(names)));
}

void checkPresetName(std::string_view name, const std::string& where)
{
    if (name.empty() || name.size() > kLongestName)
        throw Error(where + " has " + std::to_string(name.size()) + " bytes; use 1 to " +
                    std::to_string(kLongestName));
    if (name.front() == '-') throw Error(where + " begins with a dash; begin with a letter");
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto byte = static_cast<unsigned char>(name[i]);
        // The controls of Latin-1 are two bytes of UTF-8.
        const bool highControl =
            byte == 0xc2 && i + 1 < name.size() && static_cast<unsigned char>(name[i + 1]) < 0xa0;
        if (byte < 0x20 || byte == 0x7f || highControl)
            throw Error(where + " has a control character; use printable ones");
    }
}

} // namespace lumofe
