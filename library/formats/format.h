// The formats that models are kept in: one row each.
#pragma once

#include <span>
#include <streambuf>
#include <string_view>
#include <vector>

#include "library/frame/losses.h"
#include "library/frame/model.h"
#include "library/frame/model_error.h"
#include "library/frame/problem.h"
#include "library/text/text.h"
#include "platform/byte_sink.h"

namespace exportifc {

struct Format {
  ModelFormat id;
  const Text& name;            ///< for people
  std::string_view extension;  ///< to recommend; lower case, with its point
  /// Whether a file that begins so, or has a name with this extension, is meant as one.
  bool (*recognises)(std::string_view start, std::string_view extension);
  /// Reads a model in one pass. Throws ModelError.
  Model (*read)(std::streambuf& text);
  /// What a model would lose if it were written so.
  Losses (*losses)(const Model& model);
  /// Writes a model that has no obstacle among its losses; null where every model has one.
  void (*write)(const Model& model, ByteSink& output);
  /// Fills in lines and columns by pointers. `text` is the model once more, null when it cannot be
  /// read twice; `readTo` is the place where a failed reading ended.
  void (*locate)(std::streambuf* text, std::vector<Problem>& problems, TextPlace readTo);
};

/// The first that recognises a file reads it.
std::span<const Format> formats();
const Format& formatOf(ModelFormat id);

/// The format of a text that begins so, under a name with this extension. Throws ModelError for
/// what is no text of a model at all: an empty file, UTF-16, an exchange file.
const Format& recognisedFormat(std::string_view start, std::string_view extension);

}  // namespace exportifc
