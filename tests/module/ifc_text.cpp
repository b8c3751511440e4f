#include "tests/module/ifc_text.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <regex>
#include <sstream>

namespace exportifc::module_tests {

namespace {

// Lower numbers belong to the owner and the preamble.
constexpr int firstGenerated = 5006;

bool isElement(const Entity& entity) {
  return entity.keyword == "IFCBEAM" || entity.keyword == "IFCCOLUMN" ||
         entity.keyword == "IFCMEMBER";
}

/// "IFCBEAM label description" of an element's line.
std::string describe(const Entity& element) {
  static const std::regex pattern(R"('[^']*', #\d+, '([^']*)', '([^']*)'.*)");
  std::smatch match;
  if (!std::regex_match(element.arguments, match, pattern)) {
    return element.keyword + " " + element.arguments;
  }
  return element.keyword + " " + match[1].str() + " " + match[2].str();
}

}  // namespace

IfcText::IfcText(const std::filesystem::path& path) : bytes(test::readFile(path)) {
  const std::string end = ");\r";
  std::istringstream lines(bytes);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t equals = line.find("= ");
    const std::size_t open = line.find('(');
    const bool entity = line.rfind('#', 0) == 0 && equals < open &&
                        line.size() > open + end.size() &&
                        line.compare(line.size() - end.size(), end.size(), end) == 0;
    if (entity && std::atoi(line.c_str() + 1) >= firstGenerated) {
      entities.push_back({.reference = line.substr(0, equals),
                          .keyword = line.substr(equals + 2, open - equals - 2),
                          .arguments = line.substr(open + 1, line.size() - end.size() - open - 1)});
    }
  }
}

bool IfcText::isComplete() const {
  const std::string trailer = "\r\n\r\nENDSEC;\r\nEND-ISO-10303-21;\r\n";
  return bytes.rfind("ISO-10303-21;\r\n", 0) == 0 && bytes.size() > trailer.size() &&
         bytes.compare(bytes.size() - trailer.size(), trailer.size(), trailer) == 0;
}

std::vector<Entity> IfcText::all(const std::string& keyword) const {
  std::vector<Entity> found;
  std::copy_if(entities.begin(), entities.end(), std::back_inserter(found),
               [&](const Entity& entity) { return entity.keyword == keyword; });
  return found;
}

std::vector<std::string> IfcText::elements() const {
  std::vector<std::string> found;
  for (const Entity& entity : entities) {
    if (isElement(entity)) {
      found.push_back(describe(entity));
    }
  }
  return found;
}

std::vector<std::string> IfcText::elementsIn(const std::string& group) const {
  std::vector<std::string> found;
  for (const Entity& relation : entities) {
    const bool relates = relation.keyword == "IFCRELAGGREGATES" ||
                         relation.keyword == "IFCRELCONTAINEDINSPATIALSTRUCTURE";
    if (!relates || relation.arguments.find("'" + group + "'") == std::string::npos) {
      continue;
    }
    // The members stand in the last parentheses.
    std::istringstream members(relation.arguments.substr(relation.arguments.rfind('(') + 1));
    for (std::string member; members >> member;) {
      const std::string reference = member.substr(0, member.find_first_of(",)"));
      for (const Entity& entity : entities) {
        if (entity.reference == reference && isElement(entity)) {
          found.push_back(describe(entity));
        }
      }
    }
  }
  return found;
}

}  // namespace exportifc::module_tests
