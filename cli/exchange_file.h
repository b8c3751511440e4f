// Exchange files as they lie on a disk: plain, or zipped as .ifczip.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "cli/output_file.h"
#include "library/packing/zip_sink.h"
#include "platform/byte_sink.h"

namespace exportifc::cli {

inline constexpr const char* exchangeExtension = ".ifc";
inline constexpr const char* zippedExtension = ".ifczip";

/// The name of the exchange file itself, without folder, whatever it lies in.
std::string exchangeName(const std::string& path);

/// An exchange file to be written, zipped when its name asks for it.
class ExchangeOutput final : public ByteSink {
 public:
  /// Throws a Failure when the file cannot be made.
  explicit ExchangeOutput(const std::string& target);

  bool write(const char* bytes, std::size_t size) override;

  /// Puts the whole file in place; throws a Failure when it cannot.
  void commit();

  bool failed() const { return file_.failed(); }
  std::string failureText() const { return file_.failureText(); }

 private:
  std::string target_;
  OutputFile file_;
  std::optional<ZipSink> zip_;
};

/// Whether a file begins as an exchange file does, or as a zip.
bool isExchangeFile(const std::string& path);

/// Hands an exchange file on, piece by piece, out of its zip if it lies in one. Throws a Failure
/// when it cannot be read. Stops when the sink refuses something, whose owner tells why.
void copyExchangeFile(const std::string& path, ByteSink& sink);

}  // namespace exportifc::cli
