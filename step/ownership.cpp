#include "step/ownership.h"

#include "step/step_writer.h"

namespace exportifc::IfcIo {

void IfcOrganization::write(StepStream& stream) const {
  stream.line(Ref{id}, "= IFCORGANIZATION($, '", name, "', $, $, $);");
}

void IfcPerson::write(StepStream& stream) const {
  stream.line(Ref{id}, "= IFCPERSON($, '", familyName, "', '", givenName, "', $, $, $, $, $);");
}

void IfcPersonAndOrganization::write(StepStream& stream) const {
  stream.line(Ref{id}, "= IFCPERSONANDORGANIZATION(", entityRef(person), ", ",
              entityRef(organization), ", $);");
}

void IfcApplication::write(StepStream& stream) const {
  stream.line(Ref{id}, "= IFCAPPLICATION(", entityRef(developer), ", '", version, "', '", fullName,
              "', '", identifier, "');");
}

void IfcOwnerHistory::write(StepStream& stream) const {
  stream.line(Ref{id}, "= IFCOWNERHISTORY(", entityRef(owningUser), ", ",
              entityRef(owningApplication), ", $, .NOCHANGE., $, $, $, 0);");
}

}  // namespace exportifc::IfcIo
