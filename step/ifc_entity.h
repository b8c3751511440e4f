// The base class of every entity that has an instance number.
#pragma once

#include <cstdint>

namespace exportifc::IfcIo {

/// What the registry holds for each instance number.
class IfcEntity {
 public:
  IfcEntity() = default;
  IfcEntity(const IfcEntity&) = delete;
  IfcEntity& operator=(const IfcEntity&) = delete;

  /// Does nothing; no class overrides it.
  /// Fixed shape: reserve.
  virtual void reserved() {}
  virtual ~IfcEntity() = default;

  /// Instance number in the file; 0 until the entity is registered.
  std::int32_t id = 0;
};

}  // namespace exportifc::IfcIo
