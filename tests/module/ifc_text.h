// Just enough reading of an exchange file to see what an export wrote.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/files.h"

namespace exportifc::module_tests {

/// One generated line, "#5006= KEYWORD(arguments);".
struct Entity {
  std::string reference;  // "#5006"
  std::string keyword;
  std::string arguments;
};

/// The generated entities of a file, in order; the lines of the fixed preamble are left out.
class IfcText {
 public:
  explicit IfcText(const std::filesystem::path& path);

  std::string bytes;
  std::vector<Entity> entities;

  /// Ends with the trailer.
  [[nodiscard]] bool isComplete() const;
  /// Entities with this keyword.
  [[nodiscard]] std::vector<Entity> all(const std::string& keyword) const;
  /// Elements (IFCBEAM, IFCCOLUMN or IFCMEMBER) as "KEYWORD label description".
  [[nodiscard]] std::vector<std::string> elements() const;
  /// The same, of the members of the assembly or of the storey that `group` names.
  [[nodiscard]] std::vector<std::string> elementsIn(const std::string& group) const;
};

}  // namespace exportifc::module_tests
