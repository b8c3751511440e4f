// Number texts of the batch file, read as the host's Brazilian runtime reads them.
#pragma once

#include <cstdint>
#include <string_view>

namespace exportifc {

/// What the C conversion `atof` gives under the "Portuguese" locale, whatever locale the process
/// has: leading blanks, a sign, digits with one decimal comma, an exponent with e or E. Reading
/// stops at the first character that does not belong; no number gives 0, overflow an infinity.
double parseCommaDecimal(std::string_view text);

/// A coordinate, angle or dimension: every "." counts as a decimal comma, and the value is rounded
/// to single precision. "1.5" and "1,5" are both one and a half.
float parseHostNumber(std::string_view text);

/// What `atoi` gives, clamped to 32 bits.
std::int32_t parseHostInteger(std::string_view text);

}  // namespace exportifc
