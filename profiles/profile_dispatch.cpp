#include "profiles/profile_dispatch.h"

#include <cstddef>
#include <unordered_map>

#include "profiles/section_name.h"

namespace exportifc {

namespace {

using enum Argument;

// The first row with the family word decides.
// clang-format off
constexpr FamilyRow table[] = {
    {L"ILAM", Parametric::I1, {d0, d1, d2, d3}},
    {L"CS", Parametric::I1, {d0, d1, d2, d3}},
    {L"][_1", Parametric::U1, {d0, d1, d2, d3}},
    {L"][_2", Parametric::U2, {d0, d1, d2, d3}},
    {L"[", Parametric::U5, {d0, d1, d3}},
    {L"[]_1", Parametric::U3, {d0, d1, d3, d4}},
    {L"[]_2", Parametric::U4, {d0, d1, d3, d4}},
    {L"UENR", Parametric::C1, {d0, d1, d2, d3}},
    {L"UUE_1", Parametric::C2, {d0, d1, d2, d3, d4}},
    {L"UUE_2", Parametric::C3, {d0, d1, d2, d3, d4}},
    {L"IENR_1", Parametric::C4, {d0, d1, d2, d3, d4}},
    {L"IENR_2", Parametric::C5, {d0, d1, d2, d3, d4}},
    {L"CA_1", Parametric::C2, {d0, d1, d2, d3, zero}},
    {L"CA_2", Parametric::C3, {d0, d1, d2, d3, zero}},
    {L"BOX", Parametric::RH, {d0, d1, d3}},
    {L"L", Parametric::L1, {d0, d3}},
    {L"LLM", Parametric::L1, {d0, d3}},
    {L"LLM_EN", Parametric::L2, {d0, d3}},
    {L"LFF", Parametric::L3, {d0, d3}},
    {L"LLAM_EN", Parametric::L3, {d0, d3}},
    {L"2L_1", Parametric::L4, {d0, d3, d4}},
    {L"2L_2", Parametric::L5, {d0, d3, d4}},
    {L"LL_1", Parametric::L6, {d0, d3, d4}},
    {L"LL_2", Parametric::L7, {d0, d3, d4}},
    {L"><_1", Parametric::L8, {d0, d3, d4}},
    {L"><_2", Parametric::L9, {d0, d3, d4}},
    {L"<>_1", Parametric::L10, {d0, d3, d4}},
    {L"<>_2", Parametric::L11, {d0, d3, d4}},
    {L"LX_1", Parametric::L12, {d0, d3, d4}},
    {L"LX_2", Parametric::L13, {d0, d3, d4}},
    {L"LZ_1", Parametric::L14, {d0, d3, d4}},
    {L"LZ_2", Parametric::L15, {d0, d3, d4}},
    {L"CART", Outline::cart, {d0, d1, d2, d3}},
    {L"ICAR_1", Outline::icarFirst, {d0, d1, d2, d3, d4}},
    {L"ICAR_2", Outline::icarSecond, {d0, d1, d2, d3, d4}},
    {L"TUBO", Parametric::CH, {d0, d3}},
    {L"Z", Outline::z, {d0, d1, d2, d3, d4, d5}},
    {L"ZS", Outline::zs, {d0, d1, d2, d3}},
    {L"ZI", Outline::z, {d0, d1, d2, d3, d4, d5}},  // d6 is not used by the outline
    {L"ZSI", Outline::z, {d0, d1, d1, d2, d2, d3}},
    {L"LLAM", Parametric::L3, {d0, d3}},
    {L"2LLM_1", Parametric::L4, {d0, d3, d4}},
    {L"2LLM_2", Parametric::L5, {d0, d3, d4}},
    {L"LLLM_1", Parametric::L6, {d0, d3, d4}},
    {L"LLLM_2", Parametric::L7, {d0, d3, d4}},
    {L"VVLM_1", Parametric::L8, {d0, d3, d4}},
    {L"VVLM_2", Parametric::L9, {d0, d3, d4}},
    {L"LVLM_1", Parametric::L10, {d0, d3, d4}},
    {L"LVLM_2", Parametric::L11, {d0, d3, d4}},
    {L"LXLM_1", Parametric::L12, {d0, d3, d4}},
    {L"LXLM_2", Parametric::L13, {d0, d3, d4}},
    {L"LZLM_1", Parametric::L14, {d0, d3, d4}},
    {L"LZLM_2", Parametric::L15, {d0, d3, d4}},
    {L"ULAM", Parametric::U6, {d0, d1, d2, d3}},
    {L"UAP", Parametric::U6, {d0, d1, d2, d3}},
    {L"UULM_1", Parametric::U7, {d0, d1, d2, d3, d4}},
    {L"UULM_2", Parametric::U8, {d0, d1, d2, d3, d4}},
    {L"2ULM_1", Parametric::U9, {d0, d1, d2, d3, d4}},
    {L"2ULM_2", Parametric::U10, {d0, d1, d2, d3, d4}},
    {L"TEE", Parametric::T1, {d0, d3}},
    {L"RED", Parametric::CI, {d0}},
    {L"FRED", Parametric::CI, {d0}},
    {L"W", Parametric::I1, {d0, d1, d2, d3}},
    {L"HP", Parametric::I1, {d0, d1, d2, d3}},
    {L"PS", Parametric::I1, {d0, d1, d2, d3}},
    {L"CS", Parametric::I1, {d0, d1, d2, d3}},  // never reached: the first one decides
    {L"VS", Parametric::I1, {d0, d1, d2, d3}},
    {L"VSE", Parametric::I1, {d0, d1, d2, d3}},
    {L"CSE", Parametric::I1, {d0, d1, d2, d3}},
    {L"CVS", Parametric::I1, {d0, d1, d2, d3}},
    {L"TW", Parametric::T2, {d0, d1, d2, d3}},
    {L"TS", Parametric::T2, {d0, d1, d2, d3}},
    {L"WT", Parametric::T2, {d0, d1, d2, d3}},
    {L"PC", Outline::pc, {d0, d1, d2, d3, d4}},
    {L"HE", Parametric::I1, {d0, d1, d2, d3}},
    {L"IPE", Parametric::I1, {d0, d1, d2, d3}},
    {L"PSA", Outline::psa, {d0, d1, d2, d3, d4, d5}},
    {L"EC", Parametric::R, {d0, d3}},
    {L"RET", Parametric::R, {d0, rectangleSide}},
};
// clang-format on

/// The second side of a rectangle: hosts fill one of three dimensions and leave the others at 0.
double secondRectangleSide(const float* dims) {
  constexpr double smallestSide = 0.001;
  if (double{dims[3]} >= smallestSide) {
    return dims[3];
  }
  if (double{dims[2]} >= smallestSide) {
    return dims[2];
  }
  return dims[1];
}

double argumentValue(Argument argument, const float* dims) {
  switch (argument) {
    case none:
    case zero: return 0.0;
    case rectangleSide: return secondRectangleSide(dims);
    default: return dims[static_cast<int>(argument) - static_cast<int>(d0)];
  }
}

}  // namespace

std::span<const FamilyRow> familyTable() { return table; }

const FamilyRow* findFamily(std::wstring_view family) {
  static const auto rows = [] {
    std::unordered_map<std::wstring_view, const FamilyRow*> byFamily;
    for (const FamilyRow& row : table) {
      byFamily.emplace(row.family, &row);  // keeps the first
    }
    return byFamily;
  }();
  const auto found = rows.find(family);
  return found == rows.end() ? nullptr : found->second;
}

ProfileArguments profileArguments(const FamilyRow& row, const float* sectionDims, int flangeSide) {
  ProfileArguments arguments{static_cast<double>(flangeSide)};
  for (std::size_t i = 0; i < row.arguments.size(); ++i) {
    arguments[i + 1] = argumentValue(row.arguments[i], sectionDims);
  }
  return arguments;
}

std::int32_t writeProfile(StepWriter& writer, const HostText& name, const float* sectionDims,
                          int flangeSide, UserInterface& ui) {
  return writeProfile(writer, findFamily(profileFamilyOf(name)), name, sectionDims, flangeSide, ui);
}

std::int32_t writeProfile(StepWriter& writer, const FamilyRow* row, const HostText& name,
                          const float* sectionDims, int flangeSide, UserInterface& ui) {
  if (row == nullptr) {
    ui.show(L"Perfil Desconhecido", L"Aviso");
    return writeUnknownProfile(writer, name, ui);
  }
  const ProfileArguments arguments = profileArguments(*row, sectionDims, flangeSide);
  if (const auto* const variant = std::get_if<Parametric>(&row->writer)) {
    return writeParametricProfile(writer, *variant, name, arguments);
  }
  return writeOutlineProfile(writer, std::get<Outline>(row->writer), name, arguments);
}

}  // namespace exportifc
