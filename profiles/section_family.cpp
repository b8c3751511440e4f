#include "profiles/section_family.h"

namespace exportifc {

namespace {

using enum Dimension;
using enum Meaning;
using enum Outline;
using enum Parametric;

using Arguments = std::span<const FamilyArgument>;

constexpr bool mayBeZero = true;

// What the families' profiles take, one line a list of arguments.
// clang-format off
constexpr FamilyArgument flanged[] = {{d0, depth}, {d1, width}, {d2, flangeThickness}, {d3, webThickness}};
constexpr FamilyArgument channel[] = {{d0, depth}, {d1, width}, {d2, webThickness}, {d3, flangeThickness}};
constexpr FamilyArgument channelsFacing[] = {{d0, depth}, {d1, width}, {d2, webThickness}, {d3, flangeThickness}, {d4, overBoth}};
constexpr FamilyArgument channelsBackToBack[] = {{d0, depth}, {d1, width}, {d2, webThickness}, {d3, flangeThickness}, {d4, gap, mayBeZero}};
constexpr FamilyArgument folded[] = {{d0, depth}, {d1, width}, {d3, thickness}};
constexpr FamilyArgument foldedFacing[] = {{d0, depth}, {d1, width}, {d3, thickness}, {d4, overBoth}};
constexpr FamilyArgument foldedBackToBack[] = {{d0, depth}, {d1, width}, {d2, thickness}, {d3, gap, mayBeZero}};
constexpr FamilyArgument lipped[] = {{d0, depth}, {d1, width}, {d2, lip}, {d3, thickness}};
constexpr FamilyArgument lippedPair[] = {{d0, depth}, {d1, width}, {d2, lip}, {d3, thickness}, {d4, gap, mayBeZero}};
constexpr FamilyArgument lippedTouching[] = {{d0, depth}, {d1, width}, {d2, lip}, {d3, thickness}, {zero, gap, mayBeZero}};
constexpr FamilyArgument equalLegs[] = {{d0, leg}, {d3, thickness}};
constexpr FamilyArgument equalLegsApart[] = {{d0, leg}, {d3, thickness}, {d4, gap, mayBeZero}};
constexpr FamilyArgument equalLegsByCentres[] = {{d0, leg}, {d3, thickness}, {d4, betweenCentres}};
constexpr FamilyArgument equalLegsByCorners[] = {{d0, leg}, {d3, thickness}, {d4, overCorners}};
constexpr FamilyArgument hat[] = {{d0, depth}, {d1, overWebs}, {d2, brim}, {d3, thickness}};
constexpr FamilyArgument hatPair[] = {{d0, overWebs}, {d1, hatHeight}, {d2, brim}, {d3, thickness}, {d4, gap, mayBeZero}};
constexpr FamilyArgument tube[] = {{d0, diameter}, {d3, thickness}};
constexpr FamilyArgument lippedZ[] = {{d0, depth}, {d1, topFlangeWidth}, {d2, bottomFlangeWidth}, {d3, topLip}, {d4, bottomLip}, {d5, thickness}};
constexpr FamilyArgument symmetricZ[] = {{d0, depth}, {d1, flangeWidth}, {d2, lip}, {d3, thickness}};
constexpr FamilyArgument symmetricZByHalves[] = {{d0, depth}, {d1, flangeWidth}, {d1, flangeWidth}, {d2, lip}, {d2, lip}, {d3, thickness}};
constexpr FamilyArgument roundBar[] = {{d0, diameter}};
constexpr FamilyArgument twoWebBox[] = {{d0, depth}, {d1, flangeWidth}, {d2, flangeThickness}, {d3, webThickness}, {d4, overWebs}};
constexpr FamilyArgument unequalFlanges[] = {{d0, depth}, {d1, topFlangeWidth}, {d2, topFlangeThickness}, {d3, bottomFlangeWidth}, {d4, bottomFlangeThickness}, {d5, webThickness}};
constexpr FamilyArgument rectangle[] = {{d0, depth}, {d3, width}};
constexpr FamilyArgument rectangleByAnySide[] = {{d0, depth}, {rectangleSide, width}};
// clang-format on

consteval SectionFamily simple(std::wstring_view word, ProfileWriter profile, Arguments arguments) {
  return {.word = word, .isBuiltUp = false, .profiles = {profile}, .arguments = arguments};
}

consteval SectionFamily builtUp(std::wstring_view word, ProfileWriter first, ProfileWriter second,
                                Arguments arguments) {
  return {.word = word, .isBuiltUp = true, .profiles = {first, second}, .arguments = arguments};
}

/// Two halves without a profile: the stand-in for unknown ones is written.
consteval SectionFamily builtUpUnknown(std::wstring_view word) {
  return {.word = word, .isBuiltUp = true, .profiles = {}, .arguments = {}};
}

// The first row with the family word decides.
constexpr SectionFamily table[] = {
    simple(L"ILAM", I1, flanged),
    simple(L"CS", I1, flanged),
    builtUp(L"][", U1, U2, foldedBackToBack),
    simple(L"[", U5, folded),
    builtUp(L"[]", U3, U4, foldedFacing),
    simple(L"UENR", C1, lipped),
    builtUp(L"UUE", C2, C3, lippedPair),
    builtUp(L"IENR", C4, C5, lippedPair),
    builtUp(L"CA", C2, C3, lippedTouching),
    simple(L"BOX", RH, folded),
    simple(L"L", L1, equalLegs),
    simple(L"LLM", L1, equalLegs),
    simple(L"LLM_EN", L2, equalLegs),
    simple(L"LFF", L3, equalLegs),
    simple(L"LLAM_EN", L3, equalLegs),
    builtUp(L"2L", L4, L5, equalLegsApart),
    builtUp(L"LL", L6, L7, equalLegsByCentres),
    builtUp(L"><", L8, L9, equalLegsApart),
    builtUp(L"<>", L10, L11, equalLegsByCorners),
    builtUp(L"LX", L12, L13, equalLegsApart),
    builtUp(L"LZ", L14, L15, equalLegsApart),
    simple(L"CART", cart, hat),
    builtUp(L"ICAR", icarFirst, icarSecond, hatPair),
    simple(L"TUBO", CH, tube),
    simple(L"Z", z, lippedZ),
    simple(L"ZS", zs, symmetricZ),
    simple(L"ZI", z, lippedZ),
    simple(L"ZSI", z, symmetricZByHalves),
    simple(L"LLAM", L3, equalLegs),
    builtUp(L"2LLM", L4, L5, equalLegsApart),
    builtUp(L"LLLM", L6, L7, equalLegsByCentres),
    builtUp(L"VVLM", L8, L9, equalLegsApart),
    builtUp(L"LVLM", L10, L11, equalLegsByCorners),
    builtUp(L"LXLM", L12, L13, equalLegsApart),
    builtUp(L"LZLM", L14, L15, equalLegsApart),
    simple(L"ULAM", U6, channel),
    simple(L"UAP", U6, channel),
    builtUp(L"UULM", U7, U8, channelsFacing),
    builtUp(L"2ULM", U9, U10, channelsBackToBack),
    simple(L"TEE", T1, equalLegs),
    simple(L"RED", CI, roundBar),
    simple(L"FRED", CI, roundBar),
    simple(L"W", I1, flanged),
    simple(L"HP", I1, flanged),
    simple(L"PS", I1, flanged),
    simple(L"CS", I1, flanged),  // never reached: the first one decides. Fixed shape: second CS.
    simple(L"VS", I1, flanged),
    simple(L"VSE", I1, flanged),
    simple(L"CSE", I1, flanged),
    simple(L"CVS", I1, flanged),
    simple(L"TW", T2, flanged),
    simple(L"TS", T2, flanged),
    simple(L"WT", T2, flanged),
    simple(L"PC", pc, twoWebBox),
    simple(L"HE", I1, flanged),
    simple(L"IPE", I1, flanged),
    simple(L"PSA", psa, unequalFlanges),
    simple(L"EC", R, rectangle),
    simple(L"RET", R, rectangleByAnySide),
    builtUpUnknown(L"2L_ASSIMETRICO"),
};

}  // namespace

std::span<const SectionFamily> sectionFamilies() { return table; }

}  // namespace exportifc
