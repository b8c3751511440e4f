#include "model/host_source.h"

#include <array>
#include <cstring>
#include <functional>
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

struct Query {
  std::int32_t index;
  std::int32_t code;

  friend bool operator==(const Query&, const Query&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const Query& query) {
    return stream << "index " << query.index << " code 0x" << std::hex << query.code << std::dec;
  }
};

/// Answers queries by a function; the handle is its address.
class ScriptedHost {
 public:
  using Answer = std::function<void(std::int32_t index, std::int32_t code, void* slot)>;

  explicit ScriptedHost(Answer answer) : answer_(std::move(answer)) {}

  HostSource source() { return {&ScriptedHost::query, handle()}; }

  const std::vector<Query>& queries() const { return queries_; }

 private:
  std::uint64_t handle() const { return reinterpret_cast<std::uintptr_t>(this); }

  static std::int32_t query(std::uint64_t handle, std::int32_t index, std::int32_t code,
                            void* slot) {
    auto& host = *reinterpret_cast<ScriptedHost*>(static_cast<std::uintptr_t>(handle));
    EXPECT_NE(slot, nullptr);
    host.queries_.push_back({index, code});
    host.answer_(index, code, slot);
    return -1;  // ignored
  }

  Answer answer_;
  std::vector<Query> queries_;
};

template <class T>
void fill(void* slot, const T& value) {
  std::memcpy(slot, &value, sizeof(value));
}

TEST(HostSource, AsksUnitThenCountWithIndexZero) {
  ScriptedHost host([](std::int32_t, std::int32_t code, void* slot) {
    fill(slot, std::int32_t{code == 0x25000C ? 1 : 3});
  });
  HostSource source = host.source();
  EXPECT_EQ(source.unitCode(), 1);
  EXPECT_EQ(source.barCount(), 3);
  EXPECT_EQ(host.queries(), (std::vector<Query>{{0, 0x25000C}, {0, 0x50005}}));
}

