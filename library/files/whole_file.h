// A file that appears whole or not at all.
#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "platform/byte_sink.h"

namespace exportifc {

/// Writes beside the target under a temporary name and puts the file in place in one rename, so
/// that a file that was there stays as it is until then. What cannot be replaced by a rename (a
/// device, a pipe) is written directly.
class WholeFile final : public ByteSink {
 public:
  /// Whether a write that a signal cuts short is the last one; null: never.
  using IsInterrupted = bool (*)();

  explicit WholeFile(const std::filesystem::path& target, IsInterrupted isInterrupted = nullptr);
  /// A file that others have opened and close: standard output.
  explicit WholeFile(int openFile, IsInterrupted isInterrupted = nullptr);
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;
  /// Removes what was not put in place.
  ~WholeFile() override;

  /// Buffered: a refusal may come with a later write, or with `commit`. False from then on.
  bool write(const char* bytes, std::size_t size) override;

  /// Hands everything to the system and puts the file in place.
  bool commit();

  /// 0, or the `errno` of what went wrong first, be it the opening.
  int error() const { return error_; }

 private:
  void open(const std::filesystem::path& target);
  void opened(int file);
  void createBeside(const std::filesystem::file_status& replaced);
  void flush();
  bool failed() const { return error_ != 0; }

  std::filesystem::path finalPath_;
  std::filesystem::path temporaryPath_;  // empty: written directly
  std::vector<char> buffer_;
  IsInterrupted isInterrupted_;
  int file_ = -1;
  bool isOurs_ = true;  // to be closed
  int error_ = 0;
};

}  // namespace exportifc
