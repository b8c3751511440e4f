// The host's side of an interactive export: which queries come, in which order, and what becomes of
// the answers.
#include <limits>
#include <regex>
#include <stdexcept>

#include "tests/module/module_test.h"
#include "tests/support/exchange_text.h"

namespace exportifc::module_tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// An entity without what differs between two bars that are alike.
std::string masked(const Entity& entity) {
  static const std::regex reference(R"(#\d+)");
  const std::string line = entity.reference + "= " + entity.keyword + "(" + entity.arguments;
  return std::regex_replace(test::maskGlobalIds(line), reference, "#");
}

class HostQueries : public ModuleTest {
 protected:
  [[nodiscard]] Query query(std::int32_t index, std::int32_t code) const {
    return {.handle = host.handle, .index = index, .code = code, .hasSlot = true};
  }

  /// The nine queries of a bar.
  void addBar(std::vector<Query>& queries, std::int32_t index, std::int32_t start,
              std::int32_t end) const {
    for (const std::int32_t code :
         {0x210003, 0x210702, 0x210005, 0x21000A, 0x10701, 0x21001F, 0x210020}) {
      queries.push_back(query(index, code));
    }
    queries.push_back(query(start, 0x220007));
    queries.push_back(query(end, 0x220007));
  }
};

TEST_F(HostQueries, ComeInTheirOrderWithTheHostsHandle) {
  const std::int32_t farNode = std::numeric_limits<std::int32_t>::max();
  host.nodes = {{0, {0, 0, 0}}, {7, {1, 0, 0}}, {-3, {2, 0, 0}}, {farNode, {3, 0, 0}}};
  host.bars = {{.startNode = 7, .endNode = -3}, {.startNode = farNode, .endNode = 0}};
  exported("quadro.ifc");
  std::vector<Query> expected = {query(0, 0x25000C), query(0, 0x50005)};
  addBar(expected, 0, 7, -3);
  addBar(expected, 1, farNode, 0);
  EXPECT_EQ(host.queries, expected);
}

TEST_F(HostQueries, AreAllMadeForBarsThatAreNotExported) {
  host.bars = {{.type = 10}, {.visible = 0}, {.hasRecord = false}, {}};
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersNo(),
                     box("Problema ao exportar Barra", "Erro")}),
            1);
  std::vector<Query> expected = {query(0, 0x25000C), query(0, 0x50005)};
  for (std::int32_t bar = 0; bar < 4; ++bar) {
    addBar(expected, bar, 0, 1);
  }
  EXPECT_EQ(host.queries, expected);
}

TEST_F(HostQueries, NoBarsNoBarQueries) {
  const IfcText ifc = exported("quadro.ifc");
  EXPECT_THAT(host.queries, ElementsAre(query(0, 0x25000C), query(0, 0x50005)));
  ASSERT_EQ(ifc.entities.size(), 1U);
  EXPECT_EQ(ifc.entities[0].keyword, "IFCRELCONTAINEDINSPATIALSTRUCTURE");
  EXPECT_THAT(ifc.entities[0].arguments, HasSubstr(", 'Pavimento 1', '', (), #113"));
}

TEST_F(HostQueries, CountLeftAloneOrNegativeIsNoBars) {
  for (const std::optional<std::int32_t> count :
       {std::optional<std::int32_t>{}, std::optional<std::int32_t>{-1},
        std::optional<std::int32_t>{std::numeric_limits<std::int32_t>::min()}}) {
    reload();
    host.queries.clear();
    host.bars.resize(3);
    host.ignores = [](const Query& query) { return query.code == EXPORTIFC_BAR_COUNT; };
    host.barCount = count;
    if (count) {
      host.ignores = nullptr;
    }
    EXPECT_THAT(exported("quadro.ifc").elements(), IsEmpty());
    EXPECT_EQ(host.queries.size(), 2U);
  }
}

TEST_F(HostQueries, HandleMayBeAnything) {
  for (const std::uint64_t handle :
       {std::uint64_t{0}, std::uint64_t{1}, std::numeric_limits<std::uint64_t>::max()}) {
    reload();
    host.queries.clear();
    host.handle = handle;
    host.connect(record());
    exported("quadro.ifc");
    EXPECT_THAT(host.queries, ElementsAre(query(0, 0x25000C), query(0, 0x50005)));
  }
}

