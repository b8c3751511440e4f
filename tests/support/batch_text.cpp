#include "tests/support/batch_text.h"

namespace exportifc::test {

Lines headerLines(const std::string& unit, const std::string& count) {
  return {"226", "32", "Modelo", unit, count};
}

Lines barLines(const BarText& bar) {
  const auto& [section, start, end, angle] = bar;
  return {"Barra", start[0], start[1], start[2], end[0], end[1],
          end[2],  angle,    section,  "A36",    "1",    "Grupo"};
}

Lines operator+(Lines lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

std::string textOf(const Lines& lines, std::string_view lineEnd) {
  std::string text;
  for (const std::string& line : lines) {
    text.append(line).append(lineEnd);
  }
  return text;
}

std::string batchModel(const std::vector<BarText>& bars, const std::string& unit) {
  std::string text = textOf(headerLines(unit, std::to_string(bars.size())));
  for (const BarText& bar : bars) {
    text += textOf(barLines(bar));
  }
  return text;
}

}  // namespace exportifc::test
