// Whole files: what must hold for any model, and that every machine writes the same bytes.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "model/batch_source.h"
#include "platform/platform.h"
#include "profiles/section_name.h"
#include "support.h"

namespace exportifc {
namespace {

using test::Lines;
using test::ScriptedBar;
using test::textOf;
using test::operator+;

/// Words of families and of halves, and one that nobody knows.
Lines withOthers(Lines families) {
  return std::move(families) + Lines{"LX_1", "2L_2", "LZLM_1", "XPTO"};
}

/// Bars of these family words, along the axes and skew, short and long, at nice angles and odd
/// ones. One random value a statement: compilers differ in the order within one.
std::vector<ScriptedBar> randomBars(std::uint64_t seed, int count, const Lines& words) {
  test::Random random(seed);
  const auto point = [&] {
    return std::array<float, 3>{random.number(-20000, 20000), random.number(-20000, 20000),
                                random.number(-20000, 20000)};
  };
  std::vector<ScriptedBar> bars;
  for (int i = 0; i < count; ++i) {
    ScriptedBar bar;
    bar.section = random.pick(words);
    if (random.integer(0, 9) != 0) {  // the others are the family word alone
      bar.section.append(" ").append(std::to_string(random.integer(1, 900)));
      bar.section.append("x'").append(std::to_string(random.integer(1, 90)));
    }
    bar.type = static_cast<float>(random.integer(-4, 52)) / 4.0F;
    bar.start = point();
    switch (random.integer(0, 7)) {
      case 0:
      case 1:
      case 2:
      case 3: {  // along an axis, in either direction
        bar.end = bar.start;
        const float length = random.number(-9000, 9000);
        bar.end[static_cast<std::size_t>(random.integer(0, 2))] += length;
        break;
      }
      case 4:  // no length, or hardly any
        bar.start.fill(0.0F);
        bar.end = {random.number(-1, 1) / 64.0F, random.number(-1, 1) / 64.0F,
                   random.number(-1, 1) / 64.0F};
        break;
      case 5:  // in a plane, at 45 degrees
        bar.end = bar.start;
        bar.end[0] += 1024.0F;
        bar.end[static_cast<std::size_t>(random.integer(1, 2))] -= 1024.0F;
        break;
      default: bar.end = point(); break;
    }
    for (float& dimension : bar.dims) {
      dimension = random.number(0, 400);
    }
    bar.quarterTurns = static_cast<std::int32_t>(random.integer(-3, 3));
    switch (random.integer(0, 3)) {
      case 0: break;
      case 1: bar.angle = 0.2617994F * static_cast<float>(random.integer(-24, 24)); break;
      default: bar.angle = random.number(-7, 7); break;
    }
    bars.push_back(std::move(bar));
  }
  return bars;
}

std::string fileOf(const std::vector<ScriptedBar>& bars, std::int32_t unit) {
  test::ScriptedUser user;
  return test::exportedFile([&] { return std::make_unique<test::ListSource>(bars, unit); }, user);
}

// ---- The same bytes everywhere -----------------------------------------------------------------

/// FNV-1a in 64 bits.
std::uint64_t hash(std::string_view bytes) {
  std::uint64_t value = 0xCBF29CE484222325U;
  for (const char c : bytes) {
    value = (value ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  }
  return value;
}

TEST(ExchangeFile, EveryMachineWritesTheSameBytes) {
  // Linux and Windows, optimised and not. Changes only with the format itself and with a new shape:
  // look at the differences in the golden files first.
  const Lines words = withOthers(test::wordsOfShapes());
  std::string bytes;
  for (const std::int32_t unit : {0, 1, 2, 7}) {
    const auto bars = randomBars(static_cast<std::uint64_t>(unit), 500, words);
    bytes += test::maskGlobalIds(fileOf(bars, unit));
  }
  EXPECT_EQ(hash(bytes), 0x13AB9A9BB34C9D2BU) << "of " << bytes.size() << " bytes";
}

// ---- What holds for every file -----------------------------------------------------------------

/// Text between apostrophes is no reference.
std::vector<int> referencesIn(std::string_view text) {
  std::vector<int> references;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\'') {
      quoted = !quoted;
    } else if (text[i] == '#' && !quoted) {
      references.push_back(std::stoi(std::string(text.substr(i + 1, 10))));
    }
  }
  return references;
}

class AnyFile : public testing::TestWithParam<std::uint64_t> {
 protected:
  // Names without apostrophes, which would end the texts.
  static std::vector<ScriptedBar> bars() {
    auto list = randomBars(GetParam(), 300, withOthers(test::familyWords()));
    for (ScriptedBar& bar : list) {
      bar.section.erase(std::remove(bar.section.begin(), bar.section.end(), '\''),
                        bar.section.end());
    }
    return list;
  }

