#include "model/batch_source.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <unordered_map>

#include "model/host_number.h"
#include "model/length_unit.h"

namespace exportifc {

namespace {

/// What a section text gives.
struct Section {
  const BarRecord* record = nullptr;
  SectionDims dims{};
};

/// A record with this name. It lives as long as the module, also after the export that got it.
const BarRecord& newRecord(std::string_view name) {
  static std::deque<BarRecord> records;  // of which none ever moves
  BarRecord& record = records.emplace_back();
  std::memcpy(record.sectionName, name.data(), name.size());
  return record;
}

/// Puts what the section text gives into `bar`. Bars with the same text, a few dozen among a
/// million, share one record, which never changes. Sections are known by the name in their record,
/// and only so many at a time: neither long texts nor many different ones fill the memory of a host
/// that stays open.
void takeSection(std::string_view text, SourceBar& bar) {
  constexpr std::size_t mostKnown = 4096;
  static std::unordered_map<std::string_view, Section> sections;
  if (const auto known = sections.find(text); known != sections.end()) {
    bar.record = known->second.record;
    bar.dims = known->second.dims;
    return;
  }
  const std::string_view name = text.substr(0, text.find('\0'));
  if (name.size() >= sizeof(BarRecord::sectionName)) {
    bar.record = nullptr;
    return;
  }
  if (name.size() < text.size()) {  // numbers stand behind a NUL, which ends the name
    takeSection(name, bar);
    bar.dims = parseSectionDims(text);
    return;
  }
  bar.record = &newRecord(name);
  bar.dims = parseSectionDims(name);
  if (sections.size() == mostKnown) {
    sections.clear();
  }
  sections.emplace(bar.record->sectionName, Section{.record = bar.record, .dims = bar.dims});
}

/// Takes the next word off the front of `text`, separated by white space; empty at the end.
std::string_view takeWord(std::string_view& text) {
  constexpr std::string_view blanks = " \t\n\v\f\r";
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(blanks));
  text.remove_prefix(word.size());
  return word;
}

}  // namespace

SectionDims parseSectionDims(std::string_view sectionText) {
  SectionDims dims{};
  std::size_t count = 0;
  const auto store = [&](float value) {
    if (count < dims.size()) {
      dims[count++] = value;
    }
  };
  takeWord(sectionText);  // the family word
  for (auto word = takeWord(sectionText); !word.empty(); word = takeWord(sectionText)) {
    if (word == "x") {
      continue;
    }
    std::size_t cross = word.find('x');
    if (cross == std::string_view::npos) {
      store(parseHostNumber(word));
    }
    for (; cross != std::string_view::npos; cross = word.find('x')) {
      store(static_cast<float>(parseCommaDecimal(word)));
      word.remove_prefix(cross + 1);
    }
  }
  return dims;
}

void BatchReader::readHeader() {
  if (!reader_.isOpen()) {
    return;
  }
  line();
  line();
  title_ = line();
  if (const LengthUnit* const unit = lengthUnitNamed(line()); unit != nullptr) {
    unitCode_ = unit->code;
  }
  barCount_ = parseHostInteger(line());
}

bool BatchReader::next(BatchBar& bar) {
  std::string_view name;
  if (!reader_.next(name)) {
    return false;
  }
  for (float& coordinate : bar.start) {
    coordinate = number();
  }
  for (float& coordinate : bar.end) {
    coordinate = number();
  }
  bar.angle = number();
  bar.sectionText = line();
  line();
  line();
  line();
  return true;
}

std::string_view BatchReader::line() {
  std::string_view text;
  reader_.next(text);
  return text;
}

float BatchReader::number() { return parseHostNumber(line()); }

bool BatchSource::next(std::int32_t /*index*/, SourceBar& bar) {
  if (!reader_.next(bar_)) {
    return false;
  }
  bar.typeCode = 0.0F;
  bar.visible = 1;
  bar.start = bar_.start;
  bar.end = bar_.end;
  bar.angle = bar_.angle;
  takeSection(bar_.sectionText, bar);
  return true;
}

}  // namespace exportifc
