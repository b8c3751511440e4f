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

/// Adds an element, or an assembly, unless none was written.
void add(EntityNumbers& elements, std::int32_t written) {
  if (written != 0) {
    elements.push_back(written);
  }
}

/// The content of one export in the making.
class BarExport {
 public:
  /// `factor`: from the model's coordinates to millimetres.
  BarExport(StepWriter& writer, double factor, MessageReceiver& messages)
      : writer_(writer), factor_(factor), messages_(messages) {}

  /// A bar that has a record: one element, or one for each half of a built-up section.
  void write(const SourceBar& bar, const BarType& type) {
    // All that is read of the record is read here: a message box below lets the host run, which may
    // change or drop it.
    const double rotation = rotationDegrees(bar.record->quarterTurns, bar.angle);
    std::optional<BarPlacement> placement;
    for (SectionPart& part : sections_.partsOf(*bar.record)) {
      part.bar.start = millimetres(bar.start, factor_);
      part.bar.end = millimetres(bar.end, factor_);
      part.bar.rotation = rotation;
      part.bar.elementKind =
          type.mayBeColumn ? ElementKind::columnIfUpright : ElementKind::beamOrMember;
      if (!placement) {  // the second half lies where the first does
        placement = placementOf(part.bar);
      }
      add(groups_.of(type.group),
          writeBar(writer_, part.bar, *placement, profileOf(part, bar.dims)));
    }
  }

  /// The assemblies of what was written, and the storey that holds all of it.
  void writeGroups() {
    EntityNumbers& storey = groups_.storeyElements;
    const std::int32_t frame =
        writeElementAssembly(writer_, groups_.frameElements, texts::frameAssembly);
    const std::int32_t truss =
        writeElementAssembly(writer_, groups_.trussElements, texts::trussAssembly);
    add(storey, frame);
    add(storey, truss);
    writeStoreyContainment(writer_, storey);
  }

 private:
  std::int32_t profileOf(const SectionPart& part, const SectionDims& dims) {
    if (part.row == nullptr) {
      messages_.show({.id = MessageId::unknownProfile, .profileName = part.profileName()});
    }
    return writeProfile(writer_, part.row, part.profileName(), dims,
                        part.isHalf ? halfFlangeSide : simpleFlangeSide);
  }

  StepWriter& writer_;
  double factor_;
  MessageReceiver& messages_;
  KnownSections sections_;
  Groups groups_;
};

}  // namespace

float sectionAngle(std::int32_t quarterTurns, float angle) {
  constexpr double quarterTurn = 1.5707499980926514;  // Fixed shape: almost pi.
  return static_cast<float>(quarterTurns * quarterTurn) + angle;
}

void exportBars(StepWriter& writer, BarChoice choice, BarSource& model, MessageReceiver& messages) {
  BarExport content(writer, millimetresPer(model.unitCode()), messages);
  const std::int32_t barCount = model.barCount();
  SourceBar bar;
  for (std::int32_t index = 0; index < barCount && model.next(index, bar); ++index) {
    if (bar.record == nullptr) {
      messages.show({.id = MessageId::barWithoutRecord});
      continue;
    }
    const BarType& type = barTypeOf(truncated(bar.typeCode));
    const bool isChosen = choice == BarChoice::all || bar.visible != 0;
    if (type.isExported && isChosen) {
      content.write(bar, type);
    }
  }
  model.close();
  content.writeGroups();
}

}  // namespace exportifc