  const std::string bytes = fileOf(bars(), 2);
  const Lines lines = test::linesOf(bytes);
};

TEST_P(AnyFile, GeneratedNumbersAreConsecutiveFrom5006) {
  int next = 5006;
  for (const std::string& line : lines) {
    if (line.starts_with('#') && line.find("= ") < line.find(' ')) {
      const int number = test::numberOf(line);
      if (number > 5) {
        ASSERT_EQ(number, next++) << line;
      }
    }
  }
  EXPECT_GT(next, 5006 + 300 * 18);
}

TEST_P(AnyFile, EveryReferenceIsDefinedBeforeItsUse) {
  std::set<int> defined;
  for (const std::string& line : lines) {
    if (!line.starts_with('#')) {
      continue;
    }
    const int number = test::numberOf(line);
    for (const int reference : referencesIn(std::string_view(line).substr(line.find('=')))) {
      ASSERT_TRUE(defined.contains(reference)) << line;
    }
    ASSERT_TRUE(defined.insert(number).second) << "twice: " << line;
  }
}

TEST_P(AnyFile, GlobalIdsAreUniqueAndWellFormed) {
  constexpr std::string_view alphabet =
      "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
  std::set<std::string> seen;
  for (const char* const keyword :
       {"= IFCBEAM('", "= IFCCOLUMN('", "= IFCMEMBER('", "= IFCPROPERTYSET('",
        "= IFCRELDEFINESBYPROPERTIES('", "= IFCELEMENTASSEMBLY('", "= IFCRELAGGREGATES('",
        "= IFCRELCONTAINEDINSPATIALSTRUCTURE('", "= IFCPROJECT('", "= IFCBUILDING('",
        "= IFCBUILDINGSTOREY('"}) {
    for (const std::string& line : test::linesWith(lines, keyword)) {
      const std::size_t start = line.find('\'') + 1;
      const std::string id = line.substr(start, line.find('\'', start) - start);
      ASSERT_EQ(id.size(), 22U) << line;
      ASSERT_EQ(id.find_first_not_of(alphabet), std::string::npos) << line;
      ASSERT_LE(id.front(), '3') << line;
      ASSERT_TRUE(seen.insert(id).second) << line;
    }
  }
  EXPECT_GT(seen.size(), 300U * 3);
}

TEST_P(AnyFile, EveryOwnerHistoryIsTheOne) {
  EXPECT_EQ(test::linesWith(lines, "= IFCOWNERHISTORY(").size(), 1U);
  for (const char* const keyword :
       {"= IFCBEAM(", "= IFCCOLUMN(", "= IFCMEMBER(", "= IFCPROPERTYSET(",
        "= IFCRELDEFINESBYPROPERTIES(", "= IFCELEMENTASSEMBLY(", "= IFCRELAGGREGATES(",
        "= IFCRELCONTAINEDINSPATIALSTRUCTURE("}) {
    for (const std::string& line : test::linesWith(lines, keyword)) {
      const std::size_t afterId = line.find('\'', line.find('\'') + 1);
      ASSERT_EQ(line.substr(afterId, 6), "', #5,") << line;
    }
  }
}

TEST_P(AnyFile, EveryBarHasItsElementsInTheStoreyOrAnAssembly) {
  std::size_t expected = 0;
  for (const ScriptedBar& bar : bars()) {
    std::wstring first;
    std::wstring second;
    const auto name = test::wide(bar.section);
    const bool two = splitBuiltUpProfile(profileFamilyOf(name), first, second);
    expected += static_cast<int>(bar.type) == 10 ? 0U : two ? 2U : 1U;
  }
  const std::size_t elements = test::linesWith(lines, "= IFCBEAM(").size() +
                               test::linesWith(lines, "= IFCCOLUMN(").size() +
                               test::linesWith(lines, "= IFCMEMBER(").size();
  EXPECT_EQ(elements, expected);
  std::size_t members = 0;
  for (const char* const keyword : {"', 'Assembly', ", "= IFCRELCONTAINEDINSPATIALSTRUCTURE("}) {
    for (const std::string& line : test::linesWith(lines, keyword)) {
      const std::size_t start = line.rfind('(');
      members += static_cast<std::size_t>(
          std::count(line.begin() + static_cast<std::ptrdiff_t>(start),
                     line.begin() + static_cast<std::ptrdiff_t>(line.find(')', start)), '#'));
    }
  }
  EXPECT_EQ(members, expected + 2) << "with the two assemblies themselves";
}

TEST_P(AnyFile, OnlyAsciiLinesWithCrLf) {
  std::size_t feeds = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c == '\n') {
      ++feeds;
      ASSERT_EQ(bytes[i - 1], '\r');
    } else if (c == '\r') {
      ASSERT_EQ(bytes[i + 1], '\n');
    } else {
      ASSERT_GE(c, ' ');
      ASSERT_LE(c, '~');
    }
  }
  EXPECT_EQ(feeds, lines.size());
}

