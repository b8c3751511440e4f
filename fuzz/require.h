// What a fuzz target does when the code under test is wrong.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace exportifc::fuzz {

/// Ends the process with `finding`, on one line, so that the fuzzer keeps the input.
[[noreturn]] inline void fail(std::string finding) {
  std::replace_if(
      finding.begin(), finding.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  std::fprintf(stderr, "FINDING: %s\n", finding.c_str());
  std::abort();
}

inline void require(bool holds, const char* what) {
  if (!holds) {
    fail(what);
  }
}

}  // namespace exportifc::fuzz
