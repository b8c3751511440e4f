#include "library/formats/saf/saf_member_rows.h"

#include <algorithm>

#include "library/text/nearest.h"

namespace exportifc::saf {

void Group::add(std::string_view name, const std::string& cell) {
  constexpr std::int64_t mostNames = 10;
  if (count_++ == 0) {
    cell_ = cell;
  }
  if (count_ <= mostNames) {
    names_.append(names_.empty() ? "" : ", ").append(name);
  } else if (count_ == mostNames + 1) {
    names_ += ", \xE2\x80\xA6";
  }
}

void Group::tell(std::vector<Problem>& found) const {
  if (count_ > 0) {
    found.push_back({.code = code_,
                     .severity = severity_,
                     .message = fill(text_, {numberText(count_), names_}),
                     .cell = cell_});
  }
}

void Remarks::tell(std::vector<Problem>& found) const {
  for (const Group* const group :
       {&curved, &tapered, &noSlab, &noSide, &unknownType, &twoOffsets, &alignment, &ribOffset}) {
    group->tell(found);
  }
}

std::int32_t indexOf(const Table& table, const Row& row, Column column, std::string_view name,
                     const NameIndex& names, std::string_view sheet) {
  const auto found = names.find(name);
  if (found == names.end()) {
    std::vector<std::string> known;
    for (const auto& [text, index] : names) {
      known.push_back(text);
    }
    const std::string near = nearest(name, known);
    table.refuse(row, column,
                 say(texts::cellUnknown, {name, sheet}) +
                     (near.empty() ? near : say(texts::didYouMean, {near})),
                 {}, near);
  }
  return found->second;
}

MemberRows::MemberRows(const Workbook& book, std::string_view sheet, const Project& project,
                       const Sections& sections, const Nodes& nodes, Model& model)
    : table_(book.sheet(sheet), project.imperial),
      sections_(sections),
      nodes_(nodes),
      model_(model) {}

Member MemberRows::read(const Row& row) {
  Member member{.name = std::string(table_.requiredText(row, name_)),
                .cell = table_.cell(row, name_)};
  for (const std::string_view node : nodeNames(row)) {
    member.nodes.push_back(
        indexOf(table_, row, listColumn(row), node, nodes_.names(), "StructuralPointConnection"));
  }
  if (member.nodes.size() < 2) {
    table_.refuse(row, listColumn(row), say(texts::safOneNode));
  }
  member.spans = {{.section = indexOf(table_, row, section_, table_.requiredText(row, section_),
                                      sections_.names(), "StructuralCrossSection")}};
  if (const std::string_view layer = table_.text(row, layer_); !layer.empty()) {
    const auto [found, isNew] =
        layers().emplace(layer, static_cast<std::int32_t>(model_.layers.size()));
    if (isNew) {
      model_.layers.emplace_back(layer);
    }
    member.layer = found->second;
  }
  return member;
}

bool MemberRows::isCurved(const Row& row) const {
  const auto straight = [](std::string_view word) {
    return comparable(word) == "line" || comparable(word) == "polyline";
  };
  const auto segments = pieces(table_.text(row, segments_));
  const std::string_view shape = table_.text(row, geometry_);
  return segments.empty() ? !shape.empty() && !straight(shape)
                          : !std::all_of(segments.begin(), segments.end(), straight);
}

Column MemberRows::listColumn(const Row& row) const {
  return table_.text(row, list_).empty() && begin_.index >= 0 ? begin_ : list_;
}

std::vector<std::string_view> MemberRows::nodeNames(const Row& row) const {
  std::vector<std::string_view> names = pieces(table_.text(row, list_));
  if (names.empty()) {
    for (const Column column : {begin_, end_}) {
      names.push_back(table_.requiredText(row, column));
    }
  }
  return names;
}

NameIndex& MemberRows::layers() {
  if (layers_.size() != model_.layers.size()) {
    for (std::size_t i = 0; i < model_.layers.size(); ++i) {
      layers_.emplace(model_.layers[i], static_cast<std::int32_t>(i));
    }
  }
  return layers_;
}

}  // namespace exportifc::saf
