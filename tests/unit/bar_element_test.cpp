#include "elements/bar_element.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

using Lines = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

BarGeometry beam() {
  return {.start = {0, 0, 0},
          .end = {5000, 0, 0},
          .sectionName = L"W 310x38.7",
          .sectionLabel = L"W",
          .rotation = 0,
          .elementKind = ElementKind::beamOrMember};
}

Lines written(const BarGeometry& bar) {
  return test::linesOf(test::maskGlobalIds(
      test::exportedBytes([&](StepWriter& writer) { EXPECT_EQ(writeBar(writer, bar, 4), 11); })));
}

// Places of the lines in what one bar writes.
enum Line : std::size_t {
  blank,
  ends,
  rotationAndSection,
  commentEnd,
  zAxis,
  xAxis,
  location,
  axisPlacement,
  placement,
  origin,
  solidPlacement,
  solid,
  shape,
  productShape,
  element,
  property,
  propertySet,
  relation,
  lineCount
};

/// "IFCBEAM" of the element line.
std::string keywordOf(const BarGeometry& bar) {
  const std::string body = test::bodyOf(written(bar)[element]);
  return body.substr(0, body.find('('));
}

TEST(WriteBar, EveryByteOfABeam) {
  const std::string id(22, 'G');
  EXPECT_EQ(test::maskGlobalIds(test::exportedBytes([](StepWriter& writer) {
              for (int i = 0; i < 5005; ++i) {
                writer.entities.addPlain();
              }
              EXPECT_EQ(writeBar(writer, beam(), 4712), 5016);
              EXPECT_EQ(writer.entities.size(), 5019);
            })),
            "\r\n"
            "/* IfcBeam (0,0,0), (5000,0,0)\r\n"
            "angulo: 0, perfil: W 310x38.7\r\n"
            " */\r\n"
            "#5006= IFCDIRECTION((1.00000, 0.00000, 0.00000));\r\n"
            "#5007= IFCDIRECTION((0.00000, 1.00000, 0.00000));\r\n"
            "#5008= IFCCARTESIANPOINT((0.00000, 0.00000, 0.00000));\r\n"
            "#5009= IFCAXIS2PLACEMENT3D(#5008, #5006, #5007);\r\n"
            "#5010= IFCLOCALPLACEMENT(#111, #5009);\r\n"
            "#5011= IFCCARTESIANPOINT((0., 0., 0.));\r\n"
            "#5012= IFCAXIS2PLACEMENT3D(#5011, $, $);\r\n"
            "#5013= IFCEXTRUDEDAREASOLID(#4712, #5012, #19, 5000.00000);\r\n"
            "#5014= IFCSHAPEREPRESENTATION(#88, 'Body', 'SweptSolid', (#5013));\r\n"
            "#5015= IFCPRODUCTDEFINITIONSHAPE($, $, (#5014));\r\n"
            "#5016= IFCBEAM('" +
                id +
                "', #5, 'W', 'W 310x38.7', $,#5010, #5015, '418198');\r\n"
                "#5017= IFCPROPERTYSINGLEVALUE('Reference', $, IFCIDENTIFIER('W 310x38.7'), $);\r\n"
                "#5018= IFCPROPERTYSET('" +
                id +
                "', #5,'Propriedades do Perfil', '', (#5017));\r\n"
                "#5019= IFCRELDEFINESBYPROPERTIES('" +
                id + "', #5, 'Perfil', $, (#5016), #5018);\r\n");
}

TEST(WriteBar, TheOwnerHistoryIsTheWriters) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    writer.ownerHistoryId = 77;
    writeBar(writer, beam(), 1);
  });
  EXPECT_EQ(test::linesWith(lines, "', #77, ").size(), 2U);
  EXPECT_EQ(test::linesWith(lines, "', #77,'").size(), 1U);
}

TEST(WriteBar, ThreeDifferentGlobalIds) {
  const auto lines = test::exportedLines([](StepWriter& writer) { writeBar(writer, beam(), 1); });
  const auto idOf = [&](Line line) { return lines[line].substr(lines[line].find('\'') + 1, 22); };
  EXPECT_NE(idOf(element), idOf(propertySet));
  EXPECT_NE(idOf(element), idOf(relation));
  EXPECT_NE(idOf(propertySet), idOf(relation));
}

// ---- Comment -----------------------------------------------------------------------------------

TEST(WriteBar, TheCommentHasSixSignificantDigits) {
  BarGeometry bar = beam();
  bar.start = {0.5, -1234567, 1500.125};
  bar.end = {0.00001, 1e20, -0.0};
  bar.rotation = 89.99999;
  const Lines lines = written(bar);
  EXPECT_EQ(lines[blank], "");
  EXPECT_EQ(lines[ends], "/* IfcBeam (0.5,-1.23457e+06,1500.12), (1e-05,1e+20,-0)");
  EXPECT_EQ(lines[rotationAndSection], "angulo: 90, perfil: W 310x38.7");
  EXPECT_EQ(lines[commentEnd], " */");
}

