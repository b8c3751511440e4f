// A text that is read where it lies.
#pragma once

#include <streambuf>
#include <string>

namespace exportifc::api {

class HeldText final : public std::streambuf {
 public:
  explicit HeldText(std::string& bytes) {
    setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
  }
};

}  // namespace exportifc::api
