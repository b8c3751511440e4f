#include "plugin/bar_export.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "elements/assemblies.h"
#include "elements/bar_element.h"
#include "model/bar.h"
#include "model/bar_type.h"
#include "model/length_unit.h"
#include "plugin/known_sections.h"
#include "plugin/texts.h"
#include "profiles/profile_dispatch.h"

namespace exportifc {

namespace {

using EntityNumbers = std::vector<std::int32_t>;

/// Truncated toward zero; NaN and values outside 32 bits give the smallest integer, as the
/// processor's conversion does.
std::int32_t truncated(float value) {
  constexpr float limit = 0x1p31F;
  return value >= -limit && value < limit ? static_cast<std::int32_t>(value)
                                          : std::numeric_limits<std::int32_t>::min();
}

/// Section rotation in degrees. The half turn is the host's own approximation, in single precision
/// where it computes in single precision, so that angles agree with its drawings.
double rotationDegrees(std::int32_t quarterTurns, float angle) {
  constexpr float halfTurn = 3.1415F;  // Fixed shape: almost pi.
  return double{sectionAngle(quarterTurns, angle) / halfTurn} * 180.0;
}

Vec3 millimetres(const std::array<float, 3>& point, double factor) {
  return {.x = point[0] * factor, .y = point[1] * factor, .z = point[2] * factor};
}

/// The elements written so far, by where they belong.
struct Groups {
  EntityNumbers frameElements;
  EntityNumbers trussElements;
  EntityNumbers storeyElements;

  EntityNumbers& of(BarGroup group) {
    switch (group) {
      case BarGroup::frame: return frameElements;
      case BarGroup::truss: return trussElements;
      default: return storeyElements;
    }
  }
};

void keep(EntityNumbers& elements, std::int32_t element) {
  if (element > 0) {
    elements.push_back(element);
  }
}

}  // namespace

float sectionAngle(std::int32_t quarterTurns, float angle) {
  constexpr double quarterTurn = 1.5707499980926514;  // Fixed shape: almost pi.
  return static_cast<float>(quarterTurns * quarterTurn) + angle;
}

void exportBars(StepWriter& writer, BarChoice choice, BarSource& model, UserInterface& ui) {
  const double factor = millimetresPer(model.unitCode());
  const std::int32_t barCount = model.barCount();
  Groups groups;
  SourceBar bar;
  KnownSections sections;

  for (std::int32_t index = 0; index < barCount && model.next(index, bar); ++index) {
    if (bar.record == nullptr) {
      ui.show({.id = MessageId::barWithoutRecord});
      continue;
    }
    const BarType& type = barTypeOf(truncated(bar.typeCode));
    const bool hidden = choice == BarChoice::visibleOnly && bar.visible == 0;
    if (!type.isExported || hidden) {
      continue;
    }
    // All that is read of the record is read here: a message box below lets the host run, which may
    // change or drop it.
    const double rotation = rotationDegrees(bar.record->quarterTurns, bar.angle);
    std::optional<BarPlacement> placement;
    for (SectionPart& part : sections.partsOf(*bar.record)) {
      part.bar.start = millimetres(bar.start, factor);
      part.bar.end = millimetres(bar.end, factor);
      part.bar.rotation = rotation;
      part.bar.elementKind = type.mayBeColumn ? columnKind : 0;
      if (!placement) {  // the second half lies where the first does
        placement = placementOf(part.bar);
      }
      if (part.row == nullptr) {
        ui.show({.id = MessageId::unknownProfile, .profileName = part.profileName()});
      }
      const std::int32_t profile = writeProfile(writer, part.row, part.profileName(), bar.dims,
                                                part.isHalf ? halfFlangeSide : simpleFlangeSide);
      keep(groups.of(type.group), writeBar(writer, part.bar, *placement, profile));
    }
  }
  model.close();

  const std::int32_t frame =
      writeElementAssembly(writer, groups.frameElements, texts::frameAssembly);
  const std::int32_t truss =
      writeElementAssembly(writer, groups.trussElements, texts::trussAssembly);
  keep(groups.storeyElements, frame);
  keep(groups.storeyElements, truss);
  writeStoreyContainment(writer, groups.storeyElements);
}

}  // namespace exportifc
