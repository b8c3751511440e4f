// The exchange file being written: its lines and its instance numbers, shared by all writers.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/byte_sink.h"
#include "step/entity_registry.h"
#include "step/step_stream.h"

namespace exportifc {

/// An ISO 10303-21 file in the making. Callers go by the order of such a file, from `writeHeader`
/// to `writeFooter`, and look at `stream.failed()` first; it is not checked here. It stays where it
/// was made: all writers hold on to the same one. The file is closed when it goes.
class StepWriter {
 public:
  explicit StepWriter(std::unique_ptr<ByteSink> sink) : stream(std::move(sink)) {}
  StepWriter(const StepWriter&) = delete;
  StepWriter& operator=(const StepWriter&) = delete;
  ~StepWriter() = default;

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
