// What `lumofe calibrate` found.
#include "camera/Calibration.h"

#include "camera/JsonField.h"

#include <cmath>

namespace lumofe {
namespace {

int rounded(const JsonField& circle, const char* name, int low, int high)
{
    return int(std::lround(circle.at(name).number(low, high, " pixels")));
}

} // namespace

Calibration readCalibration(const std::string& path)
{
    const JsonFile file = readJson(path);
    const JsonField root(file), size = root.at("input"), circle = root.at("circle");
    Calibration found;
    found.confident = root.at("confident").boolean();
    found.input = {
        size.at("width").integer(kSmallestInput.width, kLargestInput.width, " pixels"),
        size.at("height").integer(kSmallestInput.height, kLargestInput.height, " pixels")};
    found.circle = {rounded(circle, "x", 0, found.input.width - 1),
                    rounded(circle, "y", 0, found.input.height - 1),
                    rounded(circle, "radius", kSmallestRadius, kLargestRadius)};
    return found;
}

} // namespace lumofe
