// Any bytes as a workbook: refused with a message, or read as a model that is checked and exported.
// What does not begin as a zip is the parts of one: a line "@name" begins each, so that the XML
// changes and not only what packs it.
#include "library/workbook/workbook.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

#include "fuzz/model_check.h"
#include "library/formats/format.h"
#include "library/frame/model_check.h"
#include "library/frame/model_error.h"
#include "library/frame/text_sink.h"
#include "library/packing/zip_sink.h"

using namespace exportifc;
using namespace exportifc::fuzz;

namespace {

std::string packed(std::string_view text) {
  std::string bytes;
  TextSink sink(bytes);
  ZipWriter zip(sink);
  while (!text.empty()) {
    const std::string_view name = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), name.size() + 1));
    const std::size_t next = text.find("\n@");
    const std::string_view part = text.substr(0, next);
    text.remove_prefix(next == std::string_view::npos ? text.size() : next + 2);
    zip.begin(std::string(name));
    zip.write(part.data(), part.size());
    zip.end();
  }
  zip.finish();
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string bytes(reinterpret_cast<const char*>(data), size);
  if (bytes.starts_with('@')) {
    bytes = packed(std::string_view(bytes).substr(1));
  } else if (!bytes.starts_with("PK")) {
    return 0;
  }
  std::stringbuf file(bytes, std::ios::in);
  try {
    exportifc::Model model = formatOf(ModelFormat::tables).read(file);
    drawBounds(model);
    requireSound(model);
  } catch (const ModelError& error) {
    requireShown(error);
  }
  return 0;
}
