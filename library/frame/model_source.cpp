#include "library/frame/model_source.h"

#include <algorithm>

namespace exportifc {

bool ModelSource::next(std::int32_t index, SourceBar& bar) {
  beforeBar_(index);
  const auto at = static_cast<std::size_t>(index);
  if (at >= model_.bars.size()) {
    return false;
  }
  const ModelBar& listed = model_.bars[at];
  bar.record = recordOf(listed);
  bar.typeCode = listed.type;
  bar.visible = listed.visible ? 1 : 0;
  bar.angle = listed.angle;
  bar.start = model_.nodes[static_cast<std::size_t>(listed.start)];
  bar.end = model_.nodes[static_cast<std::size_t>(listed.end)];
  bar.dims = model_.sections[static_cast<std::size_t>(listed.section)].dims;
  if (bar.record == nullptr) {
    ++skipped_.withoutRecord;
  } else if (!barTypeOf(listed.type).isExported) {
    ++skipped_.notExportedType;
  } else if (visibleOnly_ && !listed.visible) {
    ++skipped_.invisible;
  }
  return true;
}

const BarRecord* ModelSource::recordOf(const ModelBar& bar) {
  const std::string& text = model_.sections[static_cast<std::size_t>(bar.section)].text;
  auto& field = record_.sectionName;
  if (text.size() >= sizeof(field)) {
    return nullptr;
  }
  std::fill(std::begin(field), std::end(field), '\0');
  std::copy(text.begin(), text.end(), std::begin(field));
  record_.quarterTurns = bar.quarterTurns;
  return &record_;
}

}  // namespace exportifc