INSTANTIATE_TEST_SUITE_P(Models, AnyFile, testing::Values(11U, 12U, 13U),
                         [](const auto& info) { return "Seed" + std::to_string(info.param); });

// ---- Broken batch files ------------------------------------------------------------------------

/// A whole export of a batch file with these bytes.
class BrokenFileTest : public testing::Test {
 protected:
  Lines exported(std::string_view bytes) {
    test::writeFile(path, bytes);
    user.said.clear();
    const std::string file =
        test::exportedFile([&] { return std::make_unique<BatchSource>(path); }, user);
    EXPECT_TRUE(file.starts_with("ISO-10303-21;\r\n"));
    EXPECT_TRUE(file.ends_with("\r\n\r\nENDSEC;\r\nEND-ISO-10303-21;\r\n"));
    EXPECT_EQ(test::readFile(path), bytes) << "the reader wrote to the model";
    return test::linesOf(file);
  }

  std::size_t elementsIn(std::string_view bytes) {
    return test::linesWith(exported(bytes), "= IFCEXTRUDEDAREASOLID(").size();
  }

  test::TemporaryFolder folder;
  std::string path = folder.file("model.txt");
  test::ScriptedUser user;
};

const Lines& twoBars() {
  static const Lines lines =
      test::headerLines("mm", "2") +
      test::barLines({.section = "W 9 8 7 6", .end = {"10", "0", "0"}, .angle = "0.5"}) +
      test::barLines({.section = "RED 5", .end = {"0", "0", "9"}});
  return lines;
}

TEST_F(BrokenFileTest, EveryPrefixOfAFile) {
  for (const std::string_view ending : {"\n", "\r\n"}) {
    const std::string whole = textOf(twoBars(), ending);
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      const std::string_view prefix = std::string_view(whole).substr(0, size);
      // Lines begun; the bar's first line decides whether there is a bar.
      std::size_t begun = static_cast<std::size_t>(std::count(prefix.begin(), prefix.end(), '\n'));
      if (!prefix.empty() && prefix.back() != '\n') {
        ++begun;
      }
      const std::size_t bars = begun <= 5 ? 0 : begun <= 17 ? 1 : 2;
      ASSERT_EQ(elementsIn(prefix), bars) << size;
    }
    EXPECT_TRUE(user.said.empty()) << "the whole file is good";
  }
}

TEST_F(BrokenFileTest, CutAfterAnyLine) {
  for (const std::string_view ending : {"\n", "\r\n"}) {
    for (std::size_t count = 0; count <= twoBars().size(); ++count) {
      const Lines cut(twoBars().begin(), twoBars().begin() + static_cast<std::ptrdiff_t>(count));
      const std::size_t bars = count <= 5 ? 0 : count <= 17 ? 1 : 2;
      ASSERT_EQ(elementsIn(textOf(cut, ending)), bars) << count;
      // A bar cut before its section text has an unknown section.
      const bool noSection = (count > 5 && count < 14) || (count > 17 && count < 26);
      ASSERT_EQ(user.said.size(), noSection ? 1U : 0U) << count;
    }
  }
}

