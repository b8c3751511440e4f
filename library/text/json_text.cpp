#include "library/text/json_text.h"

#include <nlohmann/json.hpp>

namespace exportifc {

namespace {

/// What is neither object nor list frees itself without asking.
template <class Scalar>
std::string scalarText(const Scalar& value) {
  return nlohmann::json(value).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void addBehindComma(std::string& texts, const std::string& text) {
  texts += texts.empty() ? "" : ",";
  texts += text;
}

}  // namespace

std::string jsonText(std::string_view text) { return scalarText(text); }

void JsonObject::addText(std::string_view key, std::string_view text) {
  addMember(key, scalarText(text));
}

void JsonObject::addInteger(std::string_view key, std::int64_t number) {
  addMember(key, scalarText(number));
}

void JsonObject::addReal(std::string_view key, double number) {
  addMember(key, scalarText(number));
}

void JsonObject::addTruth(std::string_view key, bool truth) { addMember(key, scalarText(truth)); }

void JsonObject::add(std::string_view key, const JsonList& list) { addMember(key, list.text()); }

void JsonObject::addMember(std::string_view key, const std::string& value) {
  addBehindComma(members_, jsonText(key) + ":" + value);
}

void JsonList::add(const JsonObject& item) { addBehindComma(items_, item.text()); }

}  // namespace exportifc
