#include "library/packing/zip_reader.h"

#include <algorithm>
#include <new>
#include <utility>

#include "library/packing/zip_records.h"

namespace exportifc {

namespace {

constexpr std::size_t longestComment = 0xFFFF;
constexpr std::size_t pieceSize = 1U << 16;

std::uint16_t number16(std::string_view bytes, std::size_t place) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  return static_cast<std::uint16_t>(at(place) | at(place + 1) << 8);
}

std::uint32_t number32(std::string_view bytes, std::size_t place) {
  return number16(bytes, place) | static_cast<std::uint32_t>(number16(bytes, place + 2)) << 16;
}

/// Hands on what comes out of a member, and sees that it is what the zip says.
class CheckedSink final : public ByteSink {
 public:
  CheckedSink(ByteSink& next, const ZipMember& member) : next_(next), member_(member) {}

  bool write(const char* bytes, std::size_t size) override {
    if (size > member_.size - size_) {
      throw ZipFault(ZipTrouble::damaged);
    }
    size_ += static_cast<std::uint32_t>(size);
    checksum_ = zip::checksum(checksum_, bytes, size);
    return next_.write(bytes, size);
  }
  void finish() const {
    if (size_ != member_.size || checksum_ != member_.checksum) {
      throw ZipFault(ZipTrouble::damaged);
    }
  }

 private:
  ByteSink& next_;
  const ZipMember& member_;
  std::uint32_t size_ = 0;
  std::uint32_t checksum_ = zip::checksumOfNothing;
};

/// Inflates what is written.
class InflateSink final : public ByteSink {
 public:
  explicit InflateSink(ByteSink& next) : next_(next), piece_(pieceSize) {
    if (inflateInit2(&stream_, -MAX_WBITS) != Z_OK) {
      throw std::bad_alloc();
    }
  }
  InflateSink(const InflateSink&) = delete;
  InflateSink& operator=(const InflateSink&) = delete;
  ~InflateSink() override { inflateEnd(&stream_); }

  bool write(const char* bytes, std::size_t size) override {
    stream_.next_in = reinterpret_cast<const unsigned char*>(bytes);
    stream_.avail_in = static_cast<unsigned>(size);
    do {
      stream_.next_out = reinterpret_cast<unsigned char*>(piece_.data());
      stream_.avail_out = static_cast<unsigned>(piece_.size());
      state_ = inflate(&stream_, Z_NO_FLUSH);
      if (state_ != Z_OK && state_ != Z_STREAM_END && state_ != Z_BUF_ERROR) {
        throw ZipFault(ZipTrouble::damaged);
      }
      if (!next_.write(piece_.data(), piece_.size() - stream_.avail_out)) {
        return false;
      }
    } while (stream_.avail_out == 0);
    return true;
  }
  void finish() const {
    if (state_ != Z_STREAM_END || stream_.avail_in > 0) {
      throw ZipFault(ZipTrouble::damaged);
    }
  }

 private:
  ByteSink& next_;
  z_stream stream_{};
  std::vector<char> piece_;
  int state_ = Z_OK;
};

}  // namespace

ZipReader::ZipReader(std::istream& zip) : zip_(zip) {
  zip_.seekg(0, std::ios::end);
  size_ = static_cast<std::uint64_t>(std::max<std::streamoff>(zip_.tellg(), 0));
  const auto tailSize =
      static_cast<std::size_t>(std::min<std::uint64_t>(size_, zip::endSize + longestComment));
  const std::string tail(read(size_ - tailSize, tailSize));
  for (std::size_t end = tail.size() + 1; end-- > zip::endSize;) {
    const std::size_t start = end - zip::endSize;
    if (number32(tail, start) == zip::endMark) {
      readDirectory(number32(tail, start + 16), number16(tail, start + 10));
      return;
    }
  }
  throw ZipFault(ZipTrouble::damaged);
}

void ZipReader::readDirectory(std::uint64_t place, unsigned count) {
  if (place == zip::elsewhere) {
    throw ZipFault(ZipTrouble::unknown);
  }
  for (unsigned i = 0; i < count; ++i) {
    const std::string_view head = read(place, zip::directorySize);
    if (number32(head, 0) != zip::directoryMark) {
      throw ZipFault(ZipTrouble::damaged);
    }
    const std::size_t nameSize = number16(head, 28);
    const std::size_t wholeSize =
        zip::directorySize + nameSize + number16(head, 30) + number16(head, 32);
    ZipMember member{.name = {},
                     .flags = number16(head, 8),
                     .method = number16(head, 10),
                     .checksum = number32(head, 16),
                     .packedSize = number32(head, 20),
                     .size = number32(head, 24),
                     .start = number32(head, 42)};
    member.name = read(place + zip::directorySize, nameSize);
    members_.push_back(std::move(member));
    place += wholeSize;
  }
}

void ZipReader::unpack(const ZipMember& member, ByteSink& sink) {
  if ((member.flags & zip::isEncrypted) != 0) {
    throw ZipFault(ZipTrouble::encrypted);
  }
  if ((member.method != zip::stored && member.method != zip::deflated) ||
      member.size == zip::elsewhere || member.packedSize == zip::elsewhere ||
      member.start == zip::elsewhere) {
    throw ZipFault(ZipTrouble::unknown);
  }
  const std::string_view head = read(member.start, zip::memberSize);
  if (number32(head, 0) != zip::memberMark) {
    throw ZipFault(ZipTrouble::damaged);
  }
  std::uint64_t place = std::uint64_t{member.start} + zip::memberSize + number16(head, 26) +
                        number16(head, 28);  // behind its name and its extra field
  CheckedSink checked(sink, member);
  InflateSink inflated(checked);
  ByteSink* way = &inflated;
  if (member.method == zip::stored) {
    way = &checked;
  }
  for (std::uint64_t left = member.packedSize; left > 0;) {
    const std::string_view piece =
        read(place, static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize)));
    if (!way->write(piece.data(), piece.size())) {
      return;
    }
    place += piece.size();
    left -= piece.size();
  }
  if (member.method == zip::deflated) {
    inflated.finish();
  }
  checked.finish();
}

std::string_view ZipReader::read(std::uint64_t place, std::size_t size) {
  bytes_.resize(size);
  zip_.clear();
  zip_.seekg(static_cast<std::streamoff>(place));
  if (place > size_ || size > size_ - place ||
      !zip_.read(bytes_.data(), static_cast<std::streamsize>(size))) {
    throw ZipFault(ZipTrouble::damaged);
  }
  return bytes_;
}

bool isZip(std::string_view start) {
  return start.size() >= 4 && number32(start, 0) == zip::memberMark;
}

}  // namespace exportifc
