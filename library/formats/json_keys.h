// The keys of the objects in a JSON model.
#pragma once

#include <string_view>

namespace exportifc {

inline constexpr std::string_view modelKeyNames[] = {"unit",  "nodes",   "sections", "bars",
                                                     "title", "$schema", "materials"};
inline constexpr std::string_view materialKeyNames[] = {"density"};
inline constexpr std::string_view sectionKeyNames[] = {"text", "dims", "material", "catalogue"};
inline constexpr std::string_view barKeyNames[] = {"nodes", "section",      "type", "visible",
                                                   "angle", "quarterTurns", "name", "layer"};

}  // namespace exportifc
