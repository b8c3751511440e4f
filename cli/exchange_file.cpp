#include "cli/exchange_file.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <string_view>
#include <vector>

#include "cli/failure.h"
#include "cli/messages.h"
#include "library/files/file_names.h"
#include "library/files/paths.h"
#include "library/packing/zip_reader.h"
#include "library/text/file_extension.h"
#include "library/workbook/workbook.h"

namespace exportifc::cli {

namespace {

constexpr std::string_view exchangeStart = "ISO-10303-21;";
constexpr std::size_t pieceSize = 1U << 16;

/// The first bytes of a file; none when there is no such file.
std::string startOf(const std::string& path) {
  std::ifstream file(pathOf(path), std::ios::binary);
  constexpr std::size_t size = 64;  // up to the name of a zip's first member
  std::string start(size, '\0');
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<std::size_t>(file.gcount()));
  return start;
}

/// The one exchange file in a zip; other files may lie beside it.
const ZipMember& exchangeFileIn(const ZipReader& zip, const std::string& path) {
  const auto& members = zip.members();
  const auto isExchange = [](const ZipMember& member) {
    return extensionOf(member.name) == exchangeExtension;
  };
  const auto count = std::count_if(members.begin(), members.end(), isExchange);
  if (count != 1) {
    throw Failure(exitUnreadable,
                  say(texts::cannotRead, {path, say(texts::zipNotOneIfc, {numberText(count)})}));
  }
  return *std::find_if(members.begin(), members.end(), isExchange);
}

const Text& reasonOf(ZipTrouble trouble) {
  switch (trouble) {
    case ZipTrouble::encrypted: return texts::zipEncrypted;
    case ZipTrouble::unknown: return texts::zipOther;
    case ZipTrouble::damaged: break;
  }
  return texts::zipDamaged;
}

void unzip(std::istream& file, const std::string& path, ByteSink& sink) {
  try {
    ZipReader zip(file);
    zip.unpack(exchangeFileIn(zip, path), sink);
  } catch (const ZipFault& fault) {
    throw Failure(exitUnreadable, say(texts::cannotRead, {path, say(reasonOf(fault.trouble()))}));
  }
}

}  // namespace

std::string exchangeName(const std::string& path) {
  return textOf(extensionOf(path) == zippedExtension
                    ? pathOf(path).filename().replace_extension(exchangeExtension)
                    : pathOf(path).filename());
}

ExchangeOutput::ExchangeOutput(const std::string& target) : target_(target), file_(target) {
  if (extensionOf(target) == zippedExtension) {
    zip_.emplace(file_, exchangeName(target));
  }
}

bool ExchangeOutput::write(const char* bytes, std::size_t size) {
  return zip_ ? zip_->write(bytes, size) : file_.write(bytes, size);
}

void ExchangeOutput::commit() {
  if (zip_ && !zip_->finish() && zip_->isTooLarge()) {
    throw Failure(exitNotWritten, say(texts::cannotWrite, {target_, say(texts::tooLargeForZip)}));
  }
  file_.commit();
}

bool isExchangeFile(const std::string& path) {
  const std::string start = startOf(path);
  // A workbook is a zip, too, and so are tables.
  const bool isModel =
      looksLikeWorkbook(start, extensionOf(path)) || start.find(".csv") != std::string::npos;
  return start.starts_with(exchangeStart) || (isZip(start) && !isModel);
}

void copyExchangeFile(const std::string& path, ByteSink& sink) {
  errno = 0;
  std::ifstream file(pathOf(path), std::ios::binary);
  if (isZip(startOf(path))) {
    unzip(file, path, sink);
    return;
  }
  std::vector<char> piece(pieceSize);
  while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())), file.gcount() > 0) {
    if (!sink.write(piece.data(), static_cast<std::size_t>(file.gcount()))) {
      return;
    }
  }
  if (!file.is_open() || file.bad()) {
    const std::string reason = readErrorText(path, errno != 0 ? errno : EIO);
    throw Failure(exitUnreadable, say(texts::cannotRead, {path, reason}));
  }
}

}  // namespace exportifc::cli
