// What an export of known bars must look like, written a second time and in another way than the
// writers: from a bar's values to the lines of the file.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace exportifc::fuzz {

/// One bar as a host or a batch file tells it.
struct ModelBar {
  bool hasRecord = true;
  float type = 0.0F;
  std::int32_t visible = 1;
  std::int32_t quarterTurns = 0;
  float angle = 0.0F;
  std::array<float, 3> start{};
  std::array<float, 3> end{};
  std::string name;  ///< section text, up to its terminator
};

struct Model {
  std::int32_t unitCode = 0;
  bool leaveOutHidden = false;
  std::vector<ModelBar> bars;
};

/// Compares a file with what `model` must give: number and order of all lines, every text, every
/// reference, every group, coordinates, rotation, length and element type. Profile dimensions and
/// the two axes of a bar count as reals of any value. Returns the first difference, empty for none.
///
/// A bar whose name holds a byte from 0x80 ends the file in the middle of a line.
std::string compareWithModel(std::string_view file, const Model& model);

/// The first `size` bytes of `file` must be as the model says; what follows may be missing.
std::string compareStart(std::string_view file, const Model& model);

/// How many messages of each kind the export shows.
struct Messages {
  int barProblems = 0;
  int unknownProfiles = 0;
};
Messages expectedMessages(const Model& model);

/// Whether the names leave the file readable: printable, no apostrophe, backslash or comment end.
bool hasPlainNames(const Model& model);

}  // namespace exportifc::fuzz
