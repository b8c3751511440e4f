#include "library/formats/json_places.h"

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "library/formats/json_model.h"
#include "library/frame/pointer.h"
#include "tests/library/library_test.h"
#include "tests/support/random.h"

namespace exportifc {

namespace {

std::vector<TextPlace> places(const std::string& text, const std::vector<std::string>& pointers,
                              TextPlace end = {}) {
  std::stringbuf buffer(text);
  return placesOf(buffer, pointers, end);
}

TextPlace place(const std::string& text, const std::string& pointer, TextPlace end = {}) {
  return places(text, {pointer}, end).front();
}

using Place = TextPlace;

// ---- every value is found

/// Writes random JSON and knows where each value begins.
class RandomJson {
 public:
  explicit RandomJson(std::uint64_t seed) : random_(seed) {
    blanks();
    value("", 0);
    blanks();
  }

  std::string text;
  std::vector<std::string> pointers;
  std::vector<TextPlace> begins;

 private:
  void put(std::string_view piece) { text += piece; }

  void blanks() {
    constexpr std::string_view kinds[] = {"", "", "", " ", "\n", "\r\n", "\t", "  \n "};
    put(kinds[random_.integer(0, 7)]);
  }

  void value(const std::string& pointer, int depth) {
    pointers.push_back(pointer);
    begins.push_back(test::placeAt(text, text.size()));
    const auto kind = depth < 5 ? random_.integer(depth < 2 ? 4 : 0, 7) : random_.integer(0, 3);
    if (kind >= 6) {
      list(pointer, depth);
    } else if (kind >= 4) {
      object(pointer, depth);
    } else {
      constexpr std::string_view scalars[] = {"null",    "true", "-1.5e3", "0", "\"a]}\\\",:[{\"",
                                              "\"ç€😀\"", "\"\""};
      put(scalars[random_.integer(0, 6)]);
    }
  }

  void list(const std::string& pointer, int depth) {
    put("[");
    const auto count = random_.integer(0, random_.once(4) ? 12 : 3);
    for (std::int64_t i = 0; i < count; ++i) {
      put(i > 0 ? "," : "");
      blanks();
      value(pointer + "/" + std::to_string(i), depth + 1);
      blanks();
    }
    put("]");
  }

  void object(const std::string& pointer, int depth) {
    // As it stands in the text, and as the pointer has it.
    constexpr std::pair<std::string_view, std::string_view> names[] = {
        {"a", "a"},        {"", ""},   {"b/c", "b~1c"},       {"~", "~0"},
        {"ç 1", "ç 1"},    {"0", "0"}, {"\\u0041\\n", "A\n"}, {"\\\"]", "\"]"},
        {"a\\/b", "a~1b"},
    };
    put("{");
    bool isFirst = true;
    for (const auto& [name, piece] : names) {
      if (!random_.once(2)) {
        continue;
      }
      put(isFirst ? "" : ",");
      isFirst = false;
      blanks();
      put("\"");
      put(name);
      put("\"");
      blanks();
      put(":");
      blanks();
      value(pointer + "/" + std::string(piece), depth + 1);
      blanks();
    }
    put("}");
  }

