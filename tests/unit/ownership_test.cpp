#include "step/ownership.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

using namespace IfcIo;

template <class Entity>
std::string lineOf(const Entity& entity) {
  test::Received received;
  StepStream stream(std::make_unique<test::MemorySink>(received));
  entity.write(stream);
  return received.bytes;
}

TEST(Ownership, Organization) {
  IfcOrganization organization(L"Korvane");
  organization.id = 1;
  EXPECT_EQ(lineOf(organization), "#1= IFCORGANIZATION($, 'Korvane', $, $, $);\r\n");
}

TEST(Ownership, Person) {
  IfcPerson person(L"Silva", L"Ana");
  person.id = 2;
  EXPECT_EQ(person.familyName, L"Silva");
  EXPECT_EQ(person.givenName, L"Ana");
  EXPECT_EQ(lineOf(person), "#2= IFCPERSON($, 'Silva', 'Ana', $, $, $, $, $);\r\n");
}

TEST(Ownership, PersonAndOrganization) {
  const auto person = std::make_shared<IfcPerson>(L"Silva", L"Ana");
  const auto organization = std::make_shared<IfcOrganization>(L"Obras");
  person->id = 2;
  organization->id = 1;
  IfcPersonAndOrganization user(person, organization);
  user.id = 3;
  EXPECT_EQ(lineOf(user), "#3= IFCPERSONANDORGANIZATION(#2, #1, $);\r\n");
}

TEST(Ownership, AMissingComponentIsADollar) {
  const auto organization = std::make_shared<IfcOrganization>(L"Obras");
  organization->id = 1;
  IfcPersonAndOrganization user(nullptr, organization);
  user.id = 3;
  EXPECT_EQ(lineOf(user), "#3= IFCPERSONANDORGANIZATION($, #1, $);\r\n");
  IfcOwnerHistory history(nullptr, nullptr);
  history.id = 5;
  EXPECT_EQ(lineOf(history), "#5= IFCOWNERHISTORY($, $, $, .NOCHANGE., $, $, $, 0);\r\n");
  IfcApplication application(nullptr, L"", L"", L"");
  application.id = 4;
  EXPECT_EQ(lineOf(application), "#4= IFCAPPLICATION($, '', '', '');\r\n");
}

TEST(Ownership, Application) {
  const auto organization = std::make_shared<IfcOrganization>(L"Obras");
  organization->id = 1;
  IfcApplication application(organization, L"0.1", L"Full name", L"id");
  application.id = 4;
  EXPECT_EQ(lineOf(application), "#4= IFCAPPLICATION(#1, '0.1', 'Full name', 'id');\r\n");
}

TEST(Ownership, OwnerHistory) {
  const auto user = std::make_shared<IfcPersonAndOrganization>(nullptr, nullptr);
  const auto application = std::make_shared<IfcApplication>(nullptr, L"", L"", L"");
  user->id = 3;
  application->id = 4;
  IfcOwnerHistory history(user, application);
  history.id = 5;
  EXPECT_EQ(lineOf(history), "#5= IFCOWNERHISTORY(#3, #4, $, .NOCHANGE., $, $, $, 0);\r\n");
}

TEST(Ownership, BeforeRegistrationTheNumberIsZero) {
  EXPECT_EQ(lineOf(IfcOrganization(L"Obras")), "#0= IFCORGANIZATION($, 'Obras', $, $, $);\r\n");
  const auto person = std::make_shared<IfcPerson>(L"a", L"b");
  EXPECT_EQ(lineOf(IfcPersonAndOrganization(person, nullptr)),
            "#0= IFCPERSONANDORGANIZATION(#0, $, $);\r\n");
}

TEST(Ownership, ApostrophesStayAsTheyAre) {
  EXPECT_EQ(lineOf(IfcOrganization(L"d'Agua")), "#0= IFCORGANIZATION($, 'd'Agua', $, $, $);\r\n");
}

TEST(Ownership, ComponentsAreShared) {
  const auto person = std::make_shared<IfcPerson>(L"a", L"b");
  const auto organization = std::make_shared<IfcOrganization>(L"o");
  const auto user = std::make_shared<IfcPersonAndOrganization>(person, organization);
  const auto application = std::make_shared<IfcApplication>(organization, L"", L"", L"");
  const auto history = std::make_shared<IfcOwnerHistory>(user, application);
  EXPECT_EQ(person.use_count(), 2);
  EXPECT_EQ(organization.use_count(), 3);
  EXPECT_EQ(user.use_count(), 2);
  EXPECT_EQ(application.use_count(), 2);
}

}  // namespace
}  // namespace exportifc
