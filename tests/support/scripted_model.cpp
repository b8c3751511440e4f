#include "tests/support/scripted_model.h"

#include <cstddef>

#include "tests/support/bar_record.h"

namespace exportifc::test {

bool ListSource::next(std::int32_t index, SourceBar& bar) {
  const ScriptedBar& scripted = bars_.at(static_cast<std::size_t>(index));
  record_ = recordOf(scripted.section, scripted.quarterTurns);
  bar.record = scripted.hasRecord ? &record_ : nullptr;
  bar.typeCode = scripted.type;
  bar.visible = scripted.visible;
  bar.angle = scripted.angle;
  bar.start = scripted.start;
  bar.end = scripted.end;
  bar.dims = scripted.dims;
  return true;
}

}  // namespace exportifc::test
