// Answers the message boxes of this process, so that an unattended export never waits for a person.
#pragma once

#include <memory>
#include <string>

/// While it lives, presses OK (or Yes) in every message box of this process and prints
/// "caption: text" of each, in UTF-8, on standard output. Does nothing on Linux, where the module
/// prints its messages itself.
class BoxAnswerer {
 public:
  BoxAnswerer();
  BoxAnswerer(const BoxAnswerer&) = delete;
  BoxAnswerer& operator=(const BoxAnswerer&) = delete;
  ~BoxAnswerer();

 private:
  class Watch;
  std::unique_ptr<Watch> watch_;
};
