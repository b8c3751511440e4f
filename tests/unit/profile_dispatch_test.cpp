#include "profiles/profile_dispatch.h"

#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "profiles/section_name.h"
#include "support.h"

namespace exportifc {
namespace {

using Lines = std::vector<std::string>;
// Each dimension is told from every other in the file.
constexpr SectionDims dims = {300.0F, 150.5F, 20.25F, 10.125F, 40.75F, 2.5F, 7.0F, 901, 902, 903};

Lines written(std::wstring_view name, int flangeSide, const SectionDims& sectionDims = dims) {
  return test::exportedLines([&](StepWriter& writer) {
    const std::int32_t profile = writeProfile(writer, name, sectionDims, flangeSide);
    EXPECT_EQ(profile, writer.entities.size()) << "the profile definition comes last";
  });
}

/// What each family with a parametric profile writes for `dims`. The order is that of the table.
struct ParametricRow {
  const wchar_t* name;
  int flangeSide;
  const char* point;
  const char* direction;
  const char* profile;
};

void PrintTo(const ParametricRow& row, std::ostream* out) { *out << row.profile; }

/// The same for each family with a closed outline.
struct OutlineRow {
  const wchar_t* name;
  int flangeSide;
  std::vector<const char*> points;
};

void PrintTo(const OutlineRow& row, std::ostream* out) { *out << row.points.size() << " points"; }

// clang-format off
const std::vector<ParametricRow>& parametricRows() {
  static const std::vector<ParametricRow> rows = {
    {L"ILAM 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'ILAM 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"CS 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'CS 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"][_1", 0, "(-80.31250, 0.0)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., '][_1', #3, 300.00000,150.50000,20.25000,20.25000, $, $, $, $)"},
    {L"][_2", 0, "(80.31250, 0.0)", "(1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., '][_2', #3, 300.00000,150.50000,20.25000,20.25000, $, $, $, $)"},
    {L"[ 1x2", -1, "(-75.25000, 0.)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., '[ 1x2', #3, 300.00000, 150.50000, 10.12500, 10.12500, $, $, $, $)"},
    {L"[]_1", 0, "(54.87500, 0.0)", "(1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., '[]_1', #3, 300.00000,150.50000,10.12500,10.12500, $, $, $, $)"},
    {L"[]_2", 0, "(-54.87500, 0.0)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., '[]_2', #3, 300.00000,150.50000,10.12500,10.12500, $, $, $, $)"},
    {L"UENR 1x2", -1, "(-75.25000, 0.)", "(-1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'UENR 1x2', #3, 300.00000,150.50000,10.12500,20.25000, $, $)"},
    {L"UUE_1", 0, "(-95.62500, 0.0)", "(1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'UUE_1', #3, 300.00000,150.50000,10.12500,20.25000, $, $)"},
    {L"UUE_2", 0, "(95.62500, 0.0)", "(-1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'UUE_2', #3, 300.00000,150.50000,10.12500,20.25000, $, $)"},
    {L"IENR_1", 0, "(-95.62500, 0.0)", "(-1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'IENR_1', #3, 300.00000,150.50000,10.12500,20.25000, $, $)"},
    {L"IENR_2", 0, "(95.62500, 0.0)", "(1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'IENR_2', #3, 300.00000,150.50000,10.12500,20.25000, $, $)"},
    {L"CA_1", 0, "(-75.25000, 0.0)", "(1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'CA_1', #3, 300.00000,150.50000,10.12500,20.25000, $, $)"},
    {L"CA_2", 0, "(75.25000, 0.0)", "(-1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'CA_2', #3, 300.00000,150.50000,10.12500,20.25000, $, $)"},
    {L"BOX 1x2", -1, "(0.0, 0.0)", "(1.0, 0.0)",
     "IFCRECTANGLEHOLLOWPROFILEDEF(.AREA., 'BOX 1x2', #3, 150.50000,300.00000,10.12500, $, $)"},
    {L"L 1x2", -1, "(0.0, 0.0)", "(0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'L 1x2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LLM 1x2", -1, "(0.0, 0.0)", "(0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LLM 1x2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LLM_EN 1x2", -1, "(0.0, 0.0)", "(-0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LLM_EN 1x2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LFF 1x2", -1, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LFF 1x2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LLAM_EN 1x2", -1, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LLAM_EN 1x2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"2L_1", 0, "(-170.37500, 0.0)", "(-1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., '2L_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"2L_2", 0, "(170.37500, 0.0)", "(1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., '2L_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LL_1", 0, "(20.37500,0.0)", "(-1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LL_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LL_2", 0, "(-20.37500,0.0)", "(0.0, -1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LL_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"><_1", 0, "(232.50703, 0.0)", "(0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., '><_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"><_2", 0, "(-232.50703, 0.0)", "(-0.5, -0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., '><_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"<>_1", 0, "(-191.75703, 0.0)", "(-0.5, -0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., '<>_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"<>_2", 0, "(191.75703, 0.0)", "(0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., '<>_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LX_1", 0, "(170.37500, 170.37500)", "(1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LX_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LX_2", 0, "(-170.37500, -170.37500)", "(-1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LX_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LZ_1", 0, "(170.37500, 170.37500)", "(0.0, -1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LZ_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LZ_2", 0, "(-170.37500, -170.37500)", "(0.0, 1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LZ_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"TUBO 1x2", -1, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCCIRCLEHOLLOWPROFILEDEF(.AREA., 'TUBO 1x2', #3, 150.00000,10.12500)"},
    {L"LLAM 1x2", -1, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LLAM 1x2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"2LLM_1", 0, "(-170.37500, 0.0)", "(-1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., '2LLM_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"2LLM_2", 0, "(170.37500, 0.0)", "(1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., '2LLM_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LLLM_1", 0, "(20.37500,0.0)", "(-1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LLLM_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LLLM_2", 0, "(-20.37500,0.0)", "(0.0, -1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LLLM_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"VVLM_1", 0, "(232.50703, 0.0)", "(0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'VVLM_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"VVLM_2", 0, "(-232.50703, 0.0)", "(-0.5, -0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'VVLM_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LVLM_1", 0, "(-191.75703, 0.0)", "(-0.5, -0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LVLM_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LVLM_2", 0, "(191.75703, 0.0)", "(0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LVLM_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LXLM_1", 0, "(170.37500, 170.37500)", "(1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LXLM_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LXLM_2", 0, "(-170.37500, -170.37500)", "(-1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LXLM_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LZLM_1", 0, "(170.37500, 170.37500)", "(0.0, -1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LZLM_1', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"LZLM_2", 0, "(-170.37500, -170.37500)", "(0.0, 1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'LZLM_2', #3, 300.00000, 300.00000,10.12500, $, $, $, $, $)"},
    {L"ULAM 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'ULAM 1x2', #3, 300.00000,150.50000,20.25000,10.12500, $, $, $, $)"},
    {L"UAP 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'UAP 1x2', #3, 300.00000,150.50000,20.25000,10.12500, $, $, $, $)"},
    {L"UULM_1", 0, "(54.87500, 0.0)", "(1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'UULM_1', #3, 300.00000,150.50000,20.25000,10.12500, $, $, $, $)"},
    {L"UULM_2", 0, "(-54.87500, 0.0)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'UULM_2', #3, 300.00000,150.50000,20.25000,10.12500, $, $, $, $)"},
    {L"2ULM_1", 0, "(-95.62500, 0.0)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., '2ULM_1', #3, 300.00000,150.50000,20.25000,10.12500, $, $, $, $)"},
    {L"2ULM_2", 0, "(95.62500, 0.0)", "(1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., '2ULM_2', #3, 300.00000,150.50000,20.25000,10.12500, $, $, $, $)"},
    {L"TEE 1x2", -1, "(0., 0.)", "(0.0, -1.0)",
     "IFCTSHAPEPROFILEDEF(.AREA., 'TEE 1x2', #3, 300.00000,300.00000,10.12500,10.12500, $, $, $, $, $, $)"},
    {L"RED 1x2", -1, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCCIRCLEPROFILEDEF(.AREA., 'RED 1x2', #3, 150.00000)"},
    {L"FRED 1x2", -1, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCCIRCLEPROFILEDEF(.AREA., 'FRED 1x2', #3, 150.00000)"},
    {L"W 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'W 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"HP 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'HP 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"PS 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'PS 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"VS 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'VS 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"VSE 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'VSE 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"CSE 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'CSE 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"CVS 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'CVS 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"TW 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCTSHAPEPROFILEDEF(.AREA., 'TW 1x2', #3, 300.00000,150.50000,10.12500,20.25000, $, $, $, $, $, $)"},
    {L"TS 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCTSHAPEPROFILEDEF(.AREA., 'TS 1x2', #3, 300.00000,150.50000,10.12500,20.25000, $, $, $, $, $, $)"},
    {L"WT 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCTSHAPEPROFILEDEF(.AREA., 'WT 1x2', #3, 300.00000,150.50000,10.12500,20.25000, $, $, $, $, $, $)"},
    {L"HE 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'HE 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"IPE 1x2", -1, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'IPE 1x2', #3, 150.50000,300.00000,10.12500,20.25000, $)"},
    {L"EC 1x2", -1, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCRECTANGLEPROFILEDEF(.AREA., 'EC 1x2', #3, 300.00000,10.12500)"},
    {L"RET 1x2", -1, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCRECTANGLEPROFILEDEF(.AREA., 'RET 1x2', #3, 300.00000,10.12500)"},
  };
  return rows;
}

const std::vector<OutlineRow>& outlineRows() {
  static const std::vector<const char*> lippedZ = {
      "(-84.12500, -109.25000)",
      "(-81.62500, -109.25000)",
      "(-81.62500, -147.50000)",
      "(-66.37500, -147.50000)",
      "(-66.37500, 150.00000)",
      "(84.12500, 150.00000)",
      "(84.12500, 139.87500)",
      "(81.62500, 139.87500)",
      "(81.62500, 147.50000)",
      "(-63.87500, 147.50000)",
      "(-63.87500, -150.00000)",
      "(-84.12500, -150.00000)",
      "(-84.12500, -109.25000)"};
  static const std::vector<const char*> symmetricZ = {
      "(-145.43750, -129.75000)",
      "(-135.31250, -129.75000)",
      "(-135.31250, -139.87500)",
      "(-5.06250, -139.87500)",
      "(-5.06250, 150.00000)",
      "(145.43750, 150.00000)",
      "(145.43750, 129.75000)",
      "(135.31250, 129.75000)",
      "(135.31250, 139.87500)",
      "(5.06250, 139.87500)",
      "(5.06250, -150.00000)",
      "(-145.43750, -150.00000)",
      "(-145.43750, -129.75000)"};
  static const std::vector<OutlineRow> rows = {
    {L"CART 1x2",
     -1,
     {"(-85.37500, -300.00000)",
      "(-65.12500, -300.00000)",
      "(-65.12500, -10.12500)",
      "(65.12500, -10.12500)",
      "(65.12500, -300.00000)",
      "(85.37500, -300.00000)",
      "(85.37500, -289.87500)",
      "(75.25000, -289.87500)",
      "(75.25000, 0.00000)",
      "(-75.25000, 0.00000)",
      "(-75.25000, -289.87500)",
      "(-85.37500, -289.87500)",
      "(-85.37500, -300.00000)"}},
    {L"ICAR_1",
     0,
     {"(170.87500, -160.12500)",
      "(170.87500, -139.87500)",
      "(30.50000, -139.87500)",
      "(30.50000, 139.87500)",
      "(170.87500, 139.87500)",
      "(170.87500, 160.12500)",
      "(160.75000, 160.12500)",
      "(160.75000, 150.00000)",
      "(20.37500, 150.00000)",
      "(20.37500, -150.00000)",
      "(160.75000, -150.00000)",
      "(160.75000, -160.12500)",
      "(170.87500, -160.12500)"}},
    {L"ICAR_2",
     0,
     {"(-170.87500, 160.12500)",
      "(-170.87500, 139.87500)",
      "(-30.50000, 139.87500)",
      "(-30.50000, -139.87500)",
      "(-170.87500, -139.87500)",
      "(-170.87500, -160.12500)",
      "(-160.75000, -160.12500)",
      "(-160.75000, -150.00000)",
      "(-20.37500, -150.00000)",
      "(-20.37500, 150.00000)",
      "(-160.75000, 150.00000)",
      "(-160.75000, 160.12500)",
      "(-170.87500, 160.12500)"}},
    {L"Z 1x2", -1, lippedZ},
    {L"ZS 1x2", -1, symmetricZ},
    {L"ZI 1x2", -1, lippedZ},
    {L"ZSI 1x2", -1, symmetricZ},
    {L"PC 1x2",
     -1,
     {"(0.00000, 150.00000)",
      "(75.25000, 150.00000)",
      "(75.25000, 129.75000)",
      "(20.37500, 129.75000)",
      "(20.37500, -129.75000)",
      "(75.25000, -129.75000)",
      "(75.25000, -150.00000)",
      "(-75.25000, -150.00000)",
      "(-75.25000, -129.75000)",
      "(-20.37500, -129.75000)",
      "(-20.37500, 129.75000)",
      "(-10.25000, 129.75000)",
      "(-10.25000, -129.75000)",
      "(10.25000, -129.75000)",
      "(10.25000, 129.75000)",
      "(-75.25000, 129.75000)",
      "(-75.25000, 150.00000)",
      "(0.00000, 150.00000)"}},
    {L"PSA 1x2",
     -1,
     {"(0.00000, 150.00000)",
      "(75.25000, 150.00000)",
      "(75.25000, 129.75000)",
      "(1.25000, 129.75000)",
      "(1.25000, -109.25000)",
      "(5.06250, -109.25000)",
      "(5.06250, -150.00000)",
      "(-5.06250, -150.00000)",
      "(-5.06250, -109.25000)",
      "(-1.25000, -109.25000)",
      "(-1.25000, 129.75000)",
      "(-75.25000, 129.75000)",
      "(-75.25000, 150.00000)",
      "(0.00000, 150.00000)"}},
  };
  return rows;
}
// clang-format on

class ParametricFamily : public testing::TestWithParam<ParametricRow> {};

TEST_P(ParametricFamily, IsWrittenFromItsDimensions) {
  const ParametricRow& row = GetParam();
  EXPECT_EQ(written(row.name, row.flangeSide),
            (Lines{std::string("#1= IFCCARTESIANPOINT(") + row.point + ");",
                   std::string("#2= IFCDIRECTION(") + row.direction + ");",
                   "#3= IFCAXIS2PLACEMENT2D(#1, #2);", std::string("#4= ") + row.profile + ";"}));
}

INSTANTIATE_TEST_SUITE_P(Families, ParametricFamily, testing::ValuesIn(parametricRows()),
                         [](const auto& info) { return test::testNameOf(info.param.name); });

class OutlineFamily : public testing::TestWithParam<OutlineRow> {};

TEST_P(OutlineFamily, IsWrittenFromItsDimensions) {
  const OutlineRow& row = GetParam();
  Lines expected;
  const auto expect = [&](const std::string& body) {
    std::string reference = "#" + std::to_string(expected.size() + 1);
    expected.emplace_back(reference).append("= ").append(body).append(";");
    return reference;
  };
  std::string references;
  for (const char* const point : row.points) {
    references.append(references.empty() ? "" : ", ");
    references.append(expect(std::string("IFCCARTESIANPOINT(").append(point).append(")")));
  }
  const std::string polyline = expect("IFCPOLYLINE((" + references + "))");
  const std::wstring_view wide = row.name;
  const std::string name(wide.begin(), wide.end());
  expect("IFCARBITRARYCLOSEDPROFILEDEF(.AREA., '" + name + "', " + polyline + ")");
  EXPECT_EQ(written(row.name, row.flangeSide), expected);
}

INSTANTIATE_TEST_SUITE_P(Families, OutlineFamily, testing::ValuesIn(outlineRows()),
                         [](const auto& info) { return test::testNameOf(info.param.name); });

TEST(FamilyTable, HasNoRowWithoutAnExpectation) {
  std::set<std::wstring, std::less<>> expected;
  for (const ParametricRow& row : parametricRows()) {
    expected.emplace(profileFamilyOf(row.name));
  }
  for (const OutlineRow& row : outlineRows()) {
    expected.emplace(profileFamilyOf(row.name));
  }
  std::set<std::wstring, std::less<>> known;
  for (const FamilyRow& row : familyTable()) {
    known.insert(row.name);
  }
  EXPECT_EQ(known, expected);
}

TEST(FamilyTable, StandsInItsOrder) {
  const std::vector<std::wstring_view> expected = {
      L"ILAM",   L"CS",     L"][_1",   L"][_2",    L"[",      L"[]_1",   L"[]_2",   L"UENR",
      L"UUE_1",  L"UUE_2",  L"IENR_1", L"IENR_2",  L"CA_1",   L"CA_2",   L"BOX",    L"L",
      L"LLM",    L"LLM_EN", L"LFF",    L"LLAM_EN", L"2L_1",   L"2L_2",   L"LL_1",   L"LL_2",
      L"><_1",   L"><_2",   L"<>_1",   L"<>_2",    L"LX_1",   L"LX_2",   L"LZ_1",   L"LZ_2",
      L"CART",   L"ICAR_1", L"ICAR_2", L"TUBO",    L"Z",      L"ZS",     L"ZI",     L"ZSI",
      L"LLAM",   L"2LLM_1", L"2LLM_2", L"LLLM_1",  L"LLLM_2", L"VVLM_1", L"VVLM_2", L"LVLM_1",
      L"LVLM_2", L"LXLM_1", L"LXLM_2", L"LZLM_1",  L"LZLM_2", L"ULAM",   L"UAP",    L"UULM_1",
      L"UULM_2", L"2ULM_1", L"2ULM_2", L"TEE",     L"RED",    L"FRED",   L"W",      L"HP",
      L"PS",     L"CS",     L"VS",     L"VSE",     L"CSE",    L"CVS",    L"TW",     L"TS",
      L"WT",     L"PC",     L"HE",     L"IPE",     L"PSA",    L"EC",     L"RET"};
  std::vector<std::wstring_view> families;
  for (const FamilyRow& row : familyTable()) {
    families.push_back(row.name);
  }
  EXPECT_EQ(families, expected);
  EXPECT_EQ(findFamily(L"CS"), &familyTable()[1]) << "the second one is never reached";
  EXPECT_EQ(findFamily(L"XPTO"), nullptr);
  EXPECT_EQ(findFamily(L""), nullptr);
}

TEST(WriteProfile, TheFlangeSideReachesOnlyTheSingleChannels) {
  const auto pointOf = [](std::wstring_view name, int flangeSide) {
    return written(name, flangeSide)[0];
  };
  EXPECT_EQ(pointOf(L"[", -1), "#1= IFCCARTESIANPOINT((-75.25000, 0.));");
  EXPECT_EQ(pointOf(L"[", 0), "#1= IFCCARTESIANPOINT((0.00000, 0.));");
  EXPECT_EQ(pointOf(L"UENR", -1), "#1= IFCCARTESIANPOINT((-75.25000, 0.));");
  EXPECT_EQ(pointOf(L"UENR", 0), "#1= IFCCARTESIANPOINT((0.00000, 0.));");
  for (const std::wstring name : {L"W", L"ULAM", L"CART", L"L", L"UUE_1"}) {
    EXPECT_EQ(written(name, -1), written(name, 0));
  }
}

TEST(WriteProfile, TheFirstCsDecides) {
  EXPECT_EQ(written(L"CS", -1)[3].substr(0, 23), "#4= IFCISHAPEPROFILEDEF");
}

TEST(WriteProfile, OnlyTheFamilyWordIsCompared) {
  EXPECT_EQ(written(L"W 310 x 38.7", -1)[3],
            "#4= IFCISHAPEPROFILEDEF(.AREA., 'W 310 x 38.7', #3, "
            "150.50000,300.00000,10.12500,20.25000, $)"
            ";");
}

// ---- The second side of a rectangle ------------------------------------------------------------

std::string rectangle(float d1, float d2, float d3) {
  const SectionDims sides = {100, d1, d2, d3};
  const std::string line = written(L"RET", -1, sides)[3];
  return line.substr(line.rfind(',') + 1);
}

TEST(WriteProfile, RetTakesTheFirstSideThatCounts) {
  EXPECT_EQ(rectangle(30, 20, 10), "10.00000);");
  EXPECT_EQ(rectangle(30, 20, 0), "20.00000);");
  EXPECT_EQ(rectangle(30, 0, 0), "30.00000);");
  EXPECT_EQ(rectangle(0, 0, 0), "0.00000);");
  EXPECT_EQ(rectangle(-30, 0, 0), "-30.00000);") << "the last resort is not checked";
  EXPECT_EQ(rectangle(30, 20, -10), "20.00000);");
}

TEST(WriteProfile, RetComparesInDoublePrecision) {
  EXPECT_EQ(rectangle(30, 0.01F, 0.0005F), "0.01000);");
  // 0.001 in single precision lies a little above 0.001, the single below it does not.
  EXPECT_EQ(rectangle(30, 20, 0.001F), "0.00100);");
  EXPECT_EQ(rectangle(30, 20, 0.00099999F), "20.00000);");
  EXPECT_EQ(rectangle(30, 0.001F, 0), "0.00100);");
  EXPECT_EQ(rectangle(30, 0.00099999F, 0), "30.00000);");
}

TEST(WriteProfile, EcTakesD3Alone) {
  const SectionDims sides = {100, 30, 20, 0};
  EXPECT_EQ(written(L"EC", -1, sides)[3],
            "#4= IFCRECTANGLEPROFILEDEF(.AREA., 'EC', #3, 100.00000,0.00000);");
}

// ---- Unknown families --------------------------------------------------------------------------

Lines unknownLines() {
  return {"#1= IFCCARTESIANPOINT((-2.00000, -2.00000));",
          "#2= IFCCARTESIANPOINT((2.00000, -2.00000));",
          "#3= IFCCARTESIANPOINT((2.00000, 2.00000));",
          "#4= IFCCARTESIANPOINT((-2.00000, 2.00000));",
          "#5= IFCCARTESIANPOINT((-2.00000, -2.00000));",
          "#6= IFCPOLYLINE((#1, #2, #3, #4, #5));",
          "#7= IFCARBITRARYCLOSEDPROFILEDEF(.AREA., 'UnknownProfile', #6);"};
}

TEST(WriteProfile, AnUnknownFamilyIsReplaced) {
  EXPECT_EQ(written(L"XPTO 1 2", simpleFlangeSide), unknownLines());
}

TEST(WriteProfile, EachBarOfAnUnknownFamilyHasASquareOfItsOwn) {
  test::exportedLines([](StepWriter& writer) {
    EXPECT_EQ(writeProfile(writer, L"XPTO", dims, simpleFlangeSide), 7);
    EXPECT_EQ(writeProfile(writer, L"XPTO", dims, simpleFlangeSide), 14);
  });
}

TEST(WriteProfile, NamesThatAreNearlyKnownAreUnknown) {
  for (const std::wstring name :
       {L"", L" W", L"w", L"ilam", L"W310", L"IENR", L"IENR200", L"][", L"[]", L"2L", L"LX",
        L"2L_3", L"2L_ASSIMETRICO_1", L"2L_ASSIMETRICO_2", L"2L_ASSIMETRICO", L"CSX", L"W	1",
        L"UNKNOWN"}) {
    EXPECT_EQ(written(name, halfFlangeSide), unknownLines());
  }
}

}  // namespace
}  // namespace exportifc
