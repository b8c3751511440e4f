#include "library/formats/json_faults.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "library/formats/json_model.h"
#include "library/frame/model_error.h"
#include "tests/library/library_test.h"
#include "tests/support/random.h"

namespace exportifc {
namespace {

using test::InLanguage;
using test::placeAt;

// ---- the name of a fault

/// A whole file, with "@" before the fault, and what is said of it.
struct FaultCase {
  std::string text;
  std::string message;
  std::string value{};
  std::string suggestion{};
};

void PrintTo(const FaultCase& row, std::ostream* stream) { *stream << row.text; }

/// A file that the parser has read up to there.
JsonSurroundings textUpTo(std::size_t stop, const std::string& text, bool ended) {
  JsonSurroundings around;
  around.text = text;
  around.start = {.line = 1, .column = 1};
  around.stop = stop;
  around.ended = ended;
  return around;
}

/// The fault of a text that was read to its end.
std::optional<Problem> faultOf(const std::string& text) {
  return nameFault(textUpTo(text.size(), text, true));
}

class JsonFaults : public testing::TestWithParam<FaultCase> {};

TEST_P(JsonFaults, HaveAName) {
  std::string text = GetParam().text;
  const std::size_t mark = text.find('@');
  ASSERT_NE(mark, std::string::npos);
  text.erase(mark, 1);
  const std::optional<Problem> fault = faultOf(text);
  ASSERT_TRUE(fault.has_value());
  EXPECT_EQ(fault->message, GetParam().message);
  EXPECT_EQ(fault->place, placeAt(text, mark));
  EXPECT_EQ(fault->value, GetParam().value);
  EXPECT_EQ(fault->suggestion, GetParam().suggestion);
  EXPECT_STREQ(fault->code, "not-json");
}

/// What the parser stops at, and in the whole file.
TEST_P(JsonFaults, AreFoundByTheReader) {
  std::string text = GetParam().text;
  const std::size_t mark = text.find('@');
  text.erase(mark, 1);
  std::stringbuf buffer(text);
  try {
    readJsonModel(buffer);
    ADD_FAILURE() << "it is read";
  } catch (const ModelError& error) {
    EXPECT_EQ(error.what(), GetParam().message);
    EXPECT_EQ(error.problem().place, placeAt(text, mark));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Commas, JsonFaults,
    testing::ValuesIn(std::vector<FaultCase>{
        {"{\"unit\": \"m\"@,}", "the comma before \"}\" is one too many", ","},
        {"{\"nodes\": [[0, 0, 0]@,\n ]}", "the comma before \"]\" is one too many", ","},
        {"{\"nodes\": [[0, 0, 0 @, ]]}", "the comma before \"]\" is one too many", ","},
        {"{\"unit\": \"m\",@, \"nodes\": []}",
         "this comma is one too many, or a value is missing before it", ","},
        {"{@,\"unit\": \"m\"}", "this comma is one too many, or a value is missing before it", ","},
        {"{\"nodes\": [@, 1]}", "this comma is one too many, or a value is missing before it", ","},
        {"{\"unit\": \"m\"@ \"nodes\": []}", "a comma is missing here", "", ","},
        {"{\"unit\": \"m\"@\n \"nodes\": []}", "a comma is missing here", "", ","},
        {"{\"nodes\": [[0, 0, 0]@ [1, 1, 1]]}", "a comma is missing here", "", ","},
        {"{\"nodes\": [[0@ 0 0]]}", "a comma is missing here", "", ","},
        {"{\"nodes\": []@ \"bars\": []}", "a comma is missing here", "", ","},
        {"{\"bars\": [{\"visible\": true@ \"angle\": 1}]}", "a comma is missing here", "", ","},
        {"{\"bars\": [{\"angle\": 0@,5}]}", "a decimal comma? Decimals stand behind a point: 1.5",
         ",5", ".5"},
        {"{\"bars\": [{\"angle\": 0@,5, \"type\": 1}]}",
         "a decimal comma? Decimals stand behind a point: 1.5", ",5", ".5"},
    }));

INSTANTIATE_TEST_SUITE_P(
    KeysAndColons, JsonFaults,
    testing::ValuesIn(std::vector<FaultCase>{
        {"{\"unit\"@ \"m\"}", "a colon is missing between key and value"},
        {"{\"nodes\"@ [1]}", "a colon is missing between key and value"},
        {"{\"unit\":@}", "a value is missing here"},
        {"{\"unit\": @, \"nodes\": []}", "a value is missing here"},
        {"{\"unit\"@}", "a value is missing here"},
        {"{\"unit\"@, \"nodes\": []}", "a value is missing here"},
        {"{@5: 1}", "a key in double quotes should stand here"},
        {"{@{}}", "a key in double quotes should stand here"},
        {"{@[1]}", "a key in double quotes should stand here"},
        {"{\"unit\": \"m\", @true}", "a key in double quotes should stand here"},
        {"{@unit: \"m\"}", "keys stand in double quotes: \"unit\"", "unit", "\"unit\""},
        {"{\"unit\": \"m\", @$schema : 1}", "keys stand in double quotes: \"$schema\"", "$schema",
         "\"$schema\""},
        {"{@true: 1}", "keys stand in double quotes: \"true\"", "true", "\"true\""},
        {"@, {}", "a JSON model begins with {"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Brackets, JsonFaults,
    testing::ValuesIn(std::vector<FaultCase>{
        {"{@", "the text ends too early: \"}\" is missing, the \"{\" of 1:1 is still open", "",
         "}"},
        {"\n [@", "the text ends too early: \"]\" is missing, the \"[\" of 2:2 is still open", "",
         "]"},
        {"{\"nodes\": [[0, 0, 0],\n@",
         "the text ends too early: \"]\" is missing, the \"[\" of 1:11 is still open", "", "]"},
        {"{\"nodes\": [[0, 0, 0], @\"sections\": {}}",
         "\"]\" is missing before this: the \"[\" of 1:11 is still open", "", "]"},
        {"{\"nodes\": [[0, 0, 0]\n @\"sections\": {}}",
         "\"]\" is missing before this: the \"[\" of 1:11 is still open", "", "]"},
        {"{\"nodes\": [[0, 0, 0, @[1, 1, 1]]}",
         "\"]\" is missing before this: the \"[\" of 1:12 is still open", "", "]"},
        {"{\"nodes\": [[0, 0, 0]@}, \"sections\": {}}",
         "\"]\" is missing before this: the \"[\" of 1:11 is still open", "", "]"},
        {"{\"sections\": {\"a\": {\"text\": \"W\"@]}}",
         "\"}\" is missing before this: the \"{\" of 1:20 is still open", "", "}"},
        {"{\"sections\": {\"a\": {\"text\": \"W\"}, @\"bars\": []}",
         "\"}\" is missing before this: the \"{\" of 1:14 is still open", "", "}"},
        {"{\"bars\": [{\"nodes\": [0, 1], @{\"nodes\": [1, 2]}]}",
         "\"}\" is missing before this: the \"{\" of 1:11 is still open", "", "}"},
        {"{\"bars\": [{\"nodes\": [0, 1, @\"section\": \"a\"}]}",
         "\"]\" is missing before this: the \"[\" of 1:21 is still open", "", "]"},
        {"{\"bars\": [{\"nodes\": [0, @{\"nodes\": [1, 2]}]}",
         "\"]\" is missing before this: the \"[\" of 1:21 is still open", "", "]"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Quotes, JsonFaults,
    testing::ValuesIn(std::vector<FaultCase>{
        {"{@'unit': \"m\"}", "texts stand in double quotes: \"unit\"", "'unit'", "\"unit\""},
        {"{\"unit\": @'m'}", "texts stand in double quotes: \"m\"", "'m'", "\"m\""},
        {"{\"unit\": @'m\n", "texts stand in double quotes: \"m\"", "'m'", "\"m\""},
        {"{\"unit\": @'m", "texts stand in double quotes: \"m\"", "'m'", "\"m\""},
        {"{\"unit\": @m}", "m: a text stands in double quotes", "m", "\"m\""},
        {"{\"title\": @_a-b\n}", "_a-b: a text stands in double quotes", "_a-b", "\"_a-b\""},
        {"{\"title\": @ção}", "ção: a text stands in double quotes", "ção", "\"ção\""},
        {"@hello", "hello: a text stands in double quotes", "hello", "\"hello\""},
        {"{@“unit”: \"m\"}", "“ is a typographic quote; write a plain \"", "“", "\""},
        {"{\"unit\": @”m\"}", "” is a typographic quote; write a plain \"", "”", "\""},
        {"{\"unit\": @„m“}", "„ is a typographic quote; write a plain \"", "„", "\""},
        {"{\"unit\": @‘m’}", "‘ is a typographic quote; write a plain \"", "‘", "\""},
        {"{\"unit\": @’m’}", "’ is a typographic quote; write a plain \"", "’", "\""},
        {"{\"unit\": @«m»}", "« is a typographic quote; write a plain \"", "«", "\""},
        {"{\"unit\": @»m«}", "» is a typographic quote; write a plain \"", "»", "\""},
        {"{\"unit\": @\"m",
         "the text that begins here is not closed by \" on its line; a quote inside of it is \\\""},
        {"{\"unit\": @\"m\n\"}",
         "the text that begins here is not closed by \" on its line; a quote inside of it is \\\""},
        {"{\"unit\": @\"m\r\n\"}",
         "the text that begins here is not closed by \" on its line; a quote inside of it is \\\""},
        {"{\"title\": @\"a \"big\" hall\"}",
         "the text that begins here is not closed by \" on its line; a quote inside of it is \\\""},
    }));

INSTANTIATE_TEST_SUITE_P(
    Characters, JsonFaults,
    testing::ValuesIn(std::vector<FaultCase>{
        {"{\"title\": \"a@\\q\"}", "a backslash alone in a text; write \\\\", "\\", "\\\\"},
        {"{\"title\": \"a@\\u12\"}", "a backslash alone in a text; write \\\\", "\\", "\\\\"},
        {"{\"title\": \"a@\\u12G4\"}", "a backslash alone in a text; write \\\\", "\\", "\\\\"},
        {"{\"title\": \"@\\U0041\"}", "a backslash alone in a text; write \\\\", "\\", "\\\\"},
        {"{\"title\": \"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u00e7\\uABcd@\\x\"}",
         "a backslash alone in a text; write \\\\", "\\", "\\\\"},
        {"{\"title\": \"a@\tb\"}", "the control character U+0009 in a text; remove it or write \\t",
         "U+0009", "\\t"},
        {"{\"title\": \"a@\x1F\"}",
         "the control character U+001F in a text; remove it or write \\u001F", "U+001F", "\\u001F"},
        {"{\"title\": \"ç€😀@\xE7\"}", "the byte 0xE7 is not UTF-8; save the file as UTF-8", "0xE7"},
        {"{\"title\": \"@\x80\"}", "the byte 0x80 is not UTF-8; save the file as UTF-8", "0x80"},
        {"{\"title\": a@\xE7}", "the byte 0xE7 is not UTF-8; save the file as UTF-8", "0xE7"},
        {"{\"title\": \"@\xE2\x82", "the byte 0xE2 is not UTF-8; save the file as UTF-8", "0xE2"},
        {"{\"unit\": \"m\", @// comment", "// begins a comment; JSON has none, remove it", "//"},
        {"{@/* comment */}", "/* begins a comment; JSON has none, remove it", "/*"},
        {"@# comment", "# begins a comment; JSON has none, remove it", "#"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Words, JsonFaults,
    testing::ValuesIn(std::vector<FaultCase>{
        {"{\"title\": @True}", "True is not JSON; write true", "True", "true"},
        {"{\"title\": @FALSE}", "FALSE is not JSON; write false", "FALSE", "false"},
        {"{\"title\": @Null}", "Null is not JSON; write null", "Null", "null"},
        {"{\"title\": @None}", "None is not JSON; write null", "None", "null"},
        {"{\"title\": @nil}", "nil is not JSON; write null", "nil", "null"},
        {"{\"title\": @undefined}", "undefined is not JSON; write null", "undefined", "null"},
        {"{\"title\": @yes}", "yes is not JSON; write true", "yes", "true"},
        {"{\"title\": @no}", "no is not JSON; write false", "no", "false"},
        {"{\"title\": @sim}", "sim is not JSON; write true", "sim", "true"},
        {"{\"title\": @não}", "não is not JSON; write false", "não", "false"},
        {"{\"title\": @Verdadeiro}", "Verdadeiro is not JSON; write true", "Verdadeiro", "true"},
        {"{\"title\": @falso}", "falso is not JSON; write false", "falso", "false"},
    }));

const std::string noNumber =
    " is not a number; allowed: digits with a point and an exponent, as -1.5 or 2e3";

INSTANTIATE_TEST_SUITE_P(
    Numbers, JsonFaults,
    testing::ValuesIn(std::vector<FaultCase>{
        {"{\"nodes\": [[@+5, 0, 0]]}", "+5 is not JSON; write 5", "+5", "5"},
        {"{\"nodes\": [[@.5, 0, 0]]}", ".5 is not JSON; write 0.5", ".5", "0.5"},
        {"{\"nodes\": [[@-.5, 0, 0]]}", "-.5 is not JSON; write -0.5", "-.5", "-0.5"},
        {"{\"nodes\": [[@+.5, 0, 0]]}", "+.5 is not JSON; write 0.5", "+.5", "0.5"},
        {"{\"nodes\": [[1.5, 2e3, -0.5E-2, 0, @5.]]}", "5. is not JSON; write 5.0", "5.", "5.0"},
        {"{\"nodes\": [[@5.e3, 0, 0]]}", "5.e3 is not JSON; write 5.0e3", "5.e3", "5.0e3"},
        {"{\"nodes\": [[@007, 0, 0]]}", "007 is not JSON; write 7", "007", "7"},
        {"{\"nodes\": [[@00, 0, 0]]}", "00 is not JSON; write 0", "00", "0"},
        {"{\"nodes\": [[@-00.50, 0, 0]]}", "-00.50 is not JSON; write -0.50", "-00.50", "-0.50"},
        {"{\"nodes\": [[@NaN, 0, 0]]}",
         "NaN is no number that JSON has; write a finite one, as 1.5", "NaN"},
        {"{\"nodes\": [[@-Infinity, 0, 0]]}",
         "-Infinity is no number that JSON has; write a finite one, as 1.5", "-Infinity"},
        {"{\"nodes\": [[@+inf, 0, 0]]}",
         "+inf is no number that JSON has; write a finite one, as 1.5", "+inf"},
        {"{\"nodes\": [[@0x10, 0, 0]]}", "0x10" + noNumber, "0x10"},
        {"{\"nodes\": [[@1.2.3, 0, 0]]}", "1.2.3" + noNumber, "1.2.3"},
        {"{\"nodes\": [[@1e, 0, 0]]}", "1e" + noNumber, "1e"},
        {"{\"nodes\": [[@1e+, 0, 0]]}", "1e+" + noNumber, "1e+"},
        {"{\"nodes\": [[@-, 0, 0]]}", "-" + noNumber, "-"},
        {"{\"nodes\": [[@5m, 0, 0]]}", "5m" + noNumber, "5m"},
        {"{\"nodes\": [[@-none, 0, 0]]}", "-none" + noNumber, "-none"},
    }));

const std::string sound = R"({"unit": "m", "nodes": [], "sections": {}, "bars": []})";

INSTANTIATE_TEST_SUITE_P(BehindTheEnd, JsonFaults,
                         testing::ValuesIn(std::vector<FaultCase>{
                             {sound + "\n@{", "a second model begins here; a file holds one"},
                             {sound + "@[]", "a second model begins here; a file holds one"},
                             {sound + " @}", "this bracket is one too many: the model has ended"},
                             {sound + " @]", "this bracket is one too many: the model has ended"},
                             {sound + " @x", "text behind the end of the model; remove it"},
                             {sound + " @, {}", "text behind the end of the model; remove it"},
                             {sound + " @\"a", "text behind the end of the model; remove it"},
                         }));

TEST(NameFault, OfASoundTextThereIsNone) {
  for (const std::string& text :
       {sound, std::string("[1, -0.5e3, {\"a\": [true, null, \"\\u00e7\"]}]"), std::string("[]"),
        std::string("  "), std::string("{\"a\": {\"b\": [1, 2]}}")}) {
    EXPECT_FALSE(faultOf(text).has_value()) << text;
  }
}

TEST(NameFault, SomeHaveNone) {
  for (const std::string text : {"}", "{:1}", "{\"a\":: 1}", "{\"a\": /}", "{\"a\": /", "[*]"}) {
    EXPECT_FALSE(faultOf(text).has_value()) << text;
  }
}

TEST(NameFault, LooksNoFurtherThanTheParser) {
  const std::string text = "{\"a\": 1 #";
  EXPECT_TRUE(nameFault(textUpTo(8, text, false)).has_value());
  EXPECT_FALSE(nameFault(textUpTo(7, text, false)).has_value());
  // What is open at the end of a text that goes on is no fault yet.
  EXPECT_FALSE(nameFault(textUpTo(8, "{\"a\": [1", false)).has_value());
  EXPECT_FALSE(nameFault(textUpTo(9, "{\"a\": \"bc", false)).has_value());
}

TEST(NameFault, KnowsWhatStandsBeforeTheText) {
  // Behind "{" of 3:4 and "[" of 5:6.
  JsonSurroundings around{
      .text = " 1, 2}",
      .start = {.line = 5, .column = 7},
      .stop = 6,
      .begun = true,
      .open = {{.character = '{', .place = {3, 4}}, {.character = '[', .place = {5, 6}}}};
  auto fault = nameFault(around);
  ASSERT_TRUE(fault.has_value());
  EXPECT_EQ(fault->message, "\"]\" is missing before this: the \"[\" of 5:6 is still open");
  EXPECT_EQ(fault->place, (TextPlace{5, 12}));
  // Behind a closing one a comma is due.
  around.behindClosing = true;
  fault = nameFault(around);
  ASSERT_TRUE(fault.has_value());
  EXPECT_EQ(fault->message, "a comma is missing here");
}

TEST(NameFault, SpeaksTheLanguageOfTheUser) {
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(faultOf("{\"a\": 1,}")->message, "a vírgula antes de \"}\" está sobrando");
}

// ---- wherever it stands

/// A model over several pieces of the reader, with lines of different lengths.
std::string longModel() {
  std::string text = "{\"unit\": \"mm\", \"title\": \"Galpão ç€😀\",\n \"sections\": {\n";
  for (int i = 0; i < 300; ++i) {
    text += (i == 0 ? "" : ",\n") + std::string("  \"ção ") + std::to_string(i) +
            "\": {\"text\": \"W " + std::to_string(100 + i) + " 100 8 6\", \"dims\": [1, 2, 3]}";
  }
  text += "},\n \"nodes\": [";
  for (int i = 0; i < 1200; ++i) {
    text += (i == 0       ? ""
             : i % 7 == 0 ? ",\n"
                          : ", ") +
            std::string("[") + std::to_string(i) + ", 0.5, -1e3]";
  }
  text += "],\n \"bars\": [";
  for (int i = 0; i + 1 < 700; ++i) {
    text += (i == 0       ? ""
             : i % 3 == 0 ? ",\r\n"
                          : ", ") +
            std::string("{\"nodes\": [") + std::to_string(i) + ", " + std::to_string(i + 1) +
            "], \"section\": \"ção " + std::to_string(i % 300) + "\"}";
  }
  return text + "]}\n";
}

/// Bytes before which a token begins or ends.
std::vector<std::size_t> tokensOf(const std::string& text) {
  std::vector<std::size_t> begins;
  bool inText = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (!inText && (std::string_view("{}[],:\"").find(c) != std::string_view::npos)) {
      begins.push_back(i);
    }
    inText = inText != (c == '"');
  }
  return begins;
}

TEST(JsonText, AFaultIsFoundWhereverItStands) {
  const std::string text = longModel();
  ASSERT_GT(text.size(), 4U * 16384U);
  std::stringbuf whole(text);
  ASSERT_EQ(readJsonModel(whole).bars.size(), 699U);
  const auto tokens = tokensOf(text);
  test::Random random(7);
  for (int round = 0; round < test::rounds(600); ++round) {
    const std::size_t at = random.pick(tokens);
    std::string faulty = text;
    faulty.insert(at, " # ");
    std::stringbuf buffer(faulty);
    try {
      readJsonModel(buffer);
      ADD_FAILURE() << at;
    } catch (const ModelError& error) {
      ASSERT_EQ(error.problem().message, "# begins a comment; JSON has none, remove it") << at;
      ASSERT_EQ(error.problem().place, placeAt(faulty, at + 1)) << at;
    }
  }
}

TEST(JsonText, AMissingBracketIsFoundWhereverItStands) {
  const std::string text = longModel();
  std::vector<std::size_t> ends;  // of nodes and of the two ends of bars
  const std::size_t nodes = text.find("\"nodes\": [");
  for (std::size_t at = nodes; (at = text.find_first_of("]}", at)) != std::string::npos; ++at) {
    if (at + 20 < text.size() && (text[at + 1] == ',')) {
      ends.push_back(at);
    }
  }
  test::Random random(8);
  for (int round = 0; round < test::rounds(300); ++round) {
    const std::size_t at = random.pick(ends);
    std::string faulty = text;
    faulty.erase(at, 1);
    const std::size_t opened = text.rfind(text[at] == ']' ? '[' : '{', at);
    const TextPlace place = placeAt(faulty, opened);
    std::stringbuf buffer(faulty);
    try {
      readJsonModel(buffer);
      ADD_FAILURE() << at;
    } catch (const ModelError& error) {
      const std::string message = error.problem().message;
      ASSERT_NE(message.find("is missing before this"), std::string::npos) << at << ": " << message;
      ASSERT_NE(message.find(" of " + std::to_string(place.line) + ":" +
                             std::to_string(place.column) + " "),
                std::string::npos)
          << at << ": " << message;
    }
  }
}

TEST(JsonText, FarFromAnyBracketTheParserMustDo) {
  const std::string text = "{\"title\": \"" + std::string(40000, 'x') + "\"\n , #}";
  std::stringbuf buffer(text);
  try {
    readJsonModel(buffer);
    ADD_FAILURE();
  } catch (const ModelError& error) {
    EXPECT_EQ(error.problem().message, "not valid JSON: unexpected #");
    EXPECT_EQ(error.problem().place, (TextPlace{2, 4}));
    EXPECT_STREQ(error.problem().code, "not-json");
  }
}

TEST(JsonText, ATextThatEndsFarFromAnyBracketEndsTooEarly) {
  const std::string text = "{\"title\": \"" + std::string(40000, 'x');
  std::stringbuf buffer(text);
  try {
    readJsonModel(buffer);
    ADD_FAILURE();
  } catch (const ModelError& error) {
    EXPECT_EQ(error.problem().message, "not valid JSON: the text ends too early");
  }
}

TEST(JsonText, OuterBracketsAreKnownHoweverFarBack) {
  std::string text = "{\"unit\": \"m\",\n  \"nodes\": [";
  for (int i = 0; i < 20000; ++i) {
    text += "[0, 0, 0],\n";
  }
  std::stringbuf buffer(text + "\"sections\": {}}");
  try {
    readJsonModel(buffer);
    ADD_FAILURE();
  } catch (const ModelError& error) {
    EXPECT_EQ(error.problem().message,
              "\"]\" is missing before this: the \"[\" of 2:12 is still open");
    EXPECT_EQ(error.problem().place, (TextPlace{20002, 1}));
  }
}

TEST(JsonText, CountsCharactersNotBytes) {
  const std::string text = "{\"ç€😀\": 1,\n\"é\" #";
  std::stringbuf buffer(text);
  JsonText counted(buffer);
  counted.skipMark();
  while (counted.place().line < 2) {
    counted.sbumpc();
  }
  for (int i = 0; i < 6; ++i) {
    counted.sbumpc();
  }
  EXPECT_EQ(counted.place(), (TextPlace{2, 5}));
}

TEST(JsonText, IsTheTextItWasGiven) {
  for (const std::size_t size : {0U, 1U, 16383U, 16384U, 16385U, 50000U}) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
      text.push_back(static_cast<char>('a' + i % 23));
    }
    std::stringbuf buffer(text);
    JsonText counted(buffer);
    counted.skipMark();
    std::string read(size + 10, '\0');
    read.resize(static_cast<std::size_t>(
        counted.sgetn(read.data(), static_cast<std::streamsize>(read.size()))));
    EXPECT_EQ(read, text);
  }
}

}  // namespace
}  // namespace exportifc
