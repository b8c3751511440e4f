#include "library/workbook/package.h"

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

#include "library/frame/model_error.h"
#include "library/text/messages.h"

namespace exportifc {

namespace {

[[noreturn]] void fail(const char* code, std::string message, const std::string& place = {}) {
  throw ModelError({.code = code, .message = std::move(message), .cell = place});
}

const Text& messageOf(ZipTrouble trouble) {
  switch (trouble) {
    case ZipTrouble::encrypted: return texts::workbookLocked;
    case ZipTrouble::unknown: return texts::workbookOtherZip;
    case ZipTrouble::damaged: break;
  }
  return texts::workbookDamaged;
}

const Text& messageOf(XmlTrouble trouble) {
  switch (trouble) {
    case XmlTrouble::declarations: return texts::workbookDeclarations;
    case XmlTrouble::outsized: return texts::workbookOutsized;
    case XmlTrouble::damaged: break;
  }
  return texts::workbookBadXml;
}

/// Names of parts are the same in any case, and some writers begin or divide them otherwise.
std::string plainName(std::string_view name) {
  std::string plain;
  for (const char letter : name.substr(name.starts_with('/') || name.starts_with('\\') ? 1 : 0)) {
    plain += letter == '\\'                   ? '/'
             : letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a')
                                              : letter;
  }
  return plain;
}

/// "xl/" of "xl/workbook.xml".
std::string_view folderOf(std::string_view part) { return part.substr(0, part.rfind('/') + 1); }

/// A target as it stands in a relationship of that part, from the root.
std::string resolved(std::string_view part, std::string_view target) {
  if (target.starts_with('/')) {
    return std::string(target.substr(1));
  }
  std::string folder(folderOf(part));
  for (;;) {
    if (target.starts_with("./")) {
      target.remove_prefix(2);
    } else if (target.starts_with("../")) {
      target.remove_prefix(3);
      folder = folderOf(std::string_view(folder).substr(0, folder.empty() ? 0 : folder.size() - 1));
    } else {
      return folder.append(target);
    }
  }
}

class RelationshipHandler final : public XmlHandler {
 public:
  explicit RelationshipHandler(std::string_view part) : part_(part) {}

  std::map<std::string, Relationship> take() { return std::move(found_); }

  void begin(std::string_view element, const XmlAttributes& attributes) override {
    if (element == "Relationship" && attributes["TargetMode"] != "External") {
      const std::string_view type = attributes["Type"];
      found_[std::string(attributes["Id"])] = {
          .type = std::string(type.substr(type.rfind('/') + 1)),
          .target = resolved(part_, attributes["Target"])};
    }
  }
  void end(std::string_view /*element*/) override {}
  void text(std::string_view /*piece*/) override {}

 private:
  std::string part_;
  std::map<std::string, Relationship> found_;
};

}  // namespace

Package::Package(std::string bytes, std::uint64_t mostUnpacked)
    : file_(std::make_unique<std::istringstream>(std::move(bytes), std::ios::binary)),
      left_(mostUnpacked) {
  try {
    zip_ = std::make_unique<ZipReader>(*file_);
  } catch (const ZipFault& fault) {
    fail("damaged-workbook", say(messageOf(fault.trouble())));
  }
}

Package::~Package() = default;

const ZipMember* Package::find(std::string_view part) const {
  const auto& members = zip_->members();
  const auto found = std::find_if(
      members.begin(), members.end(),
      [wanted = plainName(part)](const auto& member) { return plainName(member.name) == wanted; });
  return found == members.end() ? nullptr : &*found;
}

void Package::read(std::string_view part, const std::string& place, XmlHandler& handler) {
  const ZipMember* const member = find(part);
  if (member == nullptr) {
    fail("damaged-workbook", say(texts::workbookPartMissing, {part}), place);
  }
  if (member->size > left_) {
    fail("workbook-too-large", say(texts::workbookTooLarge, {std::to_string(mostBytes >> 20)}),
         place);
  }
  left_ -= member->size;
  try {
    XmlReader reader(handler);
    zip_->unpack(*member, reader);
    reader.finish();
  } catch (const ZipFault& fault) {
    fail("damaged-workbook", say(messageOf(fault.trouble())), place);
  } catch (const XmlFault& fault) {
    fail("damaged-workbook", fill(messageOf(fault.trouble()), {part}), place);
  }
}

std::map<std::string, Relationship> Package::relationships(std::string_view part) {
  const std::string_view folder = folderOf(part);
  const std::string list =
      std::string(folder) + "_rels/" + std::string(part.substr(folder.size())) + ".rels";
  RelationshipHandler handler(part);
  if (has(list)) {
    read(list, {}, handler);
  }
  return handler.take();
}

}  // namespace exportifc
