#include "step/entity_registry.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include "platform/platform.h"

namespace exportifc {

using IfcIo::IfcEntity;

namespace {

// In entities. The first block does for a handful of bars, the largest holds eight large pages.
constexpr std::size_t firstBlock = 4096;
constexpr std::size_t blockGrowth = 16;
constexpr std::size_t largestBlock = firstBlock * blockGrowth * blockGrowth;

/// Room for so many entities; each is made when it is numbered.
std::shared_ptr<IfcEntity[]> newBlock(std::size_t size) {
  const std::size_t bytes = size * sizeof(IfcEntity);
  const std::align_val_t alignment{size == largestBlock ? platform::largePage : alignof(IfcEntity)};
  void* const room = ::operator new(bytes, alignment);
  platform::preferLargePages(room, bytes);
  // Plain entities own nothing, so the block is freed as a whole, without a destructor for each.
  return {static_cast<IfcEntity*>(room), [=](void* block) { ::operator delete(block, alignment); }};
}

}  // namespace

std::int32_t EntityRegistry::add(std::shared_ptr<IfcEntity> entity) {
  const std::int32_t number = next_.value();
  added_.push_back({.number = number, .entity = std::move(entity)});
  next_ = next_.next();
  return number;
}

ReadyInteger EntityRegistry::addPlain() {
  if (nextPlain_ == plainEnd_) {
    addBlock();
  }
  const ReadyInteger number = next_;
  next_ = number.next();
  std::construct_at(nextPlain_++)->id = number.value();
  return number;
}

void EntityRegistry::addBlock() {
  const std::size_t size = plainBlocks_.empty()
                               ? firstBlock
                               : std::min(plainBlocks_.back().size * blockGrowth, largestBlock);
  plainBlocks_.push_back({.entities = newBlock(size), .size = size});
  nextPlain_ = plainBlocks_.back().entities.get();
  plainEnd_ = nextPlain_ + size;
}

std::shared_ptr<IfcEntity> EntityRegistry::at(std::int32_t number) const {
  if (number < 1 || number > size()) {
    throw std::out_of_range("no entity with this number");
  }
  const auto next = std::lower_bound(
      added_.begin(), added_.end(), number,
      [](const Numbered& added, std::int32_t wanted) { return added.number < wanted; });
  if (next != added_.end() && next->number == number) {
    return next->entity;
  }
  // The plain entities before this one are all entities before it but those added by pointer.
  auto plain = static_cast<std::size_t>((number - 1) - (next - added_.begin()));
  auto block = plainBlocks_.begin();
  for (; plain >= block->size; ++block) {
    plain -= block->size;
  }
  return {block->entities, &block->entities[static_cast<std::ptrdiff_t>(plain)]};
}

}  // namespace exportifc
