// The one output object of an export: the file, the numbering, the entities.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/byte_sink.h"
#include "step/entity_registry.h"
#include "step/step_stream.h"

namespace exportifc {

/// Writes an ISO 10303-21 exchange structure. Calling order in one export: construction, a look at
/// `stream.failed()`, `writeHeader`, the preamble, entities and free lines, `writeFooter`,
/// destruction, which closes the file. Nothing here enforces that order.
class StepWriter {
 public:
  explicit StepWriter(std::unique_ptr<ByteSink> sink) : stream(std::move(sink)) {}

  /// The header section and the start of the data section. The time stamp is a constant, so that
  /// the same model gives the same file.
  void writeHeader();

  /// The end of the data section and of the exchange structure.
  void writeFooter();

  /// Appends a share of `entity` to the registry and returns its number, from 1 without gaps; the
  /// caller stores the number in the entity.
  std::int32_t registerEntity(std::shared_ptr<IfcIo::IfcEntity> entity) {
    return entities.add(std::move(entity));
  }

  /// Numbers a new entity, writes its line "#n= <pieces>;" and returns n. The pieces are the
  /// entity's text (line_pieces.h).
  template <class... Pieces>
  Ref writeEntity(const Pieces&... pieces) {
    const Ref entity(entities.addPlain());
    stream.line(entity, "= ", pieces..., ";");
    return entity;
  }

  // In this order: on destruction the registry goes first, then the file is closed.
  StepStream stream;
  EntityRegistry entities;
  /// Instance number of the file's single owner history; set by the preamble.
  std::int32_t ownerHistoryId = 0;
};

/// "#" and the entity's number, or "$" for an empty pointer.
std::wstring entityRef(const std::shared_ptr<IfcIo::IfcEntity>& entity);

}  // namespace exportifc