TEST_F(HostQueries, RecordLiesBelowFourGigabytesAndWiderWritesAreHarmless) {
  host.writesWholePointers = true;
  host.bars = {
      {.section = "IPE 100"}, {.hasRecord = false}, {.section = "HE 100", .quarterTurns = 1}};
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersYes(),
                     box("Problema ao exportar Barra", "Erro")}),
            1);
  const IfcText ifc(file("quadro.ifc"));
  EXPECT_THAT(ifc.elements(), ElementsAre("IFCBEAM IPE IPE 100", "IFCBEAM HE HE 100"));
  EXPECT_THAT(ifc.bytes, HasSubstr("angulo: 90, perfil: HE 100"));
}

TEST_F(HostQueries, SlotLeftAloneIsNoRecord) {
  host.bars = {{.section = "IPE 100"}, {.section = "HE 100"}};
  host.ignores = [](const Query& query) {
    return query.code == EXPORTIFC_BAR_RECORD && query.index == 1;
  };
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersYes(),
                     box("Problema ao exportar Barra", "Erro")}),
            1);
  EXPECT_THAT(IfcText(file("quadro.ifc")).elements(), ElementsAre("IFCBEAM IPE IPE 100"));
}

TEST_F(HostQueries, OtherSlotsLeftAloneKeepTheBarBefore) {
  host.nodes = {{0, {0, 0, 0}}, {1, {5000, 0, 0}}, {2, {0, 0, 0}}, {3, {0, 0, 300}}};
  const FrameBar column = {.section = "W 200",
                           .dims = {206, 102, 8, 6},
                           .type = 4,
                           .angle = 0.5F,
                           .startNode = 2,
                           .endNode = 3};
  host.bars = {column, {.section = "W 200"}};
  host.ignores = [](const Query& query) {
    return query.index == 1 && query.code != EXPORTIFC_BAR_RECORD;
  };
  const IfcText ifc = exported("quadro.ifc");
  EXPECT_THAT(ifc.elements(), ElementsAre("IFCCOLUMN W W 200", "IFCCOLUMN W W 200"));
  EXPECT_EQ(ifc.elementsIn("Elementos_de_Portico").size(), 2U);
  // The nodes asked for the second bar are those of the first.
  ASSERT_EQ(host.queries.size(), 20U);
  EXPECT_EQ(host.queries[18], query(2, EXPORTIFC_NODE_COORDINATES));
  EXPECT_EQ(host.queries[19], query(3, EXPORTIFC_NODE_COORDINATES));
  // Both bars are written alike, but for their numbers and GlobalIds.
  const std::size_t perBar =
      (ifc.entities.size() - 3) / 2;  // two lines of the assembly, the storey
  ASSERT_GT(perBar, 14U);
  for (std::size_t i = 0; i < perBar; ++i) {
    EXPECT_EQ(masked(ifc.entities[i]), masked(ifc.entities[i + perBar]));
  }
}

TEST_F(HostQueries, ShortAnswerKeepsTheRestOfTheDimensionsBefore) {
  host.bars = {{.section = "W 1", .dims = {100, 50, 5, 4}}, {.section = "W 2"}};
  host.ignores = [&](const Query& query) {
    return query.code == EXPORTIFC_SECTION_DIMS && query.index == 1;
  };
  const std::vector<Entity> profiles = exported("quadro.ifc").all("IFCISHAPEPROFILEDEF");
  ASSERT_EQ(profiles.size(), 2U);
  for (const Entity& profile : profiles) {
    EXPECT_THAT(profile.arguments, HasSubstr(" 50.00000,100.00000,4.00000,5.00000,"));
  }
}

