// Option values as text.
#ifndef LUMOFE_TOOLS_PARSE_H
#define LUMOFE_TOOLS_PARSE_H

#include "Dewarper.h"

#include <string>
#include <vector>

namespace lumofe {

// Each throws Error, naming the option, for text that it does not understand.

// "cx,cy,r" in pixels, rounded to whole ones; the centre not negative, the radius from 16.
Circle parseCircle(const std::string& text);

// "WxH" in pixels, each from 16 to 4096.
Size parseSize(const std::string& text);

// "pan,tilt,zoom" in degrees and percent, decimals allowed; any range.
Aim parsePtz(const std::string& text);

// Names that the next four take.
std::vector<std::string> viewNames();
std::vector<std::string> mountNames();
std::vector<std::string> pixelFormatNames();
std::vector<std::string> viewsNames();

View parseView(const std::string& text);
Mount parseMount(const std::string& text);
PixelFormat parsePixelFormat(const std::string& text);

// "separate" is true, "together" false.
bool parseViews(const std::string& text);

} // namespace lumofe

#endif
