// A workbook (xlsx) as tables of cells.
#pragma once

#include <cstdint>
#include <memory>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace exportifc {

/// What one cell of a sheet holds. Dates are numbers, formulas their last result.
struct Cell {
  enum class Kind : std::uint8_t { empty, text, number, boolean, error };

  std::int32_t column = 0;  ///< from 0
  Kind kind = Kind::empty;
  std::string text{};   ///< UTF-8; of a number and an error as the file writes it
  double number = 0.0;  ///< a boolean is 0 or 1
};

/// The cells of a row that hold something, from the left.
struct Row {
  std::int32_t number = 1;  ///< from 1, as people see it
  std::vector<Cell> cells{};
};

/// The rows that hold something, from the top.
struct Sheet {
  std::string name{};
  std::vector<Row> rows{};
};

/// A whole workbook; each sheet is read when it is first asked for. Faults are ModelErrors with the
/// cell as their place.
class Workbook {
 public:
  /// A whole xlsx file.
  explicit Workbook(std::streambuf& file);
  explicit Workbook(std::vector<Sheet> sheets);
  ~Workbook();
  Workbook(Workbook&& other) noexcept;
  Workbook& operator=(Workbook&& other) noexcept;

  /// In the order of the workbook, hidden ones too.
  const std::vector<std::string>& sheetNames() const;
  bool has(std::string_view name) const;
  /// A sheet that it has. The reference holds as long as the workbook.
  const Sheet& sheet(std::string_view name) const;

 private:
  struct Content;
  std::unique_ptr<Content> content_;
};

/// Whether a file that begins so, or has a name with this extension, is meant as a workbook.
bool looksLikeWorkbook(std::string_view start, std::string_view extension);

/// The cell in that column, null when it holds nothing.
const Cell* cellAt(const Row& row, std::int32_t column);

/// "AB" for 27.
std::string columnName(std::int32_t column);

/// "StructuralCurveMember!C12": row from 1, column from 0.
std::string cellName(std::string_view sheet, std::int32_t row, std::int32_t column);

}  // namespace exportifc