TEST(WriteBar, TheCommentSaysBeamForEveryType) {
  BarGeometry bar = beam();
  bar.end = {0, 0, 3000};
  EXPECT_EQ(keywordOf(bar), "IFCMEMBER");
  EXPECT_EQ(written(bar)[ends], "/* IfcBeam (0,0,0), (0,0,3000)");
  bar.elementKind = ElementKind::columnIfUpright;
  EXPECT_EQ(keywordOf(bar), "IFCCOLUMN");
  EXPECT_EQ(written(bar)[ends], "/* IfcBeam (0,0,0), (0,0,3000)");
}

// ---- Reversal ----------------------------------------------------------------------------------

class ReversedSection : public testing::TestWithParam<const wchar_t*> {};

TEST_P(ReversedSection, SwapsTheEndsOfItsBar) {
  BarGeometry bar = beam();
  bar.sectionName = GetParam();
  const Lines lines = written(bar);
  EXPECT_EQ(lines[ends], "/* IfcBeam (5000,0,0), (0,0,0)");
  EXPECT_EQ(lines[location], "#3= IFCCARTESIANPOINT((5000.00000, 0.00000, 0.00000));");
  EXPECT_EQ(lines[zAxis], "#1= IFCDIRECTION((-1.00000, 0.00000, 0.00000));");
}

INSTANTIATE_TEST_SUITE_P(Names, ReversedSection,
                         testing::Values(L"2L_2", L"2LLM_2", L"LXLM_1", L"LXLM_2", L"LX_1", L"LX_2",
                                         L"LZLM_1", L"LZLM_2", L"LZ_1", L"LZ_2", L"ZS", L"ZI"),
                         [](const auto& info) { return test::testNameOf(info.param); });

TEST(WriteBar, OnlyTheWholeSectionNameReverses) {
  for (const std::wstring name : {L"LX_1 50 5", L"lx_1", L"LX_1 ", L" LX_1", L"2L_1", L"2LLM_1",
                                  L"LX", L"ZS 1", L"Z", L"ZSI", L"L", L""}) {
    BarGeometry bar = beam();
    bar.sectionName = name;
    bar.sectionLabel = L"LX_1";  // where the halves' names stand
    EXPECT_EQ(written(bar)[ends], "/* IfcBeam (0,0,0), (5000,0,0)");
  }
}

// ---- Axes, location, length --------------------------------------------------------------------

TEST(WriteBar, AxesOfABarAlongEachAxis) {
  BarGeometry bar = beam();
  bar.end = {0, 0, 3000};
  Lines lines = written(bar);
  EXPECT_EQ(lines[zAxis], "#1= IFCDIRECTION((0.00000, 0.00000, 1.00000));");
  EXPECT_EQ(lines[xAxis], "#2= IFCDIRECTION((0.00000, 1.00000, 0.00000));");
  bar.end = {0, 3000, 0};
  lines = written(bar);
  EXPECT_EQ(lines[zAxis], "#1= IFCDIRECTION((0.00000, 1.00000, 0.00000));");
  EXPECT_EQ(lines[xAxis], "#2= IFCDIRECTION((-1.00000, 0.00000, 0.00000));");
}

TEST(WriteBar, RotationTurnsTheReferenceDirection) {
  BarGeometry bar = beam();
  bar.rotation = 30;
  EXPECT_EQ(written(bar)[xAxis], "#2= IFCDIRECTION((0.00000, 0.86603, 0.50000));");
  bar.rotation = 90;
  // 90 degrees in single precision lie a little beyond the quarter turn.
  EXPECT_EQ(written(bar)[xAxis], "#2= IFCDIRECTION((0.00000, -0.00000, 1.00000));");
  bar.end = {0, 0, 3000};
  bar.rotation = 30;
  EXPECT_EQ(written(bar)[xAxis], "#2= IFCDIRECTION((-0.50000, 0.86603, 0.00000));");
}

TEST(WriteBar, ASkewBar) {
  BarGeometry bar = beam();
  bar.start = {100, 200, 300};
  bar.end = {1300, 1800, 2300};  // (1200, 1600, 2000)
  const Lines lines = written(bar);
  EXPECT_EQ(lines[zAxis], "#1= IFCDIRECTION((0.42426, 0.56569, 0.70711));");
  EXPECT_EQ(lines[xAxis], "#2= IFCDIRECTION((-0.29104, 0.82462, -0.48507));");
  EXPECT_EQ(lines[location], "#3= IFCCARTESIANPOINT((100.00000, 200.00000, 300.00000));");
  EXPECT_EQ(lines[solid], "#8= IFCEXTRUDEDAREASOLID(#4, #7, #19, 2828.42712);");
}

