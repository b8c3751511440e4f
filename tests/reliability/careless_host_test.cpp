// Hosts that answer wrongly, at the edges, or not at all. docs/host-guide.md tells each row.
#include <algorithm>
#include <array>
#include <clocale>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fuzz/exchange_check.h"
#include "fuzz/expectation.h"
#include "fuzz/memory_export.h"
#include "plugin/texts.h"
#include "tests/support/bar_record.h"

namespace exportifc {
namespace {

using fuzz::CountingInterface;
using fuzz::Exported;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float denormal = std::numeric_limits<float>::denorm_min();
constexpr std::int32_t smallestInteger = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t largestInteger = std::numeric_limits<std::int32_t>::max();

struct CarelessBar {
  CarelessBar() {
    bar.type = 1.0F;
    bar.end[0] = 1.0F;
    bar.name = "W 200";
  }

  fuzz::ModelBar bar;
  std::array<float, 10> dims{200, 100, 5, 8};
};

/// A host with one sound bar in millimetres; each test spoils it.
class CarelessHost {
 public:
  static constexpr std::size_t mostBars = 8;

  std::int32_t unit = 2;
  std::int32_t count = 1;
  std::vector<CarelessBar> bars = std::vector<CarelessBar>(1);
  /// Codes whose slots it leaves alone.
  std::vector<std::int32_t> unanswered;
  /// Called before each answer.
  std::function<void(std::int32_t index, std::int32_t code)> before;
  bool writesWholePointers = false;

  Exported run(CountingInterface& ui) {
    Exported exported;
    exportHost(&answer, reinterpret_cast<std::uintptr_t>(this), ui, exported);
    // The C library's own number formats are what the result is compared with.
    std::setlocale(LC_ALL, "C");
    return exported;
  }

  fuzz::Model model() const {
    fuzz::Model model;
    model.unitCode = unit;
    for (std::size_t i = 0; i < bars.size() && static_cast<std::int32_t>(i) < count; ++i) {
      model.bars.push_back(bars[i].bar);
    }
    return model;
  }

 private:
  static std::int32_t answer(std::uint64_t handle, std::int32_t index, std::int32_t code,
                             void* out) {
    auto& host = *reinterpret_cast<CarelessHost*>(static_cast<std::uintptr_t>(handle));
    if (host.before) {
      host.before(index, code);
    }
    if (std::find(host.unanswered.begin(), host.unanswered.end(), code) == host.unanswered.end()) {
      host.fill(index, code, out);
    }
    return 0;
  }

  void fill(std::int32_t index, std::int32_t code, void* out) {
    const auto put = [&](const auto& value) { std::memcpy(out, &value, sizeof(value)); };
    if (code == EXPORTIFC_LENGTH_UNIT) return put(unit);
    if (code == EXPORTIFC_BAR_COUNT) return put(count);
    // A bar's nodes are twice its index and the one after; indexes beyond the bars wrap round.
    const auto i = static_cast<std::size_t>(index);
    const bool isNode = code == EXPORTIFC_NODE_COORDINATES;
    const std::size_t barIndex = (isNode ? i / 2 : i) % bars.size();
    const CarelessBar& told = bars[barIndex];
    switch (code) {
      case EXPORTIFC_BAR_TYPE: return put(told.bar.type);
      case EXPORTIFC_BAR_VISIBLE: return put(told.bar.visible);
      case EXPORTIFC_BAR_RECORD: {
        const std::uint64_t garbage = 0xDEADBEEF00000000U;
        const BarRecord record = test::recordOf(told.bar.name, told.bar.quarterTurns);
        const std::uint32_t address = told.bar.hasRecord ? records_.put(barIndex, record) : 0;
        return writesWholePointers ? put(garbage | address) : put(address);
      }
      case EXPORTIFC_BAR_ANGLE: return put(told.bar.angle);
      case EXPORTIFC_SECTION_DIMS: return put(told.dims);
      case EXPORTIFC_BAR_START_NODE: return put(2 * index);
      case EXPORTIFC_BAR_END_NODE: return put(2 * index + 1);
      case EXPORTIFC_NODE_COORDINATES: return put(i % 2 == 0 ? told.bar.start : told.bar.end);
      default: FAIL() << "a query that is not part of the protocol: " << code;
    }
  }

