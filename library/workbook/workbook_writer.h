// Workbooks (xlsx) as they are written. Libraries for it write into files with names of their own
// choice and through others beside them; here a page and a pipe must do, too.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "library/workbook/workbook.h"
#include "platform/byte_sink.h"

namespace exportifc {

/// A comment on a column's header.
struct HeaderNote {
  std::int32_t column = 0;
  std::string text{};
};

/// The words that a drop-down list offers below a column's header; others may be typed.
struct WordList {
  std::int32_t column = 0;
  std::vector<std::string> words{};
};

struct WrittenSheet {
  Sheet sheet{};  ///< its first row is the header: bold, and in sight while the others scroll
  std::vector<HeaderNote> notes{};
  std::vector<WordList> lists{};
};

/// Rows that a sheet can have.
inline constexpr std::int64_t mostSheetRows = 1'048'576;

/// The same sheets are the same bytes. False when the sink has refused something.
bool writeWorkbook(std::span<const WrittenSheet> sheets, ByteSink& output);

}  // namespace exportifc
