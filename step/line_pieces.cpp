#include "step/line_pieces.h"

#include <type_traits>

namespace exportifc {

void put(LineCursor& line, RefList list) {
  if (list.numbers.empty()) {
    return;
  }
  ReadyInteger reference(list.numbers.front());
  put(line, Ref{reference});
  for (const std::int32_t number : list.numbers.subspan(1)) {
    const ReadyInteger next = reference.next();  // the points of a polyline follow each other
    reference = number == next.value() ? next : ReadyInteger(number);
    put(line, ", ");
    put(line, Ref{reference});
  }
}

void put(LineCursor& line, std::wstring_view text) {
  char* at = line.at;  // a copy: the compiler must think that a character could change the cursor
  for (const wchar_t unit : text) {
    const auto code = std::uint32_t{static_cast<std::make_unsigned_t<wchar_t>>(unit)};
    if (code - 0x20U > 0xFFU - 0x20U) {  // a control character, or above U+00FF
      if (code > 0xFFU) {
        if (line.cut == nullptr) {
          line.cut = at;
        }
        break;  // nothing after it reaches the file
      }
      if (unit == L'\n') {
        *at++ = '\r';  // a line feed is a line end of the file, wherever it stands
      }
    }
    *at++ = static_cast<char>(code);
  }
  line.at = at;
}

void put(LineCursor& line, const NumberPattern& pattern) {
  for (std::size_t i = 0; i < pattern.text.size(); ++i) {
    switch (const char c = pattern.text[i]) {
      case 'a':
      case 'h': {
        ++i;
        const double value = pattern.values[static_cast<std::size_t>(pattern.text[i] - '0')];
        put(line, c == 'a' ? value : 0.5 * value);
        break;
      }
      case 'x': put(line, pattern.x); break;
      default: *line.at++ = c;
    }
  }
}

}  // namespace exportifc