TEST(WriteBar, TheLengthComesFromTheUnroundedCoordinates) {
  BarGeometry bar = beam();
  bar.start = {0, 0, 0};
  bar.end = {16777217, 0, 0};  // not a single-precision number
  EXPECT_EQ(written(bar)[solid], "#8= IFCEXTRUDEDAREASOLID(#4, #7, #19, 16777217.00000);");
}

TEST(WriteBar, AxesComeFromRoundedDifferences) {
  // The tolerance is 0.01 in single precision, 0.00999999977...; what is nearer to it than to the
  // single below counts as it.
  BarGeometry bar = beam();
  bar.end = {0, 0, 0.0099999995};
  EXPECT_EQ(written(bar)[zAxis], "#1= IFCDIRECTION((0.00000, 0.00000, 1.00000));");
  bar.end = {0, 0, 0.009999999};
  EXPECT_EQ(written(bar)[zAxis], "#1= IFCDIRECTION((1.00000, 0.00000, 0.00000));");
}

TEST(WriteBar, ABarOfNoLength) {
  BarGeometry bar = beam();
  bar.start = bar.end = {10, 20, 30};
  bar.rotation = 30;
  bar.elementKind = ElementKind::columnIfUpright;
  const Lines lines = written(bar);
  EXPECT_EQ(lines[zAxis], "#1= IFCDIRECTION((1.00000, 0.00000, 0.00000));");
  EXPECT_EQ(lines[xAxis], "#2= IFCDIRECTION((0.00000, 0.86603, 0.50000));");
  EXPECT_EQ(lines[solid], "#8= IFCEXTRUDEDAREASOLID(#4, #7, #19, 0.00000);");
  EXPECT_EQ(keywordOf(bar), "IFCBEAM");
}

TEST(WriteBarElement, ATinyNegativeDirectionKeepsItsSign) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    const BarGeometry bar = beam();
    const BarPlacement placement{.first = bar.start,
                                 .second = bar.end,
                                 .axis = {-4e-08F, 1, 0},
                                 .refDirection = {0, -4e-08F, 1}};
    EXPECT_EQ(writeBarElement(writer, bar, placement, 3), 11);
  });
  ASSERT_EQ(lines.size(), 14U) << "no comment";
  EXPECT_EQ(lines[0], "#1= IFCDIRECTION((-0.00000, 1.00000, 0.00000));");
  EXPECT_EQ(lines[1], "#2= IFCDIRECTION((0.00000, -0.00000, 1.00000));");
}

// ---- Element type ------------------------------------------------------------------------------

TEST(ElementType, ABeamIsLevelUpToAHundredth) {
  BarGeometry bar = beam();
  for (const ElementKind kind : {ElementKind::beamOrMember, ElementKind::columnIfUpright}) {
    bar.elementKind = kind;
    for (const double rise : {0.01, -0.01, 0.0, 0.0099}) {
      bar.end = {1000, 0, rise};
      EXPECT_EQ(keywordOf(bar), "IFCBEAM") << rise;
    }
    bar.end = {1000, 0, 0.0100001};
    EXPECT_EQ(keywordOf(bar), "IFCMEMBER");
    bar.end = {1000, 0, std::nextafter(0.01, 1.0)};
    EXPECT_EQ(keywordOf(bar), "IFCMEMBER") << "the differences are not rounded";
  }
}

TEST(ElementType, AColumnIsSteepAndOfItsKind) {
  BarGeometry bar = beam();
  bar.end = {0, 0, 3000};
  bar.elementKind = ElementKind::columnIfUpright;
  EXPECT_EQ(keywordOf(bar), "IFCCOLUMN");
  bar.end = {0, 0, -3000};
  EXPECT_EQ(keywordOf(bar), "IFCCOLUMN");
  bar.end = {0, 0, 0.0100001};
  EXPECT_EQ(keywordOf(bar), "IFCCOLUMN");
  for (const std::int32_t kind : {0, 1, 2, 4, -3}) {
    bar.elementKind = static_cast<ElementKind>(kind);
    EXPECT_EQ(keywordOf(bar), "IFCMEMBER") << kind;
  }
}

TEST(ElementType, AColumnMayLeanInY) {
  BarGeometry bar = beam();
  bar.elementKind = ElementKind::columnIfUpright;
  bar.end = {0.01, 2900, 3000};
  EXPECT_EQ(keywordOf(bar), "IFCCOLUMN");
  bar.end = {-0.01, -2900, 3000};
  EXPECT_EQ(keywordOf(bar), "IFCCOLUMN");
  bar.end = {0.0100001, 0, 3000};
  EXPECT_EQ(keywordOf(bar), "IFCMEMBER");
}

