#include "cli/file_plan.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>

#include "cli/failure.h"
#include "cli/output_file.h"
#include "cli/system.h"
#include "cli/viewer_page.h"
#include "library/files/file_names.h"
#include "library/files/file_system.h"
#include "library/files/paths.h"
#include "library/formats/tables/table_folder.h"
#include "library/frame/text_sink.h"
#include "step/step_writer.h"

namespace fs = std::filesystem;

namespace exportifc::cli {

namespace {

/// How every exchange file of this program begins.
std::string ownHeader() {
  std::string text;
  StepWriter(std::make_unique<TextSink>(text)).writeHeader();
  return text;
}

bool isOwn(const std::string& name, OwnFile kind) {
  constexpr std::size_t enough = 1U << 16;
  std::string start(enough, '\0');
  std::ifstream file(pathOf(name), std::ios::binary);
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<std::size_t>(file.gcount()));
  if (start.empty()) {
    return file.eof();
  }
  switch (kind) {
    case OwnFile::exchangeFile: return start.starts_with(ownHeader());
    case OwnFile::page: return isOwnPage(start);
    case OwnFile::drawing:
      return start.starts_with("<svg ") && start.find("\n<style>.section{") != std::string::npos;
  }
  return false;
}

/// Whether a file is there; devices and pipes take what they are given.
bool isThere(const std::string& name) {
  std::error_code ignored;
  return !isStandardStream(name) && fs::is_regular_file(pathOf(name), ignored);
}

}  // namespace

FilePlan::FilePlan(bool isOutputTaken) : isOutputTaken_(isOutputTaken) {
  std::error_code ignored;
  const auto guard = [&](const fs::path& path) {
    if (fs::exists(path, ignored)) {
      reads(textOf(path), texts::fileOfProgram);
    }
  };
  guard(system::programPath());
  for (const fs::path& page : viewerPagePlaces()) {
    guard(page);
  }
  const std::string output = system::identityOf(system::StandardStream::output);
  const std::string errors = system::identityOf(system::StandardStream::error);
  add(output, {say(texts::standardOutput), say(texts::fileOutput), true});
  if (errors != output) {
    add(errors, {say(texts::standardError), say(texts::fileOutput), true});
  }
}

void FilePlan::reads(const std::string& name, const Text& role) {
  if (isStandardStream(name) && std::exchange(readsStandardInput_, true)) {
    throw Failure(exitBadUse, say(texts::useInputOnce));
  }
  isStandardStream(name) ? add(system::identityOf(system::StandardStream::input),
                               {say(texts::standardInput), say(role)})
                         : add(identityOf(pathOf(name)), {name, say(role)});
  if (!isStandardStream(name)) {
    for (const std::string& table : tablesIn(name)) {
      add(identityOf(pathOf(table)), {table, say(role)});
    }
  }
}

void FilePlan::writes(const std::string& name, const std::string& role) {
  if (isStandardStream(name) && isOutputTaken_) {
    throw Failure(exitBadUse, say(texts::useJsonOutput));
  }
  if (!isStandardStream(name)) {  // which is in every plan
    if (const std::string device = files::deviceIn(pathOf(name)); !device.empty()) {
      throw Failure(exitBadUse, say(texts::reservedName, {name, device}));
    }
    add(identityOf(pathOf(name)), {name, role, true});
  }
}

void FilePlan::writesNew(const std::string& name) {
  writes(name);
  if (isThere(name)) {
    throw Failure(exitBadUse, say(texts::tablesThere, {name}));
  }
}

void FilePlan::writesDerived(const std::string& name, const std::string& role, OwnFile kind,
                             const Text& advice) {
  writes(name, role);
  if (isThere(name) && !isOwn(name, kind)) {
    throw Failure(exitBadUse, say(texts::notOurs, {name, role, say(advice)}));
  }
}

void FilePlan::add(const std::string& identity, Use use) {
  if (identity.empty()) {
    return;
  }
  const auto [place, isNew] = files_.try_emplace(identity, use);
  const Use& other = place->second;
  if (!isNew && (other.isOutput || use.isOutput)) {
    throw Failure(exitBadUse, say(texts::sameFile, {use.name, use.role, other.name, other.role}));
  }
}

}  // namespace exportifc::cli
