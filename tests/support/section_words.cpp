#include "tests/support/section_words.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "profiles/section_family.h"
#include "profiles/section_name.h"

namespace exportifc::test {

namespace {

std::string narrow(std::wstring_view ascii) {
  std::string text;
  std::transform(ascii.begin(), ascii.end(), std::back_inserter(text),
                 [](wchar_t unit) { return static_cast<char>(unit); });
  return text;
}

/// Those rows of the table of which no earlier one is the same to `same`.
template <class Same>
std::vector<SectionFamily> firstOfEach(const Same& same) {
  std::vector<SectionFamily> found;
  for (const SectionFamily& family : sectionFamilies()) {
    if (std::none_of(found.begin(), found.end(),
                     [&](const SectionFamily& earlier) { return same(earlier, family); })) {
      found.push_back(family);
    }
  }
  return found;
}

bool isOneWord(const SectionFamily& a, const SectionFamily& b) { return a.word == b.word; }

bool isOneShape(const SectionFamily& a, const SectionFamily& b) {
  return a.profiles == b.profiles && a.arguments.data() == b.arguments.data();
}

std::vector<std::string> wordsOf(const std::vector<SectionFamily>& families) {
  std::vector<std::string> words;
  words.reserve(families.size());
  for (const SectionFamily& family : families) {
    words.push_back(narrow(family.word));
  }
  return words;
}

}  // namespace

std::vector<std::string> familyWords() { return wordsOf(firstOfEach(isOneWord)); }

std::vector<std::string> writtenFamilyWords() {
  std::vector<SectionFamily> families = firstOfEach(isOneWord);
  std::erase_if(families,
                [](const SectionFamily& family) { return !family.profiles[0].has_value(); });
  return wordsOf(families);
}

std::vector<std::string> wordsOfShapes() { return wordsOf(firstOfEach(isOneShape)); }

std::vector<std::string> halfWords() {
  std::vector<std::string> words;
  for (const SectionFamily& family : firstOfEach(isOneWord)) {
    if (family.isBuiltUp) {
      words.push_back(narrow(family.word) + "_1");
      words.push_back(narrow(family.word) + "_2");
    }
  }
  return words;
}

std::string testNameOf(std::wstring_view section) {
  std::string name;
  for (const char character : narrow(profileFamilyOf(section))) {
    switch (character) {
      case '[': name += "Left"; break;
      case ']': name += "Right"; break;
      case '<': name += "Less"; break;
      case '>': name += "Greater"; break;
      default: name += character; break;
    }
  }
  return name;
}

}  // namespace exportifc::test