TEST_F(BrokenFileTest, Counts) {
  const auto elements = [&](const std::string& count) {
    Lines lines = twoBars();
    lines[4] = count;
    return elementsIn(textOf(lines, "\r\n"));
  };
  EXPECT_EQ(elements("2"), 2U);
  EXPECT_EQ(elements("1"), 1U);
  EXPECT_EQ(elements("1000000"), 2U);
  EXPECT_EQ(elements("99999999999999999999"), 2U) << "clamped";
  EXPECT_EQ(elements("0"), 0U);
  EXPECT_EQ(elements("-1"), 0U);
  EXPECT_EQ(elements("-99999999999999999999"), 0U);
  EXPECT_EQ(elements("two"), 0U);
  EXPECT_EQ(elements(""), 0U);
}

TEST_F(BrokenFileTest, SectionTextsThatDoNotFit) {
  const auto saidAbout = [&](std::size_t length) {
    Lines lines = twoBars();
    lines[13] = "W " + std::string(length - 2, '5');
    const Lines file = exported(textOf(lines, "\r\n"));
    EXPECT_EQ(test::linesWith(file, "perfil: RED 5").size(), 1U) << "the next bar is in step";
    EXPECT_EQ(test::linesWith(file, "= IFCEXTRUDEDAREASOLID(").size(), length < 48 ? 2U : 1U);
    return user.said;
  };
  EXPECT_TRUE(saidAbout(47).empty());
  const std::vector<test::Said> problem = {test::message(MessageId::barWithoutRecord)};
  EXPECT_EQ(saidAbout(48), problem);
  EXPECT_EQ(saidAbout(500), problem);
}

TEST_F(BrokenFileTest, NumbersOfTheList) {
  for (const auto& [number, point] : std::map<std::string, std::string>{
           {"1.5", "1.50000"},
           {"1,5", "1.50000"},
           {"abc", "0.00000"},
           {"", "0.00000"},
           {"1e3", "1000.00000"},
           {"-0", "-0.00000"},
           {"1e999", "inf"},
       }) {
    Lines lines = twoBars();
    lines[6] = number;
    const Lines file = exported(textOf(lines, "\r\n"));
    EXPECT_EQ(test::linesWith(file, "#5012= ").at(0),
              "#5012= IFCCARTESIANPOINT((" + point + ", 0.00000, 0.00000));")
        << number;
    EXPECT_EQ(test::linesWith(file, "= IFCEXTRUDEDAREASOLID(").size(), 2U) << number;
  }
}

TEST_F(BrokenFileTest, ManyCrosses) {
  Lines lines = twoBars();
  lines[13] = "W 1x2x3x4x5x6x7x8x9x10x11x12x13x14x15x16x17";
  const Lines file = exported(textOf(lines));
  EXPECT_EQ(test::linesWith(file, "IFCISHAPEPROFILEDEF").at(0),
            "#5009= IFCISHAPEPROFILEDEF(.AREA., '" + lines[13] +
                "', #5008, 2.00000,1.00000,4.00000,3.00000, $);");
}

TEST_F(BrokenFileTest, UnknownUnit) {
  Lines lines = twoBars();
  lines[3] = "pol";
  EXPECT_EQ(test::linesWith(exported(textOf(lines)), "/* IfcBeam (0,0,0), (10,0,0)").size(), 1U);
}

TEST_F(BrokenFileTest, RandomBytes) {
  // No crash and a well-formed frame, whatever the file holds. Nothing above 0x7F in section
  // texts, which would end the output by design.
  test::Random random(9);
  using namespace std::string_view_literals;  // counts the NUL
  constexpr std::string_view bytes = "0123456789.,-exW [L\n\n\n\r\n\x1A\0abc "sv;
  const std::string start = textOf(test::headerLines("mm", "50"));
  for (int round = 0; round < 300; ++round) {
    std::string text = start;
    for (auto left = random.integer(0, 400); left > 0; --left) {
      text.push_back(random.pick(bytes));
    }
    exported(text);
  }
}

}  // namespace
}  // namespace exportifc
