// Who owns the data: the five entities that every file carries once.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "step/ifc_entity.h"
#include "step/step_stream.h"

// Texts stand between apostrophes exactly as given. Each `write` writes the entity's line under its
// `id`, which the caller has obtained from the registry. Components are shared.
// Fixed shape: no escapes.
namespace exportifc::IfcIo {

class IfcOrganization final : public IfcEntity {
 public:
  explicit IfcOrganization(std::wstring organizationName) : name(std::move(organizationName)) {}
  void write(StepStream& stream) const;

  std::wstring name;
};

class IfcPerson final : public IfcEntity {
 public:
  IfcPerson(const wchar_t* family, const wchar_t* given) : familyName(family), givenName(given) {}
  void write(StepStream& stream) const;

  std::wstring familyName;
  std::wstring givenName;
};

class IfcPersonAndOrganization final : public IfcEntity {
 public:
  IfcPersonAndOrganization(std::shared_ptr<IfcPerson> thePerson,
                           std::shared_ptr<IfcOrganization> theOrganization)
      : person(std::move(thePerson)), organization(std::move(theOrganization)) {}
  void write(StepStream& stream) const;

  std::shared_ptr<IfcPerson> person;
  std::shared_ptr<IfcOrganization> organization;
};

class IfcApplication final : public IfcEntity {
 public:
  IfcApplication(std::shared_ptr<IfcOrganization> theDeveloper, std::wstring theVersion,
                 std::wstring theFullName, std::wstring theIdentifier)
      : developer(std::move(theDeveloper)),
        version(std::move(theVersion)),
        fullName(std::move(theFullName)),
        identifier(std::move(theIdentifier)) {}
  void write(StepStream& stream) const;

  std::shared_ptr<IfcOrganization> developer;
  std::wstring version;
  std::wstring fullName;
  std::wstring identifier;
};

class IfcOwnerHistory final : public IfcEntity {
 public:
  IfcOwnerHistory(std::shared_ptr<IfcPersonAndOrganization> user,
                  std::shared_ptr<IfcApplication> application)
      : owningUser(std::move(user)), owningApplication(std::move(application)) {}
  void write(StepStream& stream) const;

  std::shared_ptr<IfcPersonAndOrganization> owningUser;
  std::shared_ptr<IfcApplication> owningApplication;
};

}  // namespace exportifc::IfcIo
