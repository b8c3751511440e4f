// What the lines of a batch text file say that the reading itself passes over.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/frame/problem.h"

namespace exportifc {

/// Looks at the lines that the reader takes its values from. The reader takes what is no number as
/// 0 and knows a bar by its twelve lines alone; here that becomes a problem with line and value.
class BatchLines {
 public:
  /// The next piece of the file, in order; pieces end anywhere.
  void feed(std::string_view piece);
  /// The file has ended.
  void finish();

  const std::vector<Problem>& problems() const { return problems_; }
  /// Bars before the first that lacks lines or has too many; a large number when none does.
  std::size_t soundBars() const { return soundBars_; }
  /// The line that holds a unit, though another should; 0 when none near it does.
  std::int64_t strayUnitLine() const { return strayUnitLine_; }
  /// Bars that the lines behind the header make, the last perhaps without all its lines.
  std::int64_t barsPresent() const {
    return (contentLines_ - headerLines + barLines - 1) / barLines;
  }

 private:
  static constexpr std::int64_t headerLines = 5;
  static constexpr std::int64_t barLines = 12;

  void line(std::string_view text);
  void headerLine(std::string_view text);
  void checkUnit(std::string_view text);
  void checkBar();
  bool reportShift();
  void checkLastBar();
  void add(Problem problem);
  void addValue(std::int64_t barLine, const std::string& text);

  std::string pieces_;  // of a line that goes on in the next piece
  bool ended_ = false;  // by the byte that ends a text file
  std::int64_t lines_ = 0;
  std::int64_t contentLines_ = headerLines;  // up to the last that is not empty
  std::int64_t strayUnitLine_ = 0;
  std::int64_t announced_ = 0;
  std::array<std::string, barLines> bar_;  // the lines of the bar at hand
  bool shifted_ = false;                   // the lines no longer stand where they should
  std::size_t soundBars_ = static_cast<std::size_t>(-1);
  std::int64_t moreValues_ = 0;  // not said one by one
  std::vector<Problem> problems_;
};

}  // namespace exportifc
