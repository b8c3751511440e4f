#include "step/step_writer.h"

namespace exportifc {

void StepWriter::writeHeader() {
  stream.line("ISO-10303-21;");
  stream.line("HEADER;");
  stream.line("FILE_DESCRIPTION(('ViewDefinition [CoordinationView]'), '2;1');");
  // Fixed shape: time stamp.
  stream.line(
      "FILE_NAME('', '2012-05-22T12:54:15', (''), (''), 'v1', 'Prototipo_vq5_ifc 0.1', '');");
  stream.line("FILE_SCHEMA(('IFC2X3'));");
  stream.line("ENDSEC;");
  stream.line();
  stream.line("DATA;");
  stream.line();
}

void StepWriter::writeFooter() {
  stream.line();
  stream.line("ENDSEC;");
  stream.line("END-ISO-10303-21;");
}

std::wstring entityRef(const std::shared_ptr<IfcIo::IfcEntity>& entity) {
  return entity == nullptr ? L"$" : L"#" + std::to_wstring(entity->id);
}

}  // namespace exportifc
