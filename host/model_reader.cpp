#include "host/model_reader.h"

#include <cerrno>
#include <fstream>
#include <iostream>
#include <istream>

#include "host/batch_model.h"
#include "host/failure.h"
#include "host/json_model.h"
#include "host/messages.h"
#include "host/output_file.h"
#include "host/paths.h"

namespace exportifc::host {

namespace {

bool looksLikeJson(std::streambuf& text, const std::string& name) {
  const auto first = text.sgetc();
  return first == '{' || first == '[' || first == 0xEF || pathOf(name).extension() == ".json";
}

/// "model.json:12:7: /bars/3/type: ", with what of it is known.
std::string placeText(const std::string& name, const ModelError& error) {
  std::string text = name + ":";
  if (error.place().line > 0) {
    text += std::to_string(error.place().line) + ":";
    if (error.place().column > 0) {
      text += std::to_string(error.place().column) + ":";
    }
  }
  text += " ";
  return error.pointer().empty() ? text : text + error.pointer() + ": ";
}

Model readFrom(std::streambuf& text, const std::string& name) {
  try {
    if (looksLikeJson(text, name)) {
      return readJsonModel(text);
    }
    std::istream lines(&text);
    return readBatchModel(lines);
  } catch (const ModelError& error) {
    const std::string shown = displayName(name);
    const std::string message = error.what();
    throw Failure(exitUnreadable, message.empty() ? say(texts::notAModel, {shown})
                                                  : placeText(shown, error) + message);
  }
}

}  // namespace

std::string displayName(const std::string& name) {
  return isStandardStream(name) ? say(texts::standardInput) : name;
}

Model readModel(const std::string& name) {
  if (isStandardStream(name)) {
    return readFrom(*std::cin.rdbuf(), name);
  }
  const auto refuse = [&](int error) {
    throw Failure(exitUnreadable, say(texts::cannotRead, {name, systemErrorText(error)}));
  };
  std::error_code ignored;
  if (std::filesystem::is_directory(pathOf(name), ignored)) {
    refuse(EISDIR);
  }
  std::filebuf file;
  errno = 0;
  if (file.open(pathOf(name), std::ios::in | std::ios::binary) == nullptr) {
    refuse(errno != 0 ? errno : ENOENT);
  }
  return readFrom(file, name);
}

}  // namespace exportifc::host
