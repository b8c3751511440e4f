// The model that the host wrote to a batch text file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/bar_source.h"
#include "model/line_reader.h"

namespace exportifc {

/// Reads the batch text file strictly forward: five header lines, then twelve lines a bar.
///
/// The format has no type, visibility or quarter turns: every bar has type 0, is visible and gets
/// none. A file that cannot be opened is a model without bars. Missing lines read as empty.
class BatchSource final : public BarSource {
 public:
  /// Opens the file at the narrow `path` and reads its header.
  explicit BatchSource(const std::string& path);

  std::int32_t unitCode() override { return unitCode_; }
  std::int32_t barCount() override { return barCount_; }
  bool next(std::int32_t index, SourceBar& bar) override;

 private:
  const std::string& line();
  float number();

  LineReader reader_;
  std::string line_;
  std::int32_t unitCode_ = -1;  // an unknown unit: no conversion
  std::int32_t barCount_ = 0;
};

/// The dimensions in a section text: after the family word, numbers separated by blanks or by "x".
/// Of a word with "x" only the pieces before an "x" count, read with a decimal comma only; other
/// words are read by `parseHostNumber`. At most ten are kept, the rest are 0.
SectionDims parseSectionDims(std::string_view sectionText);

}  // namespace exportifc
