// Where a command writes: a file, or standard output.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "library/files/whole_file.h"
#include "platform/byte_sink.h"

namespace exportifc::cli {

/// A `WholeFile` that the user named, or "-" for standard output.
class OutputFile final : public ByteSink {
 public:
  /// Opens the output; a Failure names the reason when it cannot be created.
  explicit OutputFile(std::string target);

  bool write(const char* bytes, std::size_t size) override { return file_.write(bytes, size); }
  bool write(std::string_view text) { return write(text.data(), text.size()); }

  /// Hands everything to the system and puts the file in place; throws a Failure when it cannot.
  void commit();

  bool failed() const { return file_.error() != 0; }
  /// Why, for the user.
  std::string failureText() const;

 private:
  std::string target_;
  WholeFile file_;
};

/// Whether the user means standard input or output.
inline bool isStandardStream(std::string_view name) { return name == "-"; }

/// A folder for outputs: makes it and those above it, and removes again what stays empty.
class MadeFolder {
 public:
  /// Throws a Failure that names the folder.
  explicit MadeFolder(const std::string& name);
  MadeFolder(const MadeFolder&) = delete;
  MadeFolder& operator=(const MadeFolder&) = delete;
  ~MadeFolder() { removeEmpty(); }

 private:
  void removeEmpty() const;

  std::vector<std::filesystem::path> made_;  // the deepest first
};

}  // namespace exportifc::cli
