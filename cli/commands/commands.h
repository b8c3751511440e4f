// The commands of the program: a file beside this one for each.
#pragma once

#include "cli/command.h"

namespace exportifc::cli {

MakeCommand addExport;
MakeCommand addCheck;
MakeCommand addProfiles;
MakeCommand addSections;
MakeCommand addConvert;
MakeCommand addView;
MakeCommand addTakeoff;
MakeCommand addTemplate;

/// In the order of the help.
inline constexpr MakeCommand* allCommands[] = {
    addExport, addCheck, addProfiles, addSections, addConvert, addView, addTakeoff, addTemplate,
};

}  // namespace exportifc::cli
