#include "library/workbook/xml_reader.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include <expat.h>

namespace exportifc {

namespace {

constexpr int mostDepth = 64;
// The parser reads a tag from its beginning on with each piece: a long one costs its square.
constexpr std::size_t longestTag = std::size_t{1} << 20;

std::string_view withoutPrefix(const char* name) {
  const char* const colon = std::strchr(name, ':');
  return colon == nullptr ? name : colon + 1;
}

}  // namespace

/// No exception passes through the parser: it is kept, and the parser stopped.
struct XmlReader::Calls {
  template <class Call>
  static void guarded(void* user, Call call) {
    auto& reader = *static_cast<XmlReader*>(user);
    reader.silent_ = 0;
    if (reader.fault_) {
      return;  // a stopped parser may still have something to say
    }
    try {
      call(reader);
    } catch (...) {
      reader.fail(std::current_exception());
    }
  }

  static void XMLCALL begin(void* user, const char* name, const char** attributes) {
    guarded(user, [&](XmlReader& reader) {
      if (++reader.depth_ > mostDepth) {
        throw XmlFault(XmlTrouble::outsized);
      }
      reader.handler_.begin(withoutPrefix(name), XmlAttributes(attributes));
    });
  }
  static void XMLCALL end(void* user, const char* name) {
    guarded(user, [&](XmlReader& reader) {
      --reader.depth_;
      reader.handler_.end(withoutPrefix(name));
    });
  }
  static void XMLCALL text(void* user, const char* piece, int size) {
    guarded(user, [&](XmlReader& reader) {
      reader.handler_.text({piece, static_cast<std::size_t>(size)});
    });
  }
  static void XMLCALL documentType(void* user, const char* /*name*/, const char* /*system*/,
                                   const char* /*open*/, int /*hasInternal*/) {
    static_cast<XmlReader*>(user)->fail(XmlTrouble::declarations);
  }
};

std::string_view XmlAttributes::operator[](std::string_view name) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
    if (withoutPrefix(pair[0]) == name) {
      return pair[1];
    }
  }
  return {};
}

XmlReader::XmlReader(XmlHandler& handler) : handler_(handler), parser_(XML_ParserCreate(nullptr)) {
  if (parser_ == nullptr) {
    throw std::bad_alloc();
  }
  XML_SetUserData(parser_, this);
  XML_SetElementHandler(parser_, Calls::begin, Calls::end);
  XML_SetCharacterDataHandler(parser_, Calls::text);
  XML_SetStartDoctypeDeclHandler(parser_, Calls::documentType);
}

XmlReader::~XmlReader() { XML_ParserFree(parser_); }

bool XmlReader::write(const char* bytes, std::size_t size) {
  constexpr std::size_t pieceSize = std::size_t{1} << 16;
  while (size > 0) {
    const std::size_t piece = std::min(size, pieceSize);
    parse(bytes, static_cast<int>(piece), false);
    bytes += piece;
    size -= piece;
  }
  return true;
}

void XmlReader::finish() { parse("", 0, true); }

void XmlReader::parse(const char* bytes, int size, bool isLast) {
  silent_ += static_cast<std::size_t>(size);
  const bool isSound = XML_Parse(parser_, bytes, size, isLast ? 1 : 0) == XML_STATUS_OK;
  if (!isSound && !fault_) {
    if (XML_GetErrorCode(parser_) == XML_ERROR_NO_MEMORY) {
      throw std::bad_alloc();
    }
    fail(XmlTrouble::damaged);
  }
  if (!fault_ && silent_ > longestTag) {
    fail(XmlTrouble::outsized);
  }
  if (fault_) {
    std::rethrow_exception(fault_);
  }
}

void XmlReader::fail(std::exception_ptr fault) {
  fault_ = std::move(fault);
  XML_StopParser(parser_, XML_FALSE);
}

}  // namespace exportifc
