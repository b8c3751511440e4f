#include "step/preamble.h"

#include <memory>
#include <string_view>

#include "step/ownership.h"

namespace exportifc {

namespace {

// The template's lines carry literal numbers up to #3166; generated numbers must lie above them.
constexpr int reservedNumbers = 5000;

constexpr char ownerHistoryMark = '@';

// "@" stands for the reference to the owner history.
// Fixed shape: literal numbers.
constexpr std::string_view templateLines[] = {
    "#6 = IFCCARTESIANPOINT((0., 0., 0.));",
    "#9 = IFCCARTESIANPOINT((0., 0.));",
    "#11 = IFCDIRECTION((1., 0., 0.));",
    "#13 = IFCDIRECTION((-1., 0., 0.));",
    "#15 = IFCDIRECTION((0., 1., 0.));",
    "#17 = IFCDIRECTION((0., -1., 0.));",
    "#19 = IFCDIRECTION((0., 0., 1.));",
    "#21 = IFCDIRECTION((0., 0., -1.));",
    "#23 = IFCDIRECTION((1., 0.));",
    "#25 = IFCDIRECTION((-1., 0.));",
    "#27 = IFCDIRECTION((0., 1.));",
    "#29 = IFCDIRECTION((0., -1.));",
    "",
    "/* Units */",
    "#42 = IFCSIUNIT(*, .LENGTHUNIT., .MILLI., .METRE.);",
    "#43 = IFCSIUNIT(*, .LENGTHUNIT., $, .METRE.);",
    "#44 = IFCSIUNIT(*, .AREAUNIT., $, .SQUARE_METRE.);",
    "#45 = IFCSIUNIT(*, .VOLUMEUNIT., $, .CUBIC_METRE.);",
    "#46 = IFCSIUNIT(*, .PLANEANGLEUNIT., $, .RADIAN.);",
    "#47 = IFCDIMENSIONALEXPONENTS(0, 0, 0, 0, 0, 0, 0);",
    "#48 = IFCMEASUREWITHUNIT(IFCRATIOMEASURE(0.0174532925199433), #46);",
    "#49 = IFCCONVERSIONBASEDUNIT(#47, .PLANEANGLEUNIT., 'DEGREE', #48);",
    "#50 = IFCSIUNIT(*, .MASSUNIT., .KILO., .GRAM.);",
    "#51 = IFCSIUNIT(*, .TIMEUNIT., $, .SECOND.);",
    "#52 = IFCSIUNIT(*, .FREQUENCYUNIT., $, .HERTZ.);",
    "#53 = IFCSIUNIT(*, .THERMODYNAMICTEMPERATUREUNIT., $, .KELVIN.);",
    "#54 = IFCSIUNIT(*, .THERMODYNAMICTEMPERATUREUNIT., $, .DEGREE_CELSIUS.);",
    "#55 = IFCDERIVEDUNITELEMENT(#50, 1);",
    "#56 = IFCDERIVEDUNITELEMENT(#53, -1);",
    "#57 = IFCDERIVEDUNITELEMENT(#51, -3);",
    "#58 = IFCDERIVEDUNIT((#55, #56, #57), .THERMALTRANSMITTANCEUNIT., $);",
    "#60 = IFCDERIVEDUNITELEMENT(#43, 3);",
    "#61 = IFCDERIVEDUNITELEMENT(#51, -1);",
    "#62 = IFCDERIVEDUNIT((#60, #61), .VOLUMETRICFLOWRATEUNIT., $);",
    "#64 = IFCSIUNIT(*, .ELECTRICCURRENTUNIT., $, .AMPERE.);",
    "#65 = IFCSIUNIT(*, .ELECTRICVOLTAGEUNIT., $, .VOLT.);",
    "#66 = IFCSIUNIT(*, .POWERUNIT., $, .WATT.);",
    "#67 = IFCSIUNIT(*, .FORCEUNIT., .KILO., .NEWTON.);",
    "#68 = IFCSIUNIT(*, .ILLUMINANCEUNIT., $, .LUX.);",
    "#69 = IFCSIUNIT(*, .LUMINOUSFLUXUNIT., $, .LUMEN.);",
    "#70 = IFCSIUNIT(*, .LUMINOUSINTENSITYUNIT., $, .CANDELA.);",
    "#71 = IFCDERIVEDUNITELEMENT(#50, -1);",
    "#72 = IFCDERIVEDUNITELEMENT(#43, -2);",
    "#73 = IFCDERIVEDUNITELEMENT(#51, 3);",
    "#74 = IFCDERIVEDUNITELEMENT(#69, 1);",
    "#75 = IFCDERIVEDUNIT((#71, #72, #73, #74), .USERDEFINED., 'Luminous Efficacy');",
    "#77 = IFCSIUNIT(*, .PRESSUREUNIT., $, .PASCAL.);",
    // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): one line of the file
    "#78 = IFCUNITASSIGNMENT((#42, #44, #45, #49, #50, #51, #52, #54, #58, #62, "
    "#64, #65, #66, #67, #68, #69, #70, #77));",
    "",
    "/* Geometric representations */",
    "#80 = IFCAXIS2PLACEMENT3D(#6, $, $);",
    "#83 = IFCGEOMETRICREPRESENTATIONCONTEXT($, 'Model', 3, 0.01, #80, $);",
    "#88 = IFCGEOMETRICREPRESENTATIONSUBCONTEXT('Body', 'Model', *, *, *, *, #83, $, "
    ".MODEL_VIEW., $);",
    "",
    "/* IfcProject */",
    "#94 = IFCPROJECT('0lgywHKOf4FwBHH6fDAKGr', @, '0001', $, $, 'Nome do projeto', "
    "'Status do projeto', (#83), #78);",
    "",
    "/* IfcBuilding */",
    "#100 = IFCPOSTALADDRESS($, $, $, $, (''), $, '', '', '', 'Brasil');",
    "#104 = IFCBUILDING('0lgywHKOf4FwBHH6fDAKGq', @, '', $, $, $, $, '', .ELEMENT., $, $, #100);",
    "",
    "/* IfcBuildingStorey Pavimento 1 */",
    "#110 = IFCAXIS2PLACEMENT3D(#6, $, $);",
    // Fixed shape: one placement.
    "#111 = IFCLOCALPLACEMENT($, #110);",
    "#113 = IFCBUILDINGSTOREY('0lgywHKOf4FwBHH6gorhgM', @, 'Pavimento 1', $, $, #111, $, "
    "'Pavimento 1', .ELEMENT., 0.);",
    "",
    "/* Relationships */",
    "#3158 = IFCRELAGGREGATES('1wANlqdUP5ER1cjqtn6qes', @, $, $, #94, (#104));",
    "#3166 = IFCRELAGGREGATES('3mQBaTfuH9QBHDcYQBQvNl', @, $, $, #104, (#113));",
};

/// Registers a new entity of the ownership kind, then writes its line.
template <class Entity, class... Arguments>
std::shared_ptr<Entity> writeOwnership(StepWriter& writer, Arguments&&... arguments) {
  auto entity = std::make_shared<Entity>(std::forward<Arguments>(arguments)...);
  entity->id = writer.registerEntity(entity);
  entity->write(writer.stream);
  return entity;
}

}  // namespace

void writePreamble(StepWriter& writer) {
  using namespace IfcIo;
  const auto organization = writeOwnership<IfcOrganization>(writer, L"Korvane");
  const auto person = writeOwnership<IfcPerson>(writer, L"Korvane", L"Pernavosta");
  const auto user = writeOwnership<IfcPersonAndOrganization>(writer, person, organization);
  const auto application = writeOwnership<IfcApplication>(
      writer, organization, L"0.1", L"Prototipo export Korvane_IFC", L"Prototipo_korvane_ifc");
  const auto ownerHistory = writeOwnership<IfcOwnerHistory>(writer, user, application);
  for (int i = 0; i < reservedNumbers; ++i) {
    writer.entities.addPlain();
  }
  writer.ownerHistoryId = ownerHistory->id;
  const std::wstring reference = entityRef(ownerHistory);
  for (const std::string_view line : templateLines) {
    const std::size_t mark = line.find(ownerHistoryMark);
    if (mark == std::string_view::npos) {
      writer.stream.line(line);
    } else {
      writer.stream.line(line.substr(0, mark), reference, line.substr(mark + 1));
    }
  }
}

}  // namespace exportifc
