#include "library/packing/zip_sink.h"

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
  std::size_t size() const { return bytes_.size(); }
  bool writeTo(ByteSink& sink) const { return sink.write(bytes_.data(), bytes_.size()); }

 private:
  std::string bytes_;
};

}  // namespace

ZipSink::ZipSink(ByteSink& next, std::string member)
    : member_(std::move(member)),
      flags_(
          static_cast<std::uint16_t>(zip::sizesFollow | (isUtf8(member_) ? zip::nameIsUtf8 : 0))),
      next_(next),
      packed_(next, DeflateFrame::none),
      checksum_(zip::checksumOfNothing) {
  Record head;
  head.add32(zip::memberMark)
      .add16(version)
      .add16(flags_)
      .add16(zip::deflated)
      .add32(noTime)
      .add32(0)  // checksum and both sizes follow
      .add32(0)
      .add32(0)
      .add16(member_.size())
      .add16(0)  // extra field
      .add(member_);
  goesOn_ = head.writeTo(next_);
}

bool ZipSink::write(const char* bytes, std::size_t size) {
  checksum_ = zip::checksum(checksum_, bytes, size);
  goesOn_ = goesOn_ && packed_.write(bytes, size);
  return goesOn_;
}

bool ZipSink::finish() {
  goesOn_ = goesOn_ && packed_.finish();
  Record sizes;
  sizes.add32(zip::sizesMark).add32(checksum_).add32(packed_.given()).add32(packed_.taken());
  Record directory;
  directory.add32(zip::directoryMark)
      .add16(version)
      .add16(version)
      .add16(flags_)
      .add16(zip::deflated)
      .add32(noTime)
      .add32(checksum_)
      .add32(packed_.given())
      .add32(packed_.taken())
      .add16(member_.size())
      .add16(0)  // extra field
      .add16(0)  // comment
      .add16(0)  // disk
      .add16(0)  // attributes
      .add32(0)
      .add32(0)  // where the member begins
      .add(member_);
  Record end;
  end.add32(zip::endMark)
      .add16(0)  // disks
      .add16(0)
      .add16(1)  // members
      .add16(1)
      .add32(directory.size())
      .add32(zip::memberSize + member_.size() + packed_.given() + sizes.size())
      .add16(0);  // comment
  goesOn_ = goesOn_ && sizes.writeTo(next_) && directory.writeTo(next_) && end.writeTo(next_);
  return goesOn_ && !isTooLarge();
}

}  // namespace exportifc
