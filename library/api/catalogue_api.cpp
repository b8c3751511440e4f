// What the library is and knows, apart from models.
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "library/api/caller_sink.h"
#include "library/api/model_handle.h"
#include "library/sections/catalogue_json.h"
#include "library/sections/rolled_sections.h"

using namespace exportifc;
using namespace exportifc::api;

namespace {

template <class List>
ExportIfcResult writeList(Language language, ExportIfcWrite write, void* context, List list) {
  if (write == nullptr) {
    return exportIfcBadUse;
  }
  std::string ignored;
  return guarded(language, ignored, [&] {
    const std::string text = list().text();
    CallerSink sink(write, context);
    sink.write(text.data(), text.size());
    return sink.flush() ? exportIfcOk : exportIfcNotWritten;
  });
}

std::vector<const RolledSection*> sectionsNamed(const char* name) {
  const std::string wanted = name == nullptr ? "" : name;
  const RolledSection* const one = findRolledSection(wanted);
  return one != nullptr ? std::vector{one} : rolledSectionsBeginning(wanted);
}

}  // namespace

std::int32_t exportIfcAbi() { return EXPORTIFC_LIBRARY_ABI; }

const char* exportIfcVersion() { return EXPORTIFC_VERSION; }

const char* exportIfcFormats() try {
  static const std::string list = [] {
    std::string extensions;
    std::string_view before;
    for (const Format& format : formats()) {  // those with one extension stand side by side
      if (format.extension != before) {
        extensions.append(extensions.empty() ? "" : ";").append(format.extension);
      }
      before = format.extension;
    }
    return extensions;
  }();
  return list.c_str();
} catch (const std::bad_alloc&) {
  return "";
}

const char* exportIfcResultText(std::int32_t result, const char* language) {
  const SpokenLanguage spoken(languageOf(language));
  return say(api::textOf(result));
}

ExportIfcResult exportIfcFamilies(const char* language, ExportIfcWrite write, void* context) {
  return writeList(languageOf(language), write, context, familiesJson);
}

ExportIfcResult exportIfcSections(const char* name, ExportIfcWrite write, void* context) {
  return writeList(Language::english, write, context,
                   [&] { return sectionsJson(sectionsNamed(name)); });
}
