// A section name with dimensions through classification, dispatch, every profile writer and the
// element writer; and every number that is written on the way, against the C library's.
#include "profiles/section_name.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "elements/bar_element.h"
#include "fuzz/byte_reader.h"
#include "fuzz/memory_export.h"
#include "fuzz/require.h"
#include "model/batch_source.h"
#include "profiles/outlines.h"
#include "profiles/parametric.h"
#include "profiles/profile_dispatch.h"
#include "step/number_format.h"
#include "step/step_writer.h"

namespace {

using namespace exportifc;
using namespace exportifc::fuzz;

constexpr int parametricVariants = static_cast<int>(Parametric::R) + 1;
constexpr int outlines = static_cast<int>(Outline::psa) + 1;

/// The numbers of a piece of a file, one for each of its lines, must follow each other.
void requireConsecutive(std::string_view text, std::int32_t last) {
  std::int32_t expected = 1;
  for (std::size_t at = 0; at < text.size(); ++expected) {
    const std::string start = "#" + std::to_string(expected) + "= IFC";
    require(text.substr(at, start.size()) == start, "an entity out of order");
    const std::size_t end = text.find(";\r\n", at);
    require(end != std::string_view::npos, "a line without an end");
    at = end + 3;
  }
  require(expected == last + 1, "the number of entities");
}

void compareNumbers(double value) {
  std::array<char, fixed5Capacity + 1> written{};
  std::array<char, 400> expected{};
  const auto compare = [&](const char* end, const char* format) {
    std::snprintf(expected.data(), expected.size(), format, value);
    const std::string text = std::isnan(value) ? "nan" : expected.data();
    require(
        std::string_view(written.data(), static_cast<std::size_t>(end - written.data())) == text,
        "a number differs from the C library's");
  };
  compare(putFixed5(written.data(), value), "%.5f");
  compare(putGeneral6(written.data(), value), "%.6g");
}

/// Whatever a bar's name, its entities are written; `name` holds no byte from 0x80 and no newline.
void writeWhole(const std::wstring& name, const ProfileArguments& arguments,
                const SectionDims& dims) {
  for (int i = 0; i < parametricVariants + outlines; ++i) {
    test::Received file;
    StepWriter writer(std::make_unique<test::MemorySink>(file));
    const std::int32_t number =
        i < parametricVariants
            ? writeParametricProfile(writer, static_cast<Parametric>(i), name, arguments)
            : writeOutlineProfile(writer, static_cast<Outline>(i - parametricVariants), name,
                                  arguments);
    requireConsecutive(file.bytes, number);
    require(file.bytes.find(std::string("'").append(name.begin(), name.end()) + "'") !=
                std::string::npos,
            "the profile does not carry its name");
  }
  test::Received file;
  StepWriter writer(std::make_unique<test::MemorySink>(file));
  const std::int32_t number = writeProfile(writer, name, dims, simpleFlangeSide);
  requireConsecutive(file.bytes, number);
  const bool isKnown = findFamily(profileFamilyOf(name)) != nullptr;
  require(isKnown == (file.bytes.find("'UnknownProfile'") == std::string::npos) ||
              name.find(L"UnknownProfile") != std::wstring::npos,
          "a family that is known, or is not, became the other");
}

}  // namespace

// Bytes: the name's length, the name, then dimensions, coordinates and doubles.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ByteReader bytes(data, size);
  const std::string name = bytes.text(bytes.byte() % 64U);
  SectionDims dims{};
  for (float& dim : dims) {
    dim = bytes.real();
  }
  BarGeometry bar;
  for (double* coordinate : {&bar.start.x, &bar.start.y, &bar.start.z, &bar.end.x, &bar.end.y,
                             &bar.end.z, &bar.rotation}) {
    *coordinate = double{bytes.real()} * 1000.0;
  }
  bar.elementKind = static_cast<ElementKind>(bytes.byte() % 4);
  ProfileArguments arguments{};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    std::uint64_t bits = static_cast<std::uint32_t>(bytes.int32());
    bits |= std::uint64_t{static_cast<std::uint32_t>(bytes.int32())} << 32;
    compareNumbers(std::bit_cast<double>(bits));
    arguments[i] = i % 2 == 0 ? std::bit_cast<double>(bits) : double{dims[i]};
  }

  // As the loop widens it.
  BarRecord record{};
  std::memcpy(record.sectionName, name.data(), std::min(name.size(), sizeof(record.sectionName)));
  std::wstring wide;
  widenSectionName(record, wide);
  require(wide.size() <= sizeof(record.sectionName), "a name longer than its field");
  bar.sectionName = wide;

  const std::wstring_view family = profileFamilyOf(wide);
  require(family.find(L' ') == std::wstring_view::npos, "a blank in a family word");
  require(wide.starts_with(family), "a family word that is not the beginning");
  std::wstring firstHalf;
  std::wstring secondHalf;
  const bool builtUp = splitBuiltUpProfile(family, firstHalf, secondHalf);
  require(firstHalf == std::wstring(family) + L"_1" && secondHalf == std::wstring(family) + L"_2",
          "the names of the halves");

  const SectionDims parsed = parseSectionDims(name);
  for (const float dim : parsed) {
    require(!std::isnan(dim), "a dimension that is no number");
  }

  test::Received file;
  {
    StepWriter writer(std::make_unique<test::MemorySink>(file));
    bar.sectionLabel = builtUp ? firstHalf : std::wstring(family);
    const std::int32_t profile =
        builtUp ? writeProfile(writer, firstHalf, parsed, halfFlangeSide)
                : writeProfile(writer, bar.sectionName, dims, simpleFlangeSide);
    const std::int32_t element = writeBar(writer, bar, profile);
    require(element == profile + 11, "the element is the eleventh of fourteen entities");
    require(writer.entities.size() == profile + 14, "fourteen entities a bar");
    bool cut = false;
    for (const wchar_t unit : wide) {
      cut = cut || static_cast<std::uint32_t>(unit) > 0xFFU;
    }
    require(cut == writer.stream.failed(), "the output ends at a character it cannot hold");
    require(cut || file.bytes.ends_with(";\r\n"), "the last line is complete");
  }
  const bool plain =
      wide.find_first_of(L"\n;") == std::wstring::npos &&
      std::all_of(wide.begin(), wide.end(), [](wchar_t unit) { return unit < 0x80; });
  if (plain) {
    writeWhole(wide, arguments, dims);
  }
  return 0;
}
