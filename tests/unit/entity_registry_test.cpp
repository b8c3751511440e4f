#include "step/entity_registry.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

using IfcIo::IfcEntity;

TEST(EntityRegistry, StartsEmpty) {
  const EntityRegistry registry;
  EXPECT_EQ(registry.size(), 0);
  EXPECT_THROW((void)registry.at(0), std::out_of_range);
  EXPECT_THROW((void)registry.at(1), std::out_of_range);
  EXPECT_THROW((void)registry.at(-1), std::out_of_range);
}

TEST(EntityRegistry, TheEntityAtPositionPHasNumberPPlusOne) {
  // Both kinds in random order, into the third block, the first with large pages.
  constexpr std::int32_t count = 80000;
  test::Random random(1);
  EntityRegistry registry;
  std::vector<std::shared_ptr<IfcEntity>> given;  // null for a plain one
  for (std::int32_t i = 0; i < count; ++i) {
    if (random.integer(0, 9) == 0) {
      given.push_back(std::make_shared<IfcEntity>());
      given.back()->id = registry.add(given.back());
    } else {
      given.push_back(nullptr);
      EXPECT_EQ(registry.addPlain().value(), i + 1);
    }
    ASSERT_EQ(registry.size(), i + 1);
  }
  for (std::int32_t i = 0; i < count; ++i) {
    const auto entity = registry.at(i + 1);
    ASSERT_NE(entity, nullptr);
    ASSERT_EQ(entity->id, i + 1);
    if (given[static_cast<std::size_t>(i)] != nullptr) {
      ASSERT_EQ(entity, given[static_cast<std::size_t>(i)]);
    }
    ASSERT_EQ(registry.at(i + 1), entity) << "the same entity at every call";
  }
  EXPECT_THROW((void)registry.at(count + 1), std::out_of_range);
}

TEST(EntityRegistry, SharesKeepAnEntityAlive) {
  std::shared_ptr<IfcEntity> plain;
  std::weak_ptr<IfcEntity> added;
  {
    EntityRegistry registry;
    {
      const auto entity = std::make_shared<IfcEntity>();
      added = entity;
      registry.add(entity);
    }
    registry.addPlain();
    EXPECT_FALSE(added.expired());
    plain = registry.at(2);
  }
  EXPECT_TRUE(added.expired());
  EXPECT_EQ(plain->id, 2) << "a share outlives the registry";
}

}  // namespace
}  // namespace exportifc
