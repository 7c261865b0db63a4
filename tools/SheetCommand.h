// The command that puts pictures side by side, with captions.
#ifndef LUMOFE_TOOLS_SHEET_COMMAND_H
#define LUMOFE_TOOLS_SHEET_COMMAND_H

#include <string>
#include <vector>

namespace lumofe {

struct SheetOptions {
    std::string output; // "-": PNG on standard output
    std::vector<std::string> images;
    std::vector<std::string> captions; // in the order of the images; the others get their file name
    int columns = 3;
    int width = 480;    // of a thumbnail, pixels
    bool force = false; // replace an existing file
};

// Throws Error for whatever cannot be done; then no output file is left.
void runSheet(const SheetOptions& options);

} // namespace lumofe

#endif
