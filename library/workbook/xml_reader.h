// XML in pieces, with nothing in it that a workbook does not need.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string_view>

#include "platform/byte_sink.h"

struct XML_ParserStruct;

namespace exportifc {

/// Why XML is not read.
enum class XmlTrouble : std::uint8_t {
  damaged,
  declarations,  ///< a document type, which could have entities
  outsized,      ///< elements in too many others, or a tag of more than a mebibyte
};

class XmlFault final : public std::runtime_error {
 public:
  explicit XmlFault(XmlTrouble trouble) : std::runtime_error("xml"), trouble_(trouble) {}
  XmlTrouble trouble() const { return trouble_; }

 private:
  XmlTrouble trouble_;
};

/// The attributes of an element; they hold while it begins.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}

  /// The value of a name without its prefix; empty when there is none.
  std::string_view operator[](std::string_view name) const;

 private:
  const char** pairs_;
};

/// Is told what XML holds, in UTF-8; names come without their prefixes.
class XmlHandler {
 public:
  XmlHandler() = default;
  XmlHandler(const XmlHandler&) = delete;
  XmlHandler& operator=(const XmlHandler&) = delete;
  virtual ~XmlHandler() = default;

  virtual void begin(std::string_view element, const XmlAttributes& attributes) = 0;
  virtual void end(std::string_view element) = 0;
  virtual void text(std::string_view piece) = 0;
};

/// Reads the XML that is written into it. What the handler throws comes out of `write`, as an
/// XmlFault does.
class XmlReader final : public ByteSink {
 public:
  /// `handler` must outlive it.
  explicit XmlReader(XmlHandler& handler);
  ~XmlReader() override;

  bool write(const char* bytes, std::size_t size) override;
  /// The text ends here.
  void finish();

 private:
  struct Calls;  // from the parser

  void parse(const char* bytes, int size, bool isLast);
  void fail(XmlTrouble trouble) { fail(std::make_exception_ptr(XmlFault(trouble))); }
  void fail(std::exception_ptr fault);

  XmlHandler& handler_;
  XML_ParserStruct* parser_;
  std::exception_ptr fault_;
  int depth_ = 0;
  std::size_t silent_ = 0;  // bytes since the handler was last told something
};

}  // namespace exportifc
