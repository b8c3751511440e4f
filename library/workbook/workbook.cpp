#include "library/workbook/workbook.h"

#include <algorithm>
#include <utility>

namespace exportifc {

struct Workbook::Content {
  std::vector<std::string> names;
  std::vector<Sheet> sheets;
};

Workbook::Workbook(std::vector<Sheet> sheets) : content_(std::make_unique<Content>()) {
  for (const Sheet& sheet : sheets) {
    content_->names.push_back(sheet.name);
  }
  content_->sheets = std::move(sheets);
}

Workbook::~Workbook() = default;
Workbook::Workbook(Workbook&& other) noexcept = default;
Workbook& Workbook::operator=(Workbook&& other) noexcept = default;

const std::vector<std::string>& Workbook::sheetNames() const { return content_->names; }

bool Workbook::has(std::string_view name) const {
  return std::find(content_->names.begin(), content_->names.end(), name) != content_->names.end();
}

const Sheet& Workbook::sheet(std::string_view name) const {
  const auto found = std::find(content_->names.begin(), content_->names.end(), name);
  return content_->sheets.at(static_cast<std::size_t>(found - content_->names.begin()));
}

const Cell* cellAt(const Row& row, std::int32_t column) {
  const auto found =
      std::lower_bound(row.cells.begin(), row.cells.end(), column,
                       [](const Cell& cell, std::int32_t wanted) { return cell.column < wanted; });
  return found != row.cells.end() && found->column == column ? &*found : nullptr;
}

std::string columnName(std::int32_t column) {
  constexpr std::int32_t letters = 26;
  std::string name;
  for (std::int32_t rest = column + 1; rest > 0; rest = (rest - 1) / letters) {
    name.insert(name.begin(), static_cast<char>('A' + (rest - 1) % letters));
  }
  return name;
}

std::string cellName(std::string_view sheet, std::int32_t row, std::int32_t column) {
  return std::string(sheet) + "!" + columnName(column) + std::to_string(row);
}

}  // namespace exportifc