  test::Random random_;
};

TEST(PlacesOf, FindsEveryValueOfARandomText) {
  for (int seed = 0; seed < test::rounds(400); ++seed) {
    const RandomJson json(static_cast<std::uint64_t>(seed));
    ASSERT_TRUE(nlohmann::json::accept(json.text)) << json.text;
    ASSERT_EQ(places(json.text, json.pointers), json.begins) << json.text;
    // One alone is found as with all others.
    test::Random random(static_cast<std::uint64_t>(seed));
    const auto one = static_cast<std::size_t>(
        random.integer(0, static_cast<std::int64_t>(json.pointers.size()) - 1));
    ASSERT_EQ(place(json.text, json.pointers[one]), json.begins[one]) << json.pointers[one];
  }
}

TEST(PlacesOf, CountsFromTheMarkOn) {
  EXPECT_EQ(place("\xEF\xBB\xBF{\"a\": 1}", "/a"), (Place{1, 7}));
  EXPECT_EQ(place("\xEF\xBB\xBF\n{\"a\": 1}", ""), (Place{2, 1}));
}

TEST(PlacesOf, TakesTheNearestAroundWhatIsNotThere) {
  const std::string text = "{\"a\": [1, {\"b\": 2}],\n \"c\": {}}";
  EXPECT_EQ(place(text, "/a/7"), (Place{1, 7}));
  EXPECT_EQ(place(text, "/a/1/x/y"), (Place{1, 11}));
  EXPECT_EQ(place(text, "/a/1/b/0"), (Place{1, 17}));
  EXPECT_EQ(place(text, "/x"), (Place{1, 1}));
  EXPECT_EQ(place(text, "/c/d"), (Place{2, 7}));
  EXPECT_EQ(place("", "/a"), (Place{}));
}

TEST(PlacesOf, OfAKeyThatStandsTwiceTakesTheLater) {
  EXPECT_EQ(place("{\"a\": 1, \"a\": 2}", "/a"), (Place{1, 15}));
  EXPECT_EQ(place("{\"a\": {\"b\": 1}, \"a\": {\"b\": 2}}", "/a/b"), (Place{1, 28}));
}

TEST(PlacesOf, OfAKeyWithoutItsValueTakesTheKey) {
  EXPECT_EQ(place("{\"a\": 1, \"bc\"", "/bc"), (Place{1, 10}));
  EXPECT_EQ(place("{\"a\": 1, \"bc\":", "/bc"), (Place{1, 10}));
}

TEST(PlacesOf, TheTextCountsUpToItsEndOnly) {
  const std::string text = "{\"a\": 1,\n \"b\": 2,\n \"c\": 3}";
  EXPECT_EQ(place(text, "/b", {.line = 2, .column = 7}), (Place{2, 7}));
  EXPECT_EQ(place(text, "/b", {.line = 2, .column = 6}), (Place{2, 2}));  // its key
  EXPECT_EQ(place(text, "/b", {.line = 1, .column = 0}), (Place{1, 1}));
  EXPECT_EQ(place(text, "/c", {.line = 2, .column = 0}), (Place{1, 1}));
  EXPECT_EQ(place(text, "/c", {.line = 3, .column = 1}), (Place{1, 1}));
  EXPECT_EQ(place(text, "/b", {.line = 3, .column = 0}), (Place{2, 7}));
}

TEST(PlacesOf, StopsWhereTheTextIsNoJson) {
  EXPECT_EQ(place("{\"a\": 1, b: 2, \"c\": 3}", "/c"), (Place{1, 1}));
  EXPECT_EQ(place("{\"a\": \"open, \"b\": 2}", "/b"), (Place{1, 1}));
  EXPECT_EQ(place("{\"a\\", "/a"), (Place{1, 1}));
  EXPECT_EQ(place("{\"a", "/a"), (Place{1, 1}));
  EXPECT_EQ(place("] [1]", "/0"), (Place{}));
  EXPECT_EQ(place("{\"\\u12\": 1}", ""), (Place{1, 1}));
}

TEST(PlacesOf, ARunOfPointersGivesARunOfPlaces) {
  EXPECT_EQ(places("[1, 2]", {"/1", "", "/0", "/1", "/x"}),
            (std::vector<Place>{{1, 5}, {1, 1}, {1, 2}, {1, 5}, {1, 1}}));
  EXPECT_EQ(places("[1, 2]", {}), std::vector<Place>());
}

// ---- problems

std::vector<Problem> located(const std::string& text, std::vector<Problem> problems,
                             TextPlace readTo = {}) {
  std::stringbuf buffer(text);
  locateInJson(&buffer, problems, readTo);
  return problems;
}

TEST(LocateInJson, FillsInThePlacesOfPointers) {
  const auto problems = located("{\"bars\": [{\"type\": 12}]}",
                                {{.pointer = "/bars/0/type"},
                                 {.pointer = "/bars/0", .place = {.line = 9, .column = 9}},
                                 {.message = "of the model as a whole"}});
  EXPECT_EQ(problems[0].place, (Place{1, 20}));
  EXPECT_EQ(problems[1].place, (Place{9, 9}));  // it knows better
  EXPECT_EQ(problems[2].place, (Place{}));
  EXPECT_EQ(problems[0].pointer, "/bars/0/type");
}

TEST(LocateInJson, OfAReadingThatEndedTheModelHasAPlaceToo) {
  const auto problems = located("\n {\"unit\": \"m\"} ", {{.message = "a key is missing"}},
                                {.line = 2, .column = 14});
  EXPECT_EQ(problems[0].place, (Place{2, 2}));
}

TEST(LocateInJson, WithoutTheTextTheLineOfTheEndMustDo) {
  std::vector<Problem> problems = {{.pointer = "/bars"}, {.place = {.line = 2, .column = 3}}};
  locateInJson(nullptr, problems, {.line = 7, .column = 5});
  EXPECT_EQ(problems[0].place, (Place{7, 0}));
  EXPECT_EQ(problems[1].place, (Place{2, 3}));
  problems = {{.pointer = "/bars"}};
  locateInJson(nullptr, problems, {});
  EXPECT_EQ(problems[0].place, (Place{}));
}

}  // namespace
}  // namespace exportifc
