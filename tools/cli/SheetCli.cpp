// The options of `lumofe sheet`.
#include "cli/Commands.h"

#include "SheetCommand.h"

#include <memory>

namespace lumofe {
namespace {

constexpr const char* kSheetFooter = R"(
Thumbnails are all as wide as --width and stand in rows, each under its caption.

Example:
  lumofe sheet all.png --columns 2 --caption before --caption after hall.jpg view.png)";

} // namespace

void addSheet(CLI::App& app)
{
    const auto options = std::make_shared<SheetOptions>();
    SheetOptions& o = *options;
    CLI::App& sheet = *app.add_subcommand("sheet", "Put pictures side by side, with captions");
    sheet.footer(kSheetFooter);
    sheet
        .add_option("OUT", o.output,
                    "Still to write (.png .jpg .jpeg .bmp); - is standard output, PNG")
        ->required()
        ->type_name("");
    sheet.add_option("IMAGE", o.images, "PNG, JPEG or BMP stills, up to 4096x4096 pixels")
        ->required()
        ->type_name("");
    sheet.add_option("--columns", o.columns, "Pictures in a row, 1 to 20 (default 3)")
        ->type_name("N");
    sheet.add_option("--width", o.width, "Of a thumbnail, 32 to 2048 pixels (default 480)")
        ->type_name("PIXELS");
    sheet
        .add_option("--caption", o.captions,
                    "Of the next picture, ASCII; once per picture (default: file names)")
        ->allow_extra_args(false)
        ->type_name("TEXT");
    addForce(sheet, o.force);
    sheet.callback([options] { runSheet(*options); });
}

} // namespace lumofe
