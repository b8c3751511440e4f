// Exchange files as text.
#pragma once

#include <string>

namespace exportifc::test {

/// `text` with the 22 characters of each generated GlobalId replaced by "G"s: those with which an
/// entity of a numbered line begins. Lines of the preamble, whose identifiers are constants, have a
/// blank before their equals sign.
std::string maskGlobalIds(std::string text);

}  // namespace exportifc::test
