#include "step/line_pieces.h"

#include <type_traits>

namespace exportifc {

LineCursor put(LineCursor line, RefList list) {
  if (list.numbers.empty()) {
    return line;
  }
  ReadyInteger reference(list.numbers.front());
  line = put(line, Ref{reference});
  for (const std::int32_t number : list.numbers.subspan(1)) {
    const ReadyInteger next = reference.next();  // the points of a polyline follow each other
    reference = number == next.value() ? next : ReadyInteger(number);
    line = put(put(line, ", "), Ref{reference});
  }
  return line;
}

// Fixed shape: no escapes.
LineCursor put(LineCursor line, std::wstring_view text) {
  for (const wchar_t unit : text) {
    const auto code = std::uint32_t{static_cast<std::make_unsigned_t<wchar_t>>(unit)};
    if (code - 0x20U > 0xFFU - 0x20U) {  // a control character, or above U+00FF
      if (code > 0xFFU) {
        if (line.cut == nullptr) {
          line.cut = line.at;
        }
        break;  // nothing after it reaches the file
      }
      if (unit == L'\n') {
        *line.at++ = '\r';  // a line feed is a line end of the file, wherever it stands
      }
    }
    *line.at++ = static_cast<char>(code);
  }
  return line;
}

LineCursor put(LineCursor line, const NumberPattern& pattern) {
  for (const PatternText::Number& number : pattern.text.numbers()) {
    const double value = number.source == 0 ? pattern.x : pattern.values[number.source];
    line = put(put(line, number.before), number.factor * value);
  }
  return put(line, pattern.text.rest());
}

}  // namespace exportifc
