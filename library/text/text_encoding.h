// UTF-8, the Windows-1252 of hosts, and plain ASCII.
#pragma once

#include <string>
#include <string_view>

namespace exportifc {

bool isUtf8(std::string_view bytes);

/// Text of a batch file as UTF-8: as it is when it is valid UTF-8, otherwise read as Windows-1252.
std::string toUtf8(std::string_view bytes);

/// UTF-8 of one character.
std::string utf8Of(char32_t character);

/// UTF-8 of wide text: UTF-16 code units on Windows, characters elsewhere.
std::string utf8Of(std::wstring_view text);

/// Takes the first character off the front of valid UTF-8 text.
char32_t takeCharacter(std::string_view& utf8);

/// The text with its blanks that look like none or like a plain one, and its control characters,
/// by their numbers: "W<U+00A0>200".
std::string withVisibleBlanks(std::string_view utf8);

/// The text with its control characters by their numbers, but for tabs and line ends: what a model
/// says must not move the cursor of a terminal. Bytes that are no UTF-8 stay as they are.
std::string withVisibleControls(std::string_view text);

/// The first character above U+007F, as UTF-8; empty when there is none. The exchange file ends
/// where a section name has one.
std::string firstUnwritable(std::string_view utf8);

/// ASCII that people read as the same: ç to c, Ø to O, × to x. Accents that are characters of
/// their own fall away; what has no such form becomes "?".
std::string transliterated(std::string_view utf8);

/// So many characters of the front of valid UTF-8 text; all of it when it has no more.
std::string_view firstCharacters(std::string_view utf8, std::size_t count);

/// As much of valid UTF-8 text as fits a message, 60 bytes of whole characters; "…" stands for the
/// rest.
std::string excerpt(std::string_view utf8);

/// Number of characters; a host's record counts them in bytes of Windows-1252.
std::size_t characterCount(std::string_view utf8);

}  // namespace exportifc
