#include "library/workbook/workbook.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "library/frame/model_error.h"
#include "library/text/messages.h"
#include "library/workbook/package.h"
#include "library/workbook/sheet_reader.h"

namespace exportifc {

namespace {

struct SheetPart {
  std::string name;
  std::string relationship;
};

/// What the workbook's own part says of its sheets.
class SheetListHandler final : public XmlHandler {
 public:
  std::vector<SheetPart> take() { return std::move(sheets_); }

  void begin(std::string_view element, const XmlAttributes& attributes) override {
    if (element == "sheet") {
      sheets_.push_back({std::string(attributes["name"]), std::string(attributes["id"])});
    }
  }
  void end(std::string_view /*element*/) override {}
  void text(std::string_view /*piece*/) override {}

 private:
  std::vector<SheetPart> sheets_;
};

/// The target of the first relationship of that type; empty when there is none.
std::string targetOf(const std::map<std::string, Relationship>& all, std::string_view type) {
  const auto found = std::find_if(all.begin(), all.end(),
                                  [&](const auto& entry) { return entry.second.type == type; });
  return found == all.end() ? std::string() : found->second.target;
}

// Of the file itself; what it unpacks to has a limit of its own.
constexpr std::size_t mostPacked = std::size_t{64} << 20;

std::string wholeOf(std::streambuf& file) {
  std::string bytes;
  std::vector<char> piece(std::size_t{1} << 16);
  while (const auto size = file.sgetn(piece.data(), static_cast<std::streamsize>(piece.size()))) {
    bytes.append(piece.data(), static_cast<std::size_t>(size));
    if (bytes.size() > mostPacked) {
      throw ModelError(
          {.code = "workbook-too-large",
           .message = say(texts::workbookLargeFile, {std::to_string(mostPacked >> 20)})});
    }
  }
  return bytes;
}

}  // namespace

struct Workbook::Content {
  std::vector<std::string> names;
  std::vector<std::optional<Sheet>> sheets;  // of the same index, those that were read

  // Of a file.
  std::optional<Package> package;
  std::vector<std::string> parts;
  std::string stringsPart;
  std::optional<std::vector<std::string>> strings;
  CellBudget budget;

  std::size_t indexOf(std::string_view name) const {
    return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
  }
  const std::vector<std::string>& sharedStrings() {
    if (!strings) {
      strings = stringsPart.empty() ? std::vector<std::string>()
                                    : readSharedStrings(*package, stringsPart);
    }
    return *strings;
  }
};

Workbook::Workbook(std::streambuf& file) : content_(std::make_unique<Content>()) {
  Package& package = content_->package.emplace(wholeOf(file));
  const std::string workbook = targetOf(package.relationships(""), "officeDocument");
  if (workbook.ends_with(".bin")) {
    throw ModelError({.code = "not-a-workbook", .message = say(texts::workbookBinary)});
  }
  if (!package.has(workbook)) {
    throw ModelError({.code = "not-a-workbook", .message = say(texts::workbookNone)});
  }
  const auto relationships = package.relationships(workbook);
  SheetListHandler list;
  package.read(workbook, {}, list);
  for (const SheetPart& sheet : list.take()) {
    const auto found = relationships.find(sheet.relationship);
    // Sheets that are a diagram have no cells.
    if (found != relationships.end() && found->second.type == "worksheet") {
      content_->names.push_back(sheet.name);
      content_->parts.push_back(found->second.target);
    }
  }
  content_->sheets.resize(content_->names.size());
  content_->stringsPart = targetOf(relationships, "sharedStrings");
}

Workbook::Workbook(std::vector<Sheet> sheets) : content_(std::make_unique<Content>()) {
  for (Sheet& sheet : sheets) {
    content_->names.push_back(sheet.name);
    content_->sheets.emplace_back(std::move(sheet));
  }
}

Workbook::~Workbook() = default;
Workbook::Workbook(Workbook&& other) noexcept = default;
Workbook& Workbook::operator=(Workbook&& other) noexcept = default;

const std::vector<std::string>& Workbook::sheetNames() const { return content_->names; }

bool Workbook::has(std::string_view name) const {
  return content_->indexOf(name) < content_->names.size();
}

const Sheet& Workbook::sheet(std::string_view name) const {
  const std::size_t index = content_->indexOf(name);
  std::optional<Sheet>& sheet = content_->sheets.at(index);
  if (!sheet) {
    sheet = readSheet(*content_->package, content_->parts[index], content_->names[index],
                      content_->sharedStrings(), content_->budget);
  }
  return *sheet;
}

bool looksLikeWorkbook(std::string_view start, std::string_view extension) {
  const bool isNamed = extension == ".xlsx" || extension == ".xlsm";
  return start.starts_with("PK\x03\x04") &&
         (isNamed || start.find("[Content_Types].xml") != std::string_view::npos ||
          start.find("xl/workbook.xml") != std::string_view::npos);
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
