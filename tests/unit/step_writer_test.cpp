#include "step/step_writer.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "step/ownership.h"
#include "step/preamble.h"
#include "support.h"

namespace exportifc {
namespace {

using IfcIo::IfcEntity;

TEST(StepWriter, Header) {
  EXPECT_EQ(test::exportedBytes([](StepWriter& writer) { writer.writeHeader(); }),
            "ISO-10303-21;\r\n"
            "HEADER;\r\n"
            "FILE_DESCRIPTION(('ViewDefinition [CoordinationView]'), '2;1');\r\n"
            "FILE_NAME('', '2012-05-22T12:54:15', (''), (''), 'v1', 'Prototipo_vq5_ifc 0.1', '');"
            "\r\n"
            "FILE_SCHEMA(('IFC2X3'));\r\n"
            "ENDSEC;\r\n"
            "\r\n"
            "DATA;\r\n"
            "\r\n");
}

TEST(StepWriter, Footer) {
  EXPECT_EQ(test::exportedBytes([](StepWriter& writer) { writer.writeFooter(); }),
            "\r\n"
            "ENDSEC;\r\n"
            "END-ISO-10303-21;\r\n");
}

TEST(StepWriter, EntitiesAreNumberedFromOneWithoutGaps) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    EXPECT_EQ(writer.writeEntity("IFCCARTESIANPOINT((", 0.0, ", ", 150.0, "))"), 1);
    EXPECT_EQ(writer.writeEntity("IFCDIRECTION((1.0, 0.0))"), 2);
    EXPECT_EQ(writer.writeEntity("IFCAXIS2PLACEMENT2D(", Ref{1}, ", ", Ref{2}, ")"), 3);
  });
  EXPECT_EQ(lines, (std::vector<std::string>{"#1= IFCCARTESIANPOINT((0.00000, 150.00000));",
                                             "#2= IFCDIRECTION((1.0, 0.0));",
                                             "#3= IFCAXIS2PLACEMENT2D(#1, #2);"}));
}

TEST(StepWriter, TheFirstEntityAfterThePreambleIs5006) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    writePreamble(writer);
    EXPECT_EQ(writer.writeEntity("IFCCARTESIANPOINT((", 0.0, ", ", 150.0, "))"), 5006);
  });
  EXPECT_EQ(lines.back(), "#5006= IFCCARTESIANPOINT((0.00000, 150.00000));");
}

TEST(StepWriter, AnEmptyEntityStillHasALine) {
  EXPECT_EQ(test::exportedBytes([](StepWriter& writer) {
              writer.writeEntity();
              writer.writeEntity("");
            }),
            "#1= ;\r\n#2= ;\r\n");
}

TEST(StepWriter, ApostrophesStayAsTheyAre) {
  EXPECT_EQ(test::exportedBytes([](StepWriter& writer) {
              writer.writeEntity("X('", std::wstring(L"d'Agua"), "')");
            }),
            "#1= X('d'Agua');\r\n");
}

TEST(StepWriter, FreeLinesTakeNoNumber) {
  EXPECT_EQ(test::exportedBytes([](StepWriter& writer) {
              writer.writeEntity("A()");
              writer.stream.line("/* Units */");
              writer.writeEntity("B()");
            }),
            "#1= A();\r\n/* Units */\r\n#2= B();\r\n");
}

TEST(StepWriter, RegisteringStoresNoNumber) {
  test::exportedBytes([](StepWriter& writer) {
    const auto entity = std::make_shared<IfcEntity>();
    EXPECT_EQ(entity->id, 0);
    EXPECT_EQ(writer.registerEntity(entity), 1);
    EXPECT_EQ(entity->id, 0) << "that is the caller's to do";
    EXPECT_EQ(writer.registerEntity(std::make_shared<IfcEntity>()), 2);
    EXPECT_EQ(writer.writeEntity("A()"), 3);
    EXPECT_EQ(writer.registerEntity(entity), 4) << "one entity may be registered twice";
  });
}

