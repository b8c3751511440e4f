// A model that cannot be taken in.
#pragma once

#include <stdexcept>
#include <utility>

#include "library/frame/problem.h"

namespace exportifc {

/// Ends the reading. The problem says what, the value and what is allowed. Where it has no place,
/// its value ends at `readTo`, up to which the text is sound.
class ModelError : public std::runtime_error {
 public:
  explicit ModelError(Problem problem, TextPlace readTo = {})
      : std::runtime_error(problem.message), problem_(std::move(problem)), readTo_(readTo) {}

  const Problem& problem() const { return problem_; }
  TextPlace readTo() const { return readTo_; }

 private:
  Problem problem_;
  TextPlace readTo_;
};

}  // namespace exportifc
