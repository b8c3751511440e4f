// One bar: as a source delivers it, and as the element writer takes it.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "exportifc/plugin.h"
#include "step/host_text.h"

namespace exportifc {

/// The section's dimensions d0 to d9, in millimetres in the file: written as given, never
/// converted, whatever the model's length unit. docs/profiles.md says which family reads which.
using SectionDims = std::array<float, 10>;

/// A point or vector; lengths in millimetres.
struct Vec3 {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

/// What a bar may be written as. The numbers are those of the agreed hand-over, not bar types.
enum class ElementKind : std::int32_t {
  beamOrMember = 0,
  columnIfUpright = 3,
};

/// What the bar loop hands to the element writer for one bar, or for one half of a built-up
/// section. Texts are UTF-16 code units.
struct BarGeometry {
  Vec3 start;
  Vec3 end;
  HostText sectionName;   ///< the bar's whole section text
  HostText sectionLabel;  ///< family word, or the half's name
  double rotation = 0.0;  ///< of the section about the bar, degrees
  // Always zero: places of the hand-over that no section makes use of.
  // Fixed shape: zero fields.
  std::uint64_t unused1 = 0;
  std::uint64_t unused2 = 0;
  std::array<std::uint64_t, 2> unused3{};
  ElementKind elementKind = ElementKind::beamOrMember;
};

/// One bar as a source delivers it, in the model's length unit. The bar loop keeps one of these for
/// a whole export: what a source leaves alone keeps the value of the bar before.
struct SourceBar {
  const BarRecord* record = nullptr;  ///< owned by the source or the host; null: no such record
  float typeCode = 0.0F;              ///< truncated toward zero; see `barTypes`
  std::int32_t visible = 0;           ///< 0 hidden
  float angle = 0.0F;                 ///< of the section about the bar, radians
  std::array<float, 3> start{};
  std::array<float, 3> end{};
  SectionDims dims{};
};

/// The record's section text up to its terminator (at most the field's 48 bytes), each byte
/// sign-extended to a UTF-16 code unit: 0x80 to 0xFF become U+FF80 to U+FFFF on every platform.
void widenSectionName(const BarRecord& record, std::wstring& name);

}  // namespace exportifc
