// Texts in JSON, written from front to back. The values of the JSON library ask for memory when
// they are freed, and without any end the process; a host must outlive that.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace exportifc {

/// A text in quotes. Bytes that are no UTF-8, as names of files may have, are replaced.
std::string jsonText(std::string_view text);

class JsonList;

/// Members in the order of the calls; a key stands once, by whoever writes it.
class JsonObject {
 public:
  void addText(std::string_view key, std::string_view text);
  void addInteger(std::string_view key, std::int64_t number);
  void addReal(std::string_view key, double number);
  void addTruth(std::string_view key, bool truth);
  void add(std::string_view key, const JsonObject& object) { addMember(key, object.text()); }
  void add(std::string_view key, const JsonList& list);

  std::string text() const { return "{" + members_ + "}"; }

 private:
  void addMember(std::string_view key, const std::string& value);

  std::string members_;
};

class JsonList {
 public:
  void add(const JsonObject& item);

  std::string text() const { return "[" + items_ + "]"; }

 private:
  std::string items_;
};

}  // namespace exportifc
