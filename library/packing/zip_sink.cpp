#include "library/packing/zip_sink.h"

#include <string>
#include <string_view>
#include <utility>

#include "library/packing/zip_records.h"
#include "library/text/text_encoding.h"

namespace exportifc {

namespace {

constexpr std::uint16_t version = 20;         // 2.0, the first that deflates
constexpr std::uint32_t noTime = 0x00210000;  // 1980-01-01, the first that a zip can tell

class Record {
 public:
  Record& add16(std::size_t value) {
    bytes_.push_back(static_cast<char>(value & 0xFF));
    bytes_.push_back(static_cast<char>((value >> 8) & 0xFF));
    return *this;
  }
  Record& add32(std::uint64_t value) { return add16(value & 0xFFFF).add16((value >> 16) & 0xFFFF); }
  Record& add(std::string_view text) {
    bytes_ += text;
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace

void ZipWriter::put(const std::string& record) {
  goesOn_ = goesOn_ && next_.write(record.data(), record.size());
  written_ += record.size();
}

void ZipWriter::begin(std::string name) {
  members_.push_back({.name = std::move(name), .start = written_});
  Member& member = members_.back();
  member.flags =
      static_cast<std::uint16_t>(zip::sizesFollow | (isUtf8(member.name) ? zip::nameIsUtf8 : 0));
  member.checksum = zip::checksumOfNothing;
  Record head;
  head.add32(zip::memberMark)
      .add16(version)
      .add16(member.flags)
      .add16(zip::deflated)
      .add32(noTime)
      .add32(0)  // checksum and both sizes follow
      .add32(0)
      .add32(0)
      .add16(member.name.size())
      .add16(0)  // extra field
      .add(member.name);
  put(head.bytes());
  packed_.emplace(next_, DeflateFrame::none);
}

bool ZipWriter::write(const char* bytes, std::size_t size) {
  Member& member = members_.back();
  member.checksum = zip::checksum(member.checksum, bytes, size);
  goesOn_ = goesOn_ && packed_->write(bytes, size);
  isTooLarge_ = isTooLarge_ || packed_->taken() > mostBytes || packed_->given() > mostBytes;
  return goesOn_;
}

void ZipWriter::end() {
  Member& member = members_.back();
  goesOn_ = goesOn_ && packed_->finish();
  member.packedSize = packed_->given();
  member.size = packed_->taken();
  packed_.reset();
  written_ += member.packedSize;
  Record sizes;
  sizes.add32(zip::sizesMark).add32(member.checksum).add32(member.packedSize).add32(member.size);
  put(sizes.bytes());
  isTooLarge_ = isTooLarge_ || member.packedSize > mostBytes || member.size > mostBytes ||
                written_ > mostBytes;
}

bool ZipWriter::finish() {
  const std::uint64_t directoryStart = written_;
  for (const Member& member : members_) {
    Record entry;
    entry.add32(zip::directoryMark)
        .add16(version)
        .add16(version)
        .add16(member.flags)
        .add16(zip::deflated)
        .add32(noTime)
        .add32(member.checksum)
        .add32(member.packedSize)
        .add32(member.size)
        .add16(member.name.size())
        .add16(0)  // extra field
        .add16(0)  // comment
        .add16(0)  // disk
        .add16(0)  // attributes
        .add32(0)
        .add32(member.start)
        .add(member.name);
    put(entry.bytes());
  }
  Record end;
  end.add32(zip::endMark)
      .add16(0)  // disks
      .add16(0)
      .add16(members_.size())
      .add16(members_.size())
      .add32(written_ - directoryStart)
      .add32(directoryStart)
      .add16(0);  // comment
  put(end.bytes());
  return goesOn_ && !isTooLarge_;
}

ZipSink::ZipSink(ByteSink& next, std::string member) : zip_(next) { zip_.begin(std::move(member)); }

bool ZipSink::finish() {
  zip_.end();
  return zip_.finish();
}

}  // namespace exportifc
