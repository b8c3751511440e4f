// The parts of a workbook's file: a zip of XML documents that refer to one another.
#pragma once

#include <cstdint>
#include <istream>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "library/packing/zip_reader.h"
#include "library/workbook/xml_reader.h"

namespace exportifc {

/// Where a part of a workbook leads to.
struct Relationship {
  std::string type;    ///< the last piece of its address: "worksheet"
  std::string target;  ///< a part, from the root
};

/// Faults are ModelErrors; a part that is read too large or damaged has `place` as its cell.
class Package {
 public:
  /// What all parts that are read may unpack to. A sheet of 50,000 members takes 40 MB.
  static constexpr std::uint64_t mostBytes = std::uint64_t{512} << 20;

  /// `bytes` is the whole file.
  explicit Package(std::string bytes, std::uint64_t mostUnpacked = mostBytes);
  ~Package();

  bool has(std::string_view part) const { return find(part) != nullptr; }
  void read(std::string_view part, const std::string& place, XmlHandler& handler);
  /// By their names; none for a part without. The name "" is the file's own part.
  std::map<std::string, Relationship> relationships(std::string_view part);

 private:
  const ZipMember* find(std::string_view part) const;

  std::unique_ptr<std::istream> file_;
  std::unique_ptr<ZipReader> zip_;
  std::uint64_t left_;  // that may still be unpacked
};

}  // namespace exportifc