TEST(StepWriter, NumbersGoOnAfterTheFileHasFailed) {
  test::Received received;
  StepWriter writer(std::make_unique<test::MemorySink>(received, 0));
  EXPECT_EQ(writer.writeEntity("A()"), 1);
  EXPECT_EQ(writer.writeEntity("B()"), 2);
  EXPECT_EQ(writer.entities.size(), 2);
  EXPECT_EQ(received.bytes, "");
}

TEST(StepWriter, ClosesTheFileAfterItsEntitiesAreGone) {
  struct Watched final : IfcEntity {
    explicit Watched(test::Received& file) : received(file) {}
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
    ~Watched() override { EXPECT_FALSE(received.closed); }
    test::Received& received;
  };
  test::Received received;
  std::weak_ptr<IfcEntity> watched;
  {
    StepWriter writer(std::make_unique<test::MemorySink>(received));
    auto entity = std::make_shared<Watched>(received);
    watched = entity;
    writer.registerEntity(std::move(entity));
    EXPECT_FALSE(watched.expired()) << "the writer holds a share";
  }
  EXPECT_TRUE(watched.expired());
  EXPECT_TRUE(received.closed);
}

// All writers of an export share one: it stays where it is.
static_assert(!std::is_copy_constructible_v<StepWriter> && !std::is_copy_assignable_v<StepWriter>);
static_assert(!std::is_move_constructible_v<StepWriter> && !std::is_move_assignable_v<StepWriter>);

TEST(EntityRef, IsTheNumberOrADollar) {
  EXPECT_EQ(entityRef(nullptr), L"$");
  const auto entity = std::make_shared<IfcEntity>();
  EXPECT_EQ(entityRef(entity), L"#0");
  entity->id = 3;
  EXPECT_EQ(entityRef(entity), L"#3");
  entity->id = 2147483647;
  EXPECT_EQ(entityRef(entity), L"#2147483647");
}

TEST(IfcEntity, IsPolymorphicAndDoesNothingInReserve) {
  EXPECT_TRUE((std::has_virtual_destructor_v<IfcEntity>));
  IfcEntity entity;
  entity.reserved();
  EXPECT_EQ(entity.id, 0);
}

/// The functions of an entity's class as a caller finds them who knows their places alone.
struct FunctionTable {
  using Operation = void (*)(IfcEntity*);
  using Destructor = void (*)(IfcEntity*, int);

  explicit FunctionTable(const IfcEntity& entity) {
    void* const* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&entity), sizeof(table));
    operation = reinterpret_cast<Operation>(table[0]);
    destructor = reinterpret_cast<Destructor>(table[1]);
  }

  Operation operation;
  Destructor destructor;
};

TEST(IfcEntity, ItsFunctionsStandInTheirPlaces) {
  struct Counted final : IfcEntity {
    explicit Counted(int& counter) : destroyed(counter) {}
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    ~Counted() override { ++destroyed; }
    int& destroyed;
  };
  int destroyed = 0;
  alignas(Counted) std::array<std::byte, sizeof(Counted)> room{};
  auto* const entity = new (room.data()) Counted(destroyed);
  entity->id = 7;
  const FunctionTable functions(*entity);
  functions.operation(entity);
  EXPECT_EQ(entity->id, 7);
  EXPECT_EQ(destroyed, 0);
  functions.destructor(entity, 0);  // 0: the memory stays, where a compiler asks
  EXPECT_EQ(destroyed, 1);
}

TEST(IfcEntity, NoClassHasAnOperationOfItsOwn) {
  const auto plain = FunctionTable(IfcEntity()).operation;
  using namespace IfcIo;
  EXPECT_EQ(FunctionTable(IfcOrganization(L"")).operation, plain);
  EXPECT_EQ(FunctionTable(IfcPerson(L"", L"")).operation, plain);
  EXPECT_EQ(FunctionTable(IfcPersonAndOrganization(nullptr, nullptr)).operation, plain);
  EXPECT_EQ(FunctionTable(IfcApplication(nullptr, L"", L"", L"")).operation, plain);
  EXPECT_EQ(FunctionTable(IfcOwnerHistory(nullptr, nullptr)).operation, plain);
}

}  // namespace
}  // namespace exportifc