TEST_F(HostQueries, SlotsStartAtZeroInEveryExport) {
  host.nodes = {{0, {0, 0, 0}}, {1, {5000, 0, 0}}, {2, {10, 20, 30}}};
  host.bars = {{.section = "W 200",
                .dims = {206, 102, 8, 6},
                .type = 4,
                .angle = 1.5F,
                .startNode = 2,
                .endNode = 1}};
  // An export that fails leaves the module interactive, so that there is a second one.
  host.before = [&](const Query& query) {
    if (query.code == EXPORTIFC_NODE_COORDINATES && query.index == 1) {
      throw std::runtime_error("stop");
    }
  };
  EXPECT_EQ(
      execute({typesFileName(typed("um.ifc")), answersYes(), box("stop", "UNHANDLED EXCEPTION")}),
      1);
  host.before = nullptr;
  host.ignores = [](const Query& query) {
    return query.code != EXPORTIFC_BAR_COUNT && query.code != EXPORTIFC_BAR_RECORD;
  };
  EXPECT_EQ(execute({typesFileName(typed("dois.ifc")), answersYes()}), 1);
  const IfcText ifc(file("dois.ifc"));
  EXPECT_THAT(ifc.bytes, HasSubstr("/* IfcBeam (0,0,0), (0,0,0)\r\nangulo: 0, perfil: W 200"));
  EXPECT_THAT(ifc.elementsIn("Pavimento 1"), ElementsAre("IFCBEAM W W 200"));  // type 0
  ASSERT_EQ(ifc.all("IFCISHAPEPROFILEDEF").size(), 1U);
  EXPECT_THAT(ifc.all("IFCISHAPEPROFILEDEF")[0].arguments,
              HasSubstr(" 0.00000,0.00000,0.00000,0.00000,"));
}

TEST_F(HostQueries, SlotsThatStartAtZeroMeanHidden) {
  host.bars = {{.section = "W 200"}};
  host.ignores = [](const Query& query) { return query.code == EXPORTIFC_BAR_VISIBLE; };
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersNo()}), 1);
  EXPECT_THAT(IfcText(file("quadro.ifc")).elements(), IsEmpty());
}

TEST_F(HostQueries, UnitAppliesToNodesAndNotToDimensions) {
  struct Case {
    std::int32_t unit;
    const char* comment;
  };
  host.nodes = {{0, {0, 0, 0}}, {1, {1.5F, 0, 0}}};
  host.bars = {{.section = "W 200", .dims = {206, 102, 8, 6}}};
  for (const Case& unit : {Case{0, "(1500,0,0)"}, Case{1, "(15,0,0)"}, Case{2, "(1.5,0,0)"},
                           Case{3, "(1.5,0,0)"}, Case{-1, "(1.5,0,0)"}}) {
    reload();
    host.unit = unit.unit;
    const IfcText ifc = exported("quadro.ifc");
    EXPECT_THAT(ifc.bytes, HasSubstr(std::string("/* IfcBeam (0,0,0), ") + unit.comment + "\r\n"));
    EXPECT_THAT(ifc.all("IFCISHAPEPROFILEDEF").at(0).arguments, HasSubstr("206.00000"));
  }
}

TEST_F(HostQueries, TypesSortTheBars) {
  host.nodes = {{0, {0, 0, 0}}, {1, {0, 0, 3000}}};
  struct Case {
    float type;
    const char* group;
    const char* keyword;
  };
  const char* const frame = "Elementos_de_Portico";
  const char* const truss = "Elementos_de_Trelica";
  const char* const storey = "Pavimento 1";
  const Case cases[] = {
      {0, storey, "IFCMEMBER"},
      {1, frame, "IFCMEMBER"},
      {2, frame, "IFCMEMBER"},
      {3, truss, "IFCMEMBER"},
      {4, frame, "IFCCOLUMN"},
      {4.9F, frame, "IFCCOLUMN"},
      {5, storey, "IFCMEMBER"},
      {6, frame, "IFCMEMBER"},
      {7, frame, "IFCCOLUMN"},
      {8, frame, "IFCMEMBER"},
      {9.99F, truss, "IFCMEMBER"},
      {11, storey, "IFCMEMBER"},
      {-0.5F, storey, "IFCMEMBER"},
      {-4, storey, "IFCMEMBER"},
      {1e20F, storey, "IFCMEMBER"},
      {-1e20F, storey, "IFCMEMBER"},
      {std::numeric_limits<float>::quiet_NaN(), storey, "IFCMEMBER"},
  };
  std::map<std::string, std::vector<std::string>> expected;
  for (const Case& one : cases) {
    const std::string section = "W " + std::to_string(host.bars.size());
    host.bars.push_back({.section = section, .type = one.type});
    expected[one.group].push_back(std::string(one.keyword) + " W " + section);
  }
  for (const float never : {10.0F, 10.5F}) {
    host.bars.push_back({.section = "W NUNCA", .type = never});
  }
  const IfcText ifc = exported("quadro.ifc");
  for (const auto& [group, elements] : expected) {
    EXPECT_EQ(ifc.elementsIn(group), elements) << group;
  }
  EXPECT_EQ(ifc.elements().size(), std::size(cases));
}

}  // namespace
}  // namespace exportifc::module_tests
