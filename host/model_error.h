// What a model file says wrongly.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace exportifc::host {

/// Where in a text something stands; 0 when it is not known.
struct TextPlace {
  std::int64_t line = 0;
  std::int64_t column = 0;
};

/// A model that cannot be taken in. The message says what, the value and what is allowed.
class ModelError : public std::runtime_error {
 public:
  ModelError(TextPlace place, std::string pointer, const std::string& message)
      : std::runtime_error(message), place_(place), pointer_(std::move(pointer)) {}

  TextPlace place() const { return place_; }
  /// JSON pointer of the value, empty for the whole text.
  const std::string& pointer() const { return pointer_; }

 private:
  TextPlace place_;
  std::string pointer_;
};

}  // namespace exportifc::host
