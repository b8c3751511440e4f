// The files of one call of the program, known before any of them is opened.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "cli/console.h"
#include "cli/messages.h"

namespace exportifc::cli {

/// What a file is that the program writes under a name of its own choice. It replaces only what it
/// has written itself.
enum class OwnFile : std::uint8_t { exchangeFile, page, drawing };

/// Sees to it that no output of a call is one of its inputs, of its other outputs, or a part of the
/// program. Every command declares each of its files here first. Two names are one file when they
/// lead to it by whatever way: links of both kinds, relative paths, the letter case and the
/// trailing dots that Windows ignores, a redirected standard stream.
///
/// Every function throws a Failure (exitBadUse) that names both files. "-" is the standard stream.
class FilePlan {
 public:
  /// The program itself, its page and redirected standard streams are in every plan.
  FilePlan() : FilePlan(false) {}
  /// A program that listens takes standard output for what it hears.
  explicit FilePlan(const Console& console) : FilePlan(console.isForPrograms()) {}

  /// Standard input can be read once only.
  void reads(const std::string& name, const Text& role = texts::fileInput);

  /// An output that the user named.
  void writes(const std::string& name, const std::string& role = say(texts::fileOutput));

  /// An output that a person goes on working in: one that is there is not replaced.
  void writesNew(const std::string& name);

  /// An output whose name the program derived. `advice` says how a file that is
  /// in the way can be replaced.
  void writesDerived(const std::string& name, const std::string& role, OwnFile kind,
                     const Text& advice);

 private:
  struct Use {
    std::string name;
    std::string role;
    bool isOutput = false;
  };

  explicit FilePlan(bool isOutputTaken);
  void add(const std::string& identity, Use use);

  std::map<std::string, Use> files_;
  bool readsStandardInput_ = false;
  bool isOutputTaken_;
};

}  // namespace exportifc::cli
