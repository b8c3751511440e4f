// What kind of file a name promises.
#pragma once

#include <string>
#include <string_view>

#include "library/formats/format.h"
#include "library/text/text.h"

namespace exportifc::cli {

/// A kind of file that the program writes.
struct OutputKind {
  std::string_view extension;  ///< lower case, with its point; the one, or those, to recommend
  const Text& name;
  std::string_view command;  ///< which writes it
};

/// "export", "view" and "takeoff" write these; "convert" the formats of models.
extern const OutputKind exchangeFileKind;
extern const OutputKind pageKind;
extern const OutputKind takeoffKind;

/// Refuses an output whose extension names another of the program's kinds than the one to be
/// written: a model under the name of an IFC file helps no one, and an IFC file under that of a
/// model may have replaced one. Letter case does not matter; a name without extension, or with one
/// that is none of the program's, takes any kind. Throws a Failure (exitBadUse).
void requireExtension(const std::string& output, const OutputKind& written);

/// The format that `convert` writes a model in: that of the output's extension, otherwise the first
/// that the model is not in. Throws a Failure (exitBadUse) when the extension says that the model
/// should stay what it is, or become no model.
const Format& convertedFormat(const std::string& model, const Format& read,
                              const std::string& output);

}  // namespace exportifc::cli