  test::LowRecords records_{mostBars};
};

// ---- Answers at the edges: the export goes through -------------------------------------------

struct Row {
  const char* name;
  std::function<void(CarelessHost& host)> spoil;
  /// Texts that the file holds, the same on every platform.
  std::vector<const char*> lines;
  /// Whether every reader of exchange files accepts the file's grammar.
  bool readable = true;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

CarelessBar& first(CarelessHost& host) { return host.bars[0]; }

const char* const noBars = "#5006= IFCRELCONTAINEDINSPATIALSTRUCTURE(";
const char* const inStorey = "'Pavimento 1', '', (#5020), #113)";
const char* const inAssembly = "'Pavimento 1', '', (#5024), #113)";

const std::vector<Row> rows = {
    {"NothingIsSpoilt", [](CarelessHost&) {}, {inAssembly, "'Elementos_de_Portico'"}},
    {"CountIsZero", [](CarelessHost& host) { host.count = 0; }, {noBars}},
    {"CountIsNegative", [](CarelessHost& host) { host.count = -1; }, {noBars}},
    {"CountIsSmallestInteger", [](CarelessHost& host) { host.count = smallestInteger; }, {noBars}},
    {"UnitIsUnknown",
     [](CarelessHost& host) { host.unit = largestInteger; },
     {"IFCEXTRUDEDAREASOLID(#5009, #5016, #19, 1.00000)"}},
    {"UnitIsNegative",
     [](CarelessHost& host) { host.unit = smallestInteger; },
     {"IFCEXTRUDEDAREASOLID(#5009, #5016, #19, 1.00000)"}},
    {"TypeIsNotANumber", [](CarelessHost& host) { first(host).bar.type = nan; }, {inStorey}},
    {"TypeIsInfinite", [](CarelessHost& host) { first(host).bar.type = infinity; }, {inStorey}},
    {"TypeIsHuge", [](CarelessHost& host) { first(host).bar.type = 1e20F; }, {inStorey}},
    {"TypeIsHugeAndNegative",
     [](CarelessHost& host) { first(host).bar.type = -1e20F; },
     {inStorey}},
    // 2^32 + 1: cut to 32 bits it would be a frame bar.
    {"TypeIsJustBeyondAnInteger",
     [](CarelessHost& host) { first(host).bar.type = 2147483648.0F; },
     {inStorey}},
    {"TypeIsDenormal", [](CarelessHost& host) { first(host).bar.type = denormal; }, {inStorey}},
    {"TypeHasAFraction",
     [](CarelessHost& host) { first(host).bar.type = 8.999F; },
     {inAssembly, "'Elementos_de_Portico'"}},
    {"TypeIsBelowZero", [](CarelessHost& host) { first(host).bar.type = -0.9F; }, {inStorey}},
    {"CoordinateIsNotANumber",
     [](CarelessHost& host) { first(host).bar.end[2] = nan; },
     {"/* IfcBeam (0,0,0), (1,0,nan)", "IFCDIRECTION((nan, nan, nan))", "#19, nan)", "IFCMEMBER("}},
    {"CoordinateIsInfinite",
     [](CarelessHost& host) { first(host).bar.end[0] = infinity; },
     {"(inf,0,0)", "IFCDIRECTION((1.00000, 0.00000, 0.00000))", "#19, inf)"}},
    {"BothEndsAreInfinite",
     [](CarelessHost& host) {
       first(host).bar.start = first(host).bar.end = {0, 0, -infinity};
     },
     {"(0,0,-inf), (0,0,-inf)", "IFCCARTESIANPOINT((0.00000, 0.00000, -inf))", "#19, nan)"}},
    {"CoordinateIsHuge",
     [](CarelessHost& host) {
       host.unit = 0;
       first(host).bar.end[0] = 1e30F;
     },
     {"(1e+33,0,0)", "#19, 1000000015047466219876688855040000.00000)"}},
    {"CoordinateIsTheLargest",
     [](CarelessHost& host) {
       host.unit = 0;
       first(host).bar.end[0] = std::numeric_limits<float>::max();
     },
     {"(3.40282e+41,0,0)"}},
    {"CoordinateIsDenormal",
     [](CarelessHost& host) {
       first(host).bar.end = {denormal, -denormal, denormal};
     },
     {"(1.4013e-45,-1.4013e-45,1.4013e-45)", "IFCDIRECTION((1.00000, 0.00000, 0.00000))",
      "#19, 0.00000)", "IFCBEAM("}},
    {"CoordinateIsNegativeZero",
     [](CarelessHost& host) { first(host).bar.start[0] = -0.0F; },
     {"(-0,0,0), (1,0,0)", "IFCCARTESIANPOINT((-0.00000, 0.00000, 0.00000))"}},
    {"BothEndsAreTheSame",
     [](CarelessHost& host) { first(host).bar.end = first(host).bar.start; },
     {"IFCDIRECTION((1.00000, 0.00000, 0.00000))", "#19, 0.00000)", "IFCBEAM("}},
    {"AngleIsNotANumber",
     [](CarelessHost& host) { first(host).bar.angle = nan; },
     {"angulo: nan", "IFCDIRECTION((nan, nan, nan))"}},
    {"AngleIsInfinite",
     [](CarelessHost& host) { first(host).bar.angle = -infinity; },
     {"angulo: -inf", "IFCDIRECTION((nan, nan, nan))"}},
    {"AngleIsHuge",
     [](CarelessHost& host) { first(host).bar.angle = 1e30F; },
     {"angulo: 5.72975e+31"}},
    {"QuarterTurnsAreTheSmallest",
     [](CarelessHost& host) { first(host).bar.quarterTurns = smallestInteger; },
     {"angulo: -1.93274e+11"}},
    {"QuarterTurnsAreTheLargest",
     [](CarelessHost& host) { first(host).bar.quarterTurns = largestInteger; },
     {"angulo: 1.93274e+11"}},
    {"DimensionsAreNegative",
     [](CarelessHost& host) {
       first(host).dims = {-200, -100, -5, -8};
     },
     {"(.AREA., 'W 200', #5008, -100.00000,-200.00000,-8.00000,-5.00000, $)"}},
    {"DimensionsAreNotNumbers",
     [](CarelessHost& host) {
       first(host).dims = {nan, infinity, -infinity, -nan};
     },
     {"(.AREA., 'W 200', #5008, inf,nan,nan,-inf, $)"}},
    {"DimensionsOfAnOutlineAreNotNumbers",
     [](CarelessHost& host) {
       first(host).bar.name = "Z";
       first(host).dims = {nan, 1, 2, 3, 4, infinity};
     },
     {"IFCARBITRARYCLOSEDPROFILEDEF(.AREA., 'Z', #"}},
    {"DimensionsAreHuge",
     [](CarelessHost& host) { first(host).dims.fill(std::numeric_limits<float>::max()); },
     {"340282346638528859811704183484516925440.00000"}},
    {"VisibilityIsAnyInteger",
     [](CarelessHost& host) { first(host).bar.visible = smallestInteger; },
     {inAssembly}},
    {"NameIsEmpty",
     [](CarelessHost& host) { first(host).bar.name.clear(); },
     {"'UnknownProfile'", "', #5, ' ', ' ', $,#", "IFCIDENTIFIER(' ')"}},
    {"NameIsABlank",
     [](CarelessHost& host) { first(host).bar.name = " "; },
     {"'UnknownProfile'", "', #5, ' ', ' ', $,#"}},
    {"NameFillsItsFieldWithoutATerminator",
     [](CarelessHost& host) { first(host).bar.name = "W " + std::string(46, '9'); },
     {"'W 9999999999999999999999999999999999999999999999'"}},
    {"NameHoldsAnApostrophe",
     [](CarelessHost& host) { first(host).bar.name = "W 2'"; },
     {"(.AREA., 'W 2'', #5008"},
     false},
    {"NameEndsTheComment",
     [](CarelessHost& host) { first(host).bar.name = "W */ 2"; },
     {"perfil: W */ 2"},
     false},
    {"NameHoldsLineEnds",
     [](CarelessHost& host) { first(host).bar.name = "W\r\n2"; },
     {"perfil: W\r\r\n2\r\n"},
     false},
    {"RecordSlotReceivesEightBytes",
     [](CarelessHost& host) { host.writesWholePointers = true; },
     {inAssembly}},
};

class CarelessAnswer : public testing::TestWithParam<Row> {};

TEST_P(CarelessAnswer, GivesADefinedFile) {
  CarelessHost host;
  GetParam().spoil(host);
  CountingInterface ui;
  const Exported exported = host.run(ui);

  EXPECT_EQ(exported.result, 1);
  EXPECT_EQ(ui.unhandled, 0);
  EXPECT_EQ(compareWithModel(exported.file.bytes, host.model()), "");
  EXPECT_EQ(fuzz::checkExchange(exported.file.bytes).empty(), GetParam().readable);
  for (const char* line : GetParam().lines) {
    EXPECT_NE(exported.file.bytes.find(line), std::string::npos) << line;
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, CarelessAnswer, testing::ValuesIn(rows),
                         [](const auto& info) { return info.param.name; });

TEST(CarelessHostTest, ByteFrom0x80InANameEndsTheFileBeforeIt) {
  CarelessHost host;
  host.bars.resize(3);
  host.count = 3;
  host.bars[1].bar.name = "W 2\xE7";
  CountingInterface ui;
  const Exported exported = host.run(ui);
  EXPECT_EQ(exported.result, 1);
  EXPECT_EQ(ui.unhandled, 0);
  EXPECT_THAT(exported.file.bytes, EndsWith("(.AREA., 'W 2"));
  EXPECT_EQ(compareWithModel(exported.file.bytes, host.model()), "");
}

TEST(CarelessHostTest, BarWithoutARecordIsShownAndSkipped) {
  CarelessHost host;
  host.bars.resize(3);
  host.count = 3;
  host.bars[1].bar.hasRecord = false;
  CountingInterface ui;
  const Exported exported = host.run(ui);
  EXPECT_EQ(ui.barProblems, 1);
  EXPECT_EQ(compareWithModel(exported.file.bytes, host.model()), "");
}

TEST(CarelessHostTest, HostThatAnswersNothingHasNoBars) {
  CarelessHost host;
  host.unanswered = {EXPORTIFC_LENGTH_UNIT, EXPORTIFC_BAR_COUNT};
  CountingInterface ui;
  EXPECT_THAT(host.run(ui).file.bytes, HasSubstr(noBars));
}

TEST(CarelessHostTest, UnfilledRecordIsNoRecord) {
  CarelessHost host;
  host.count = 5;
  host.unanswered = {EXPORTIFC_BAR_RECORD};
  CountingInterface ui;
  EXPECT_THAT(host.run(ui).file.bytes, HasSubstr(noBars));
  EXPECT_EQ(ui.barProblems, 5);
}

TEST(CarelessHostTest, UnfilledSlotsOfTheFirstBarAreZero) {
  CarelessHost host;
  host.unanswered = {EXPORTIFC_BAR_TYPE,        EXPORTIFC_BAR_VISIBLE,    EXPORTIFC_BAR_ANGLE,
                     EXPORTIFC_SECTION_DIMS,    EXPORTIFC_BAR_START_NODE, EXPORTIFC_BAR_END_NODE,
                     EXPORTIFC_NODE_COORDINATES};
  CountingInterface ui;
  const Exported exported = host.run(ui);
  EXPECT_THAT(exported.file.bytes,
              HasSubstr("/* IfcBeam (0,0,0), (0,0,0)\r\nangulo: 0, perfil: W 200"));
  EXPECT_THAT(exported.file.bytes, HasSubstr("0.00000,0.00000,0.00000,0.00000, $)"));
  EXPECT_THAT(exported.file.bytes, HasSubstr(inStorey));
  // Nothing told that it is visible.
  CountingInterface no;
  no.answer = BarChoice::visibleOnly;
  EXPECT_THAT(host.run(no).file.bytes, HasSubstr(noBars));
}

TEST(CarelessHostTest, UnfilledSlotsKeepTheBarBefore) {
  CarelessHost host;
  host.bars.resize(2);
  host.count = 2;
  host.bars[1].bar.angle = 1.0F;
  host.bars[1].dims.fill(7.0F);
  host.before = [&host](std::int32_t index, std::int32_t code) {
    if (index == 1 && code == EXPORTIFC_BAR_TYPE) {
      host.unanswered = {EXPORTIFC_BAR_ANGLE, EXPORTIFC_SECTION_DIMS};
    }
  };
  CountingInterface ui;
  const Exported exported = host.run(ui);
  EXPECT_THAT(exported.file.bytes, Not(HasSubstr("7.00000")));
  EXPECT_THAT(exported.file.bytes, Not(HasSubstr("angulo: 57")));
}

// ---- Callbacks that throw --------------------------------------------------------------------

constexpr std::int32_t throwingBar = 1000;

/// A host that claims as many bars as fit and gives up after some.
void giveUp(CarelessHost& host, const std::function<void()>& raise) {
  host.count = largestInteger;
  host.before = [raise](std::int32_t index, std::int32_t code) {
    if (index == throwingBar && code == EXPORTIFC_BAR_ANGLE) {
      raise();
    }
  };
}

TEST(CarelessHostTest, HugeCountRunsUntilTheHostThrows) {
  CarelessHost host;
  giveUp(host, [] { throw std::runtime_error("no more bars"); });
  CountingInterface ui;
  const Exported exported = host.run(ui);
  EXPECT_EQ(exported.result, 1);
  EXPECT_EQ(ui.unhandled, 1);
  EXPECT_EQ(exported.batchPath, "");
  // Every bar before, whole, and no trailer.
  constexpr std::int32_t entitiesOfABar = 4 + 14;
  EXPECT_THAT(exported.file.bytes,
              HasSubstr("#" + std::to_string(5005 + throwingBar * entitiesOfABar) + "= "));
  EXPECT_THAT(exported.file.bytes,
              Not(HasSubstr("#" + std::to_string(5006 + throwingBar * entitiesOfABar) + "= ")));
  EXPECT_THAT(exported.file.bytes, EndsWith(");\r\n"));
  EXPECT_THAT(exported.file.bytes, Not(HasSubstr("END-ISO-10303-21;")));
}

TEST(CarelessHostTest, ThrownTextIsReported) {
  CarelessHost host;
  giveUp(host, [] { throw "no more bars"; });
  CountingInterface ui;
  EXPECT_EQ(host.run(ui).result, 1);
  EXPECT_EQ(ui.unhandled, 1);
}

TEST(CarelessHostTest, FileCreationTextPassesThrough) {
  CarelessHost host;
  giveUp(host, [] { throw static_cast<const char*>(texts::fileCreationFailed); });
  CountingInterface ui;
  EXPECT_THROW(host.run(ui), const char*);
  EXPECT_EQ(ui.unhandled, 0);
}

TEST(CarelessHostTest, AnythingElseThrownPassesThrough) {
  CarelessHost host;
  giveUp(host, [] { throw 42; });
  CountingInterface ui;
  EXPECT_THROW(host.run(ui), int);
  EXPECT_EQ(ui.unhandled, 0);
}

}  // namespace
}  // namespace exportifc
