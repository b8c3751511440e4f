// Any bytes as a JSON model: refused with a message, or read, checked, exported, and written as
// JSON that reads back the same.
#include "library/formats/json_model.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>

#include "fuzz/model_check.h"
#include "fuzz/require.h"
#include "library/formats/json_places.h"

using namespace exportifc;
using namespace exportifc::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::stringbuf text(std::string(reinterpret_cast<const char*>(data), size), std::ios::in);
  exportifc::Model model;
  try {
    model = readJsonModel(text);
  } catch (const ModelError& error) {
    requireShown(error);
    const auto lines = std::count(data, data + size, '\n') + 1;
    const Problem& problem = error.problem();
    text.pubseekpos(0, std::ios::in);
    for (const TextPlace place : {problem.place, error.readTo(),
                                  placesOf(text, {problem.pointer}, error.readTo()).front()}) {
      require(place.line >= 0 && place.line <= lines, "a place outside the text");
    }
    return 0;
  }
  requireSound(model);
  return 0;
}
