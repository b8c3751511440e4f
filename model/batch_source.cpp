#include "model/batch_source.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "model/host_number.h"

namespace exportifc {

namespace {

/// Records of batch bars live as long as the module: whoever was given one may keep it.
std::vector<std::unique_ptr<BarRecord>>& retainedRecords() {
  static std::vector<std::unique_ptr<BarRecord>> records;
  return records;
}

/// A zero-filled record with the section text, or null when the text, counted to its first NUL,
/// does not fit the field with its terminator.
const BarRecord* makeRecord(const std::string& sectionText) {
  const std::size_t length = std::strlen(sectionText.c_str());
  auto record = std::make_unique<BarRecord>();
  if (length >= sizeof(record->sectionName)) {
    return nullptr;
  }
  std::memcpy(record->sectionName, sectionText.c_str(), length);
  return retainedRecords().emplace_back(std::move(record)).get();
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
  const std::string& unit = line();
  if (unit == "m") {
    unitCode_ = 0;
  } else if (unit == "cm") {
    unitCode_ = 1;
  } else if (unit == "mm") {
    unitCode_ = 2;
  }
  barCount_ = parseHostInteger(line());
}

bool BatchReader::next(BatchBar& bar) {
  if (!reader_.next(line_)) {
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

const std::string& BatchReader::line() {
  reader_.next(line_);
  return line_;
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
  bar.record = makeRecord(bar_.sectionText);
  bar.dims = parseSectionDims(bar_.sectionText);
  return true;
}

}  // namespace exportifc
