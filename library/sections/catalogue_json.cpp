#include "library/sections/catalogue_json.h"

namespace exportifc {

JsonObject familyJson(const Family& family) {
  JsonList dimensions;
  for (const DimensionUse& use : family.dimensions) {
    JsonObject dimension;
    dimension.addInteger("dimension", use.index);
    dimension.addText("measures", meaningText(use.meaning));
    dimension.addTruth("mayBeZero", use.mayBeZero);
    dimensions.add(dimension);
  }
  JsonObject json;
  json.addText("word", family.word);
  json.addText("entity", profileEntity(family));
  json.add("dimensions", dimensions);
  return json;
}

JsonList familiesJson() {
  JsonList list;
  for (const Family& family : families()) {
    list.add(familyJson(family));
  }
  return list;
}

JsonList sectionsJson(std::span<const RolledSection* const> sections) {
  JsonList list;
  for (const RolledSection* const section : sections) {
    const RolledSeriesFacts& facts = factsOf(section->series);
    JsonObject json;
    json.addText("name", section->name);
    json.addText("series", facts.name);
    json.addText("standard", facts.standard);
    json.addReal("depthMm", section->depth);
    json.addReal("widthMm", section->width);
    json.addReal("flangeMm", section->flangeThickness);
    json.addReal("webMm", section->webThickness);
    json.addReal("massPerMetreKg", section->mass);
    json.addReal("areaCm2", section->area);
    json.addText("text", sectionText(*section));
    list.add(json);
  }
  return list;
}

}  // namespace exportifc
