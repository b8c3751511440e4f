// Reads the model that the host wrote to a batch text file.
#pragma once

#include <array>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

#include "model/bar_source.h"
#include "model/length_unit.h"
#include "model/line_reader.h"

namespace exportifc {

/// What the twelve lines of a bar say of it.
struct BatchBar {
  std::array<float, 3> start{};
  std::array<float, 3> end{};
  float angle = 0.0F;
  std::string sectionText;
};

/// Reads the batch text file strictly forward: five header lines, then twelve lines a bar. Missing
/// lines read as empty.
class BatchReader {
 public:
  /// Opens the file at the narrow `path` and reads its header. A file that cannot be opened is a
  /// model without bars.
  explicit BatchReader(const std::string& path) : reader_(path) { readHeader(); }
  /// Reads `text`, opened in binary mode, which must outlive the reader.
  explicit BatchReader(std::istream& text) : reader_(text) { readHeader(); }

  bool isOpen() const { return reader_.isOpen(); }
  const std::string& title() const { return title_; }
  std::int32_t unitCode() const { return unitCode_; }
  std::int32_t barCount() const { return barCount_; }

  /// False, with `bar` left alone, when not even the first line of a bar is left.
  bool next(BatchBar& bar);

  /// Closes the file, whatever the system says to that; no bar may be read afterwards.
  void close() { reader_.close(); }

 private:
  void readHeader();
  std::string_view line();
  float number();

  LineReader reader_;
  std::string title_;
  std::int32_t unitCode_ = unknownLengthUnit;
  std::int32_t barCount_ = 0;
};

/// The bars of a batch text file.
///
/// The format has no type, visibility or quarter turns: every bar has type 0, is visible and gets
/// none.
class BatchSource final : public BarSource {
 public:
  explicit BatchSource(const std::string& path) : reader_(path) {}

  std::int32_t unitCode() override { return reader_.unitCode(); }
  std::int32_t barCount() override { return reader_.barCount(); }
  bool next(std::int32_t index, SourceBar& bar) override;
  void close() override { reader_.close(); }

 private:
  BatchReader reader_;
  BatchBar bar_;
};

/// The dimensions in a section text: after the family word, numbers separated by blanks or by "x".
/// Of a word with "x" only the pieces before an "x" count, read with a decimal comma only; other
/// words are read by `parseHostNumber`. At most ten are kept, the rest are 0.
SectionDims parseSectionDims(std::string_view sectionText);

}  // namespace exportifc
