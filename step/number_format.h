// Numbers as the exchange file writes them, straight into a buffer.
#pragma once

#include <cstddef>
#include <cstdint>

namespace exportifc {

/// Longest text of `putFixed5`: sign, 309 digits of the largest double, point, five digits.
inline constexpr std::size_t fixed5Capacity = 320;
/// Longest text of `putGeneral6`, for instance "-1.23457e-308".
inline constexpr std::size_t general6Capacity = 16;
/// Longest text of `putInteger`.
inline constexpr std::size_t integerCapacity = 11;

/// Writes `value` in fixed notation with five decimals, ties to even, as the C conversion "%.5f"
/// does under the classic locale; infinities and NaN as "inf", "-inf", "nan".
/// Returns the end of the text; `at` must have room for `fixed5Capacity` characters.
char* putFixed5(char* at, double value);

/// Writes `value` as "%.6g" does under the classic locale; room for `general6Capacity`.
char* putGeneral6(char* at, double value);

/// Writes `value` in plain decimal; room for `integerCapacity`.
char* putInteger(char* at, std::int32_t value);

}  // namespace exportifc
