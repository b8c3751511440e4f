// Which language the program speaks.
#pragma once

namespace exportifc::cli {

/// Sets the language of the session: that of the variable EXPORTIFC_LANG; without it that of the
/// first of LC_ALL, LC_MESSAGES and LANG; without these that of the system's own setting. Throws
/// a Failure, in the language of the others, when EXPORTIFC_LANG names none that the program has.
void chooseLanguage();

}  // namespace exportifc::cli
