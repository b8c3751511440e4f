// A file that appears whole or not at all.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/byte_sink.h"

namespace exportifc::cli {

/// Writes beside the target under a temporary name and puts the file in place in one rename, so
/// that a file that was there stays as it is until then. What cannot be replaced by a rename
/// (a device, a pipe, "-" for standard output) is written directly.
class OutputFile final : public ByteSink {
 public:
  /// Opens the output; a Failure names the reason when it cannot be created.
  explicit OutputFile(std::string target);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Removes what was not put in place.
  ~OutputFile() override;

  /// Buffered: a refusal may come with a later write, or with `commit`. False from then on.
  bool write(const char* bytes, std::size_t size) override;
  bool write(std::string_view text) { return write(text.data(), text.size()); }

  /// Hands everything to the system and puts the file in place; throws a Failure when it cannot.
  void commit();

  bool failed() const { return error_ != 0; }
  /// Why, for the user.
  std::string failureText() const;

 private:
  void open();
  void opened(int file);
  void createBeside(const std::filesystem::file_status& replaced);
  void flush();

  std::string target_;
  std::filesystem::path finalPath_;
  std::filesystem::path temporaryPath_;  // empty: written directly
  std::vector<char> buffer_;
  int file_ = -1;
  int error_ = 0;
};

/// Whether the user means standard input or output.
inline bool isStandardStream(std::string_view name) { return name == "-"; }

/// The file that a path leads to, there or not: a link keeps pointing to what is replaced.
std::filesystem::path behindLinks(const std::filesystem::path& path);

/// Why the system refuses to read or write the file `name`: a folder that is missing is named.
std::string readErrorText(const std::string& name, int error);
std::string writeErrorText(const std::string& name, int error);

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

/// The system's reason for an error number, in the user's language.
std::string systemErrorText(int error);

}  // namespace exportifc::cli
