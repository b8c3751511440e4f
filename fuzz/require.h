// What a fuzz target does when the code under test is wrong.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace exportifc::fuzz {

/// Ends the process with `finding`, so that the fuzzer keeps the input.
[[noreturn]] inline void fail(const std::string& finding) {
  std::fprintf(stderr, "FINDING: %s\n", finding.c_str());
  std::abort();
}

inline void require(bool holds, const char* what) {
  if (!holds) {
    fail(what);
  }
}

}  // namespace exportifc::fuzz
