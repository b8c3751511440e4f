// Tables as text: CSV.
#pragma once

#include <string>
#include <string_view>

#include "library/workbook/workbook.h"
#include "platform/byte_sink.h"

namespace exportifc {

/// What divides values, and the sign in numbers.
struct CsvStyle {
  char separator = ',';
  char decimalSign = '.';
};

/// The habits of the user's language: semicolon and comma in Portuguese.
CsvStyle csvStyle();

/// A table of texts; the number of a row is the line in which it begins. Semicolon, tab or comma
/// divide, whichever the first line has; a value in quotes may hold them, quotes doubled and line
/// ends. UTF-8, or Windows-1252 where it is none. Throws a ModelError, whose place is in the text
/// of `file`, for a quote that is not closed and for UTF-16.
Sheet readCsv(std::string_view text, const std::string& name, const std::string& file);

/// UTF-8 with the mark by which spreadsheet programs know it.
bool writeCsv(const Sheet& sheet, CsvStyle style, ByteSink& output);

}  // namespace exportifc
