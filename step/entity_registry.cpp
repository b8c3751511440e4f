#include "step/entity_registry.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace exportifc {

using IfcIo::IfcEntity;

std::int32_t EntityRegistry::add(std::shared_ptr<IfcEntity> entity) {
  added_.push_back({.number = size_ + 1, .entity = std::move(entity)});
  return ++size_;
}

void EntityRegistry::addBlock() {
  nextPlain_ = plainBlocks_.emplace_back(std::make_unique<IfcEntity[]>(blockSize)).get();
  plainEnd_ = nextPlain_ + blockSize;
}

std::shared_ptr<IfcEntity> EntityRegistry::at(std::int32_t number) const {
  if (number < 1 || number > size_) {
    throw std::out_of_range("no entity with this number");
  }
  const auto next = std::lower_bound(
      added_.begin(), added_.end(), number,
      [](const Numbered& added, std::int32_t wanted) { return added.number < wanted; });
  if (next != added_.end() && next->number == number) {
    return next->entity;
  }
  // The plain entities before this one are all entities before it but those added by pointer.
  const auto plain = static_cast<std::size_t>((number - 1) - (next - added_.begin()));
  const auto& block = plainBlocks_[plain / blockSize];
  return {block, &block[static_cast<std::ptrdiff_t>(plain % blockSize)]};
}

}  // namespace exportifc
