#include "tests/module/person.h"

#include <array>
#include <cstdio>

namespace exportifc::module_tests {

Dialog typesFileName(const std::string& name) {
  return {.kind = Dialog::Kind::saveFile, .fileName = name};
}

Dialog cancelsFileName() { return {.kind = Dialog::Kind::saveFile, .accepts = false}; }

Dialog answersYes() {
  return {.kind = Dialog::Kind::yesNo,
          .caption = "Importa\xC3\xA7\xC3\xA3o de arquivo .IFC",
          .text = "Deseja exportar barras invis\xC3\xADveis no modelo?"};
}

Dialog answersNo() {
  Dialog question = answersYes();
  question.accepts = false;
  return question;
}

Dialog box(const std::string& text, const std::string& caption) {
  return {.kind = Dialog::Kind::ok, .caption = caption, .text = text};
}

std::string quoted(const std::string& bytes) {
  std::string text = "\"";
  for (const char c : bytes) {
    if (c >= ' ' && c <= '~') {
      text.push_back(c);
    } else {
      std::array<char, 8> hex{};
      std::snprintf(hex.data(), hex.size(), "\\x%02X", static_cast<unsigned>(c) & 0xFFU);
      text += hex.data();
    }
  }
  return text + "\"";
}

}  // namespace exportifc::module_tests
