// The runtime's locale, which an export changes for the whole process.
#pragma once

#include <clocale>
#include <string>

namespace exportifc::test {

/// Puts the runtime's locale back at the end of a test.
class KeepRuntimeLocale {
 public:
  KeepRuntimeLocale() : name_(std::setlocale(LC_ALL, nullptr)) {}
  KeepRuntimeLocale(const KeepRuntimeLocale&) = delete;
  KeepRuntimeLocale& operator=(const KeepRuntimeLocale&) = delete;
  ~KeepRuntimeLocale() { std::setlocale(LC_ALL, name_.c_str()); }

 private:
  std::string name_;
};

}  // namespace exportifc::test