TEST(ElementType, NotANumberIsAMember) {
  BarGeometry bar = beam();
  bar.elementKind = ElementKind::columnIfUpright;
  bar.end = {nan, nan, nan};
  EXPECT_EQ(keywordOf(bar), "IFCMEMBER") << "both comparisons fail";
  bar.end = {nan, 0, 1000};
  EXPECT_EQ(keywordOf(bar), "IFCMEMBER");
  bar.end = {nan, 0, 0};
  EXPECT_EQ(keywordOf(bar), "IFCBEAM") << "only X and Z are looked at, Z first";
  EXPECT_EQ(written(bar)[solid], "#8= IFCEXTRUDEDAREASOLID(#4, #7, #19, nan);");
  bar.end = {infinity, 0, 0};
  EXPECT_EQ(written(bar)[ends], "/* IfcBeam (0,0,0), (inf,0,0)");
  EXPECT_EQ(written(bar)[solid], "#8= IFCEXTRUDEDAREASOLID(#4, #7, #19, inf);");
}

// ---- Names -------------------------------------------------------------------------------------

TEST(ElementName, AShortSectionNameBecomesABlank) {
  BarGeometry bar = beam();
  bar.sectionName = L"X";
  bar.sectionLabel = L"";
  Lines lines = written(bar);
  EXPECT_NE(lines[element].find("', #5, ' ', ' ', $,#5, #10, '418198')"), std::string::npos)
      << lines[element];
  EXPECT_EQ(lines[property], "#12= IFCPROPERTYSINGLEVALUE('Reference', $, IFCIDENTIFIER(' '), $);");
  EXPECT_EQ(lines[rotationAndSection], "angulo: 0, perfil: X") << "the comment keeps the name";
  bar.sectionName = L"";
  bar.sectionLabel = L"label";
  lines = written(bar);
  EXPECT_NE(lines[element].find("', #5, 'label', ' ', $,"), std::string::npos) << lines[element];
}

TEST(ElementName, AnEmptyLabelBecomesTheDescription) {
  BarGeometry bar = beam();
  bar.sectionLabel = L"";
  EXPECT_NE(written(bar)[element].find("', #5, 'W 310x38.7', 'W 310x38.7', $,"), std::string::npos);
  bar.sectionName = L"XY";
  EXPECT_NE(written(bar)[element].find("', #5, 'XY', 'XY', $,"), std::string::npos);
}

TEST(ElementName, ApostrophesAndAccentsStayAsTheyAre) {
  BarGeometry bar = beam();
  bar.sectionName = L"d'Agua \u00E7";
  bar.sectionLabel = L"d'Agua";
  const Lines lines = written(bar);
  EXPECT_NE(lines[element].find("'d'Agua', 'd'Agua \xE7', $,"), std::string::npos);
  EXPECT_EQ(lines[property],
            "#12= IFCPROPERTYSINGLEVALUE('Reference', $, IFCIDENTIFIER('d'Agua \xE7'), $);");
}

TEST(ElementName, ALineFeedIsALineEnd) {
  BarGeometry bar = beam();
  bar.sectionName = L"W\n1";
  const std::string bytes =
      test::exportedBytes([&](StepWriter& writer) { writeBar(writer, bar, 1); });
  EXPECT_NE(bytes.find("perfil: W\r\n1\r\n */"), std::string::npos);
  EXPECT_NE(bytes.find("IFCIDENTIFIER('W\r\n1')"), std::string::npos);
}

TEST(ElementName, ACharacterAboveFFEndsTheFileInTheComment) {
  BarGeometry bar = beam();
  bar.sectionName = std::wstring(L"Per") + static_cast<wchar_t>(0xFFE7) + L"il";
  const std::string bytes = test::exportedBytes([&](StepWriter& writer) {
    EXPECT_EQ(writeBar(writer, bar, 1), 11) << "numbers go on";
    writer.writeFooter();
  });
  EXPECT_EQ(bytes, "\r\n/* IfcBeam (0,0,0), (5000,0,0)\r\nangulo: 0, perfil: Per");
}

TEST(WriteBar, TwoBarsOneAfterTheOther) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    EXPECT_EQ(writeBar(writer, beam(), 1), 11);
    EXPECT_EQ(writeBar(writer, beam(), 2), 25);
  });
  EXPECT_EQ(lines.size(), 2U * lineCount);
  EXPECT_EQ(test::numberOf(lines.back()), 28);
}

}  // namespace
}  // namespace exportifc
