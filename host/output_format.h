// What kind of file a name promises.
#pragma once

#include <cstdint>
#include <string>

#include "host/model.h"

namespace exportifc::host {

/// The kinds of file that the program writes for the user.
enum class OutputFormat : std::uint8_t { exchangeFile, page, jsonModel, batchText };

/// Refuses an output whose extension names another of these kinds than the one to be written: a
/// model under the name of an IFC file helps nobody, and an IFC file under that of a model may have
/// replaced one. Letter case does not matter; a name without extension, or with one that is none of
/// the program's, takes any kind. Throws a Failure (exitBadUse).
void requireExtension(const std::string& output, OutputFormat written);

/// What `convert` makes of a model, by the format it is read from: there are two, and each becomes
/// the other. Throws a Failure (exitBadUse) when the output's extension says that it should stay
/// what it is, or become something else.
OutputFormat convertedFormat(const std::string& model, ModelFormat format,
                             const std::string& output);

}  // namespace exportifc::host
