// The words that section texts begin with, from the table of families: inputs for tests that take
// whatever is there. What a family must become stands in the tests themselves.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace exportifc::test {

/// Every family word once, in the order of the table.
std::vector<std::string> familyWords();

/// Those of which the profiles can be written.
std::vector<std::string> writtenFamilyWords();

/// The first word of each shape: a family of a shape that is there already adds none.
std::vector<std::string> wordsOfShapes();

/// The words of all halves, "CA_1" and "CA_2".
std::vector<std::string> halfWords();

/// A section's family word as the name of a parametrised test, which holds letters, digits and
/// underscores alone: brackets are spelled.
std::string testNameOf(std::wstring_view section);

}  // namespace exportifc::test
