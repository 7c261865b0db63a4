// The manual page, written from the option table.
#ifndef LUMOFE_TOOLS_MAN_PAGE_H
#define LUMOFE_TOOLS_MAN_PAGE_H

#include "CommandHelp.h"

#include <string>

namespace lumofe {

// The page in the man macros of roff. `version` is shown in its foot: "LumoFESDK 1.0.0",
// `exitStatus` has the form of a footer. There is no date in it, so that the same sources give the
// same page.
std::string manPage(const CommandHelp& tool, const std::string& version,
                    const std::string& exitStatus);

} // namespace lumofe

#endif
