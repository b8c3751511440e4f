// A strict reader of exchange structures that shares no code with the writer.
#pragma once

#include <string>
#include <string_view>

namespace exportifc::fuzz {

/// Reads a complete ISO 10303-21 file: the grammar of every line, instance numbers that are unique
/// and, where generated, without gaps, references that lead somewhere, GlobalIds that are
/// well-formed and unique, CR LF line ends. Returns the first fault, empty for none.
///
/// "nan" and "inf" count as reals: they are what a model with such coordinates gives.
std::string checkExchange(std::string_view file);

}  // namespace exportifc::fuzz
