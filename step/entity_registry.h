// Hands out instance numbers and keeps every numbered entity until the export ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "step/ifc_entity.h"
#include "step/number_format.h"

namespace exportifc {

/// Numbers are 1, 2, 3 and so on, without gaps. No entity is let go before the end.
///
/// Plain entities, by far the most, live in blocks of which the registry holds one share each: 16
/// bytes an entity instead of an allocation and a pointer apiece. The blocks of a large model are
/// large, so that they can have large pages: touching fresh small ones costs a tenth of an export.
/// Fixed shape: registry.
class EntityRegistry {
 public:
  /// Keeps a share of `entity` and returns its number. The caller stores the number in the entity.
  std::int32_t add(std::shared_ptr<IfcIo::IfcEntity> entity);

  /// Creates a plain entity, registers it, stores the number in it and returns the number,
  /// ready to be written.
  ReadyInteger addPlain();

  /// Number of registered entities.
  std::int32_t size() const { return next_.value() - 1; }

  /// A share of the entity with the given number, from 1 to `size()`.
  std::shared_ptr<IfcIo::IfcEntity> at(std::int32_t number) const;

 private:
  struct Numbered {
    std::int32_t number;
    std::shared_ptr<IfcIo::IfcEntity> entity;
  };

  struct Block {
    std::shared_ptr<IfcIo::IfcEntity[]> entities;  // those that were numbered exist
    std::size_t size;
  };

  void addBlock();

  ReadyInteger next_{1};
  std::vector<Numbered> added_;  // by `add`, in order of number
  std::vector<Block> plainBlocks_;
  IfcIo::IfcEntity* nextPlain_ = nullptr;  // in the last block
  IfcIo::IfcEntity* plainEnd_ = nullptr;
};

}  // namespace exportifc