TEST(HostSource, AsksNineQueriesABarInAFixedOrder) {
  test::LowRecords records(1);
  const std::uint32_t address = records.put(0, test::recordOf("W 1", 3));
  ScriptedHost host([&](std::int32_t index, std::int32_t code, void* slot) {
    switch (code) {
      case 0x210003: return fill(slot, 4.5F);
      case 0x210702: return fill(slot, std::int32_t{1});
      case 0x210005: return fill(slot, address);
      case 0x21000A: return fill(slot, 0.25F);
      case 0x10701: return fill(slot, SectionDims{1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
      case 0x21001F: return fill(slot, std::int32_t{70 + index});
      case 0x210020: return fill(slot, std::int32_t{-80 - index});
      case 0x220007:
        return fill(slot, std::array<float, 3>{static_cast<float>(index), 0.5F, -1.0F});
      default: FAIL() << code;
    }
  });
  HostSource source = host.source();
  SourceBar bar;
  ASSERT_TRUE(source.next(5, bar));
  EXPECT_EQ(host.queries(), (std::vector<Query>{{5, 0x210003},
                                                {5, 0x210702},
                                                {5, 0x210005},
                                                {5, 0x21000A},
                                                {5, 0x10701},
                                                {5, 0x21001F},
                                                {5, 0x210020},
                                                {75, 0x220007},
                                                {-85, 0x220007}}));
  EXPECT_EQ(bar.typeCode, 4.5F);
  EXPECT_EQ(bar.visible, 1);
  ASSERT_EQ(reinterpret_cast<std::uintptr_t>(bar.record), address);
  EXPECT_STREQ(bar.record->sectionName, "W 1");
  EXPECT_EQ(bar.record->quarterTurns, 3);
  EXPECT_EQ(bar.angle, 0.25F);
  EXPECT_EQ(bar.dims, (SectionDims{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(bar.start, (std::array<float, 3>{75.0F, 0.5F, -1.0F}));
  EXPECT_EQ(bar.end, (std::array<float, 3>{-85.0F, 0.5F, -1.0F}));
}

TEST(HostSource, AHostThatAnswersNothingGivesZeros) {
  ScriptedHost host([](std::int32_t, std::int32_t, void*) {});
  HostSource source = host.source();
  EXPECT_EQ(source.unitCode(), 0);
  EXPECT_EQ(source.barCount(), 0);
  SourceBar bar;
  EXPECT_TRUE(source.next(0, bar));
  EXPECT_EQ(bar.record, nullptr);
  EXPECT_EQ(bar.typeCode, 0.0F);
  EXPECT_EQ(bar.visible, 0);
  EXPECT_EQ(bar.start, (std::array<float, 3>{}));
  EXPECT_EQ(bar.dims, SectionDims{});
}

TEST(HostSource, SlotsLeftAloneKeepTheBarBefore) {
  test::LowRecords records(1);
  const std::uint32_t address = records.put(0, test::recordOf("W 1"));
  ScriptedHost host([&](std::int32_t index, std::int32_t code, void* slot) {
    const bool node = code == 0x220007;
    if (!node && index > 0) {
      return;  // the second bar gets no answers
    }
    switch (code) {
      case 0x210003: return fill(slot, 3.0F);
      case 0x210702: return fill(slot, std::int32_t{1});
      case 0x210005: return fill(slot, address);
      case 0x21000A: return fill(slot, 0.25F);
      case 0x10701: return fill(slot, SectionDims{1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
      case 0x21001F: return fill(slot, std::int32_t{11});
      case 0x210020: return fill(slot, std::int32_t{12});
      default: return fill(slot, std::array<float, 3>{static_cast<float>(index), 0, 0});
    }
  });
  HostSource source = host.source();
  SourceBar bar;
  ASSERT_TRUE(source.next(0, bar));
  ASSERT_NE(bar.record, nullptr);
  ASSERT_TRUE(source.next(1, bar));
  EXPECT_EQ(bar.record, nullptr) << "the one slot that is cleared before each call";
  EXPECT_EQ(bar.typeCode, 3.0F);
  EXPECT_EQ(bar.visible, 1);
  EXPECT_EQ(bar.angle, 0.25F);
  EXPECT_EQ(bar.dims, (SectionDims{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(bar.start[0], 11.0F);
  EXPECT_EQ(bar.end[0], 12.0F);
  EXPECT_EQ(host.queries()[16], (Query{11, 0x220007})) << "the node of the bar before";
  EXPECT_EQ(host.queries()[17], (Query{12, 0x220007}));
}

TEST(HostSource, AShortDimensionAnswerKeepsTheRest) {
  ScriptedHost host([](std::int32_t index, std::int32_t code, void* slot) {
    if (code == 0x10701) {
      index == 0 ? fill(slot, SectionDims{1, 2, 3, 4, 5, 6, 7, 8, 9, 10})
                 : fill(slot, std::array<float, 2>{21, 22});
    }
  });
  HostSource source = host.source();
  SourceBar bar;
  source.next(0, bar);
  source.next(1, bar);
  EXPECT_EQ(bar.dims, (SectionDims{21, 22, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(HostSource, AHostMayWriteAWholePointerForTheRecord) {
  test::LowRecords records(1);
  const std::uint32_t address = records.put(0, test::recordOf("W 1"));
  ScriptedHost host([&](std::int32_t index, std::int32_t code, void* slot) {
    if (code == 0x210005) {
      // The upper half does not reach the module.
      fill(slot, std::uint64_t{address} | (index == 0 ? 0U : 0x1234567800000000U));
    }
  });
  HostSource source = host.source();
  SourceBar bar;
  for (const int index : {0, 1}) {
    source.next(index, bar);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bar.record), address);
  }
}

TEST(HostSource, AddressesAreNotSignExtended) {
  ScriptedHost host([](std::int32_t, std::int32_t code, void* slot) {
    if (code == 0x210005) {
      fill(slot, 0xFEDCBA98U);
    }
  });
  HostSource source = host.source();
  SourceBar bar;
  source.next(0, bar);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bar.record), 0xFEDCBA98U);
}

}  // namespace
}  // namespace exportifc
