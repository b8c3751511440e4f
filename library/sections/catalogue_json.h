// Families and rolled sections for programs.
#pragma once

#include <span>

#include "library/sections/rolled_sections.h"
#include "library/sections/section_catalogue.h"
#include "library/text/json_text.h"

namespace exportifc {

/// A family, with what each number behind their word measures.
JsonObject familyJson(const Family& family);
JsonList familiesJson();

JsonList sectionsJson(std::span<const RolledSection* const> sections);

}  // namespace exportifc
