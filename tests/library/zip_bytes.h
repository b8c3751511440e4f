// Zips and workbooks that tests make by hand.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "library/frame/text_sink.h"
#include "library/packing/zip_sink.h"

namespace exportifc::test {

/// Names and contents of the files in a zip.
using ZipParts = std::vector<std::pair<std::string, std::string>>;

inline std::string zipOf(const ZipParts& parts) {
  std::string bytes;
  TextSink sink(bytes);
  ZipWriter zip(sink);
  for (const auto& [name, content] : parts) {
    zip.begin(name);
    zip.write(content.data(), content.size());
    zip.end();
  }
  zip.finish();
  return bytes;
}

/// The parts of a workbook with one sheet, "bars", that holds these rows.
inline ZipParts workbookParts(const std::string& rows, const std::string& strings = "") {
  const std::string types = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
  return {
      {"_rels/.rels", "<Relationships><Relationship Id='r' Type='" + types +
                          "officeDocument' Target='xl/workbook.xml'/></Relationships>"},
      {"xl/workbook.xml",
       "<workbook xmlns:r='x'><sheets><sheet name='bars' sheetId='1' "
       "r:id='a'/></sheets></workbook>"},
      {"xl/_rels/workbook.xml.rels",
       "<Relationships><Relationship Id='a' Type='" + types +
           "worksheet' Target='worksheets/sheet1.xml'/><Relationship Id='b' Type='" + types +
           "sharedStrings' Target='/xl/sharedStrings.xml'/></Relationships>"},
      {"xl/worksheets/sheet1.xml", "<worksheet><sheetData>" + rows + "</sheetData></worksheet>"},
      {"xl/sharedStrings.xml", "<sst>" + strings + "</sst>"},
  };
}

}  // namespace exportifc::test
