#include "support.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include "runtime_locale.h"

namespace exportifc::test {

// ---- Texts -------------------------------------------------------------------------------------

std::wstring wide(std::string_view text) { return {text.begin(), text.end()}; }

std::wstring units(std::initializer_list<int> values) {
  std::wstring text;
  for (const int value : values) {
    text.push_back(static_cast<wchar_t>(value));
  }
  return text;
}

std::string sourceFile(const std::string& path) {
  return std::string(EXPORTIFC_SOURCE_FOLDER "/") + path;
}

// ---- A person ----------------------------------------------------------------------------------

namespace {

std::wstring unitsOf(const char* bytes) {
  std::wstring text;
  for (; *bytes != '\0'; ++bytes) {
    text.push_back(static_cast<unsigned char>(*bytes));
  }
  return text;
}

void printText(const std::wstring& text, std::ostream& stream) {
  stream << '"';
  for (const wchar_t unit : text) {
    const auto value = std::char_traits<wchar_t>::to_int_type(unit);
    if (value >= 0x20 && value < 0x7F) {
      stream << static_cast<char>(value);
    } else {
      stream << "\\x" << std::hex << value << std::dec << ' ';
    }
  }
  stream << '"';
}

}  // namespace

Said message(MessageId id, std::wstring value) {
  return {Said::What::message, id, std::move(value)};
}

void PrintTo(const Said& said, std::ostream* stream) {
  constexpr const char* asked[] = {"save dialog", "question"};
  constexpr const char* messages[] = {"export failed", "bar without record", "unknown profile",
                                      "cannot create file", "no file name"};
  *stream << (said.what == Said::What::message ? messages[static_cast<std::size_t>(said.id)]
                                               : asked[static_cast<std::size_t>(said.what)])
          << ' ';
  printText(said.value, *stream);
}

std::optional<std::wstring> ScriptedUser::chooseSaveFile() {
  said.push_back(saveDialog);
  return choice;
}

BarChoice ScriptedUser::chooseBars() {
  said.push_back(question);
  return bars;
}

void ScriptedUser::show(const Message& message) {
  said.push_back(test::message(message.id, unitsOf(message.reason).append(message.profileName)));
}

// ---- Exports -----------------------------------------------------------------------------------

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find("\r\n");
    if (end == std::string_view::npos) {
      ADD_FAILURE() << "a line without CR LF: " << text;
      lines.emplace_back(text);
      break;
    }
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 2);
  }
  return lines;
}

std::string exportedBytes(const std::function<void(StepWriter&)>& write) {
  Received received;
  {
    StepWriter writer(std::make_unique<MemorySink>(received));
    writer.ownerHistoryId = 5;
    write(writer);
  }
  return received.bytes;
}

std::vector<std::string> exportedLines(const std::function<void(StepWriter&)>& write) {
  return linesOf(exportedBytes(write));
}

std::string exportedFile(const std::function<std::unique_ptr<BarSource>()>& openModel,
                         UserInterface& ui) {
  const KeepRuntimeLocale keep;
  Received received;
  Module module = plainModule("model.txt");
  EXPECT_EQ(exportToMemory(
                module, ui, [&](const Module&) { return openModel(); }, received),
            1);
  return received.bytes;
}

std::vector<std::string> linesWith(const std::vector<std::string>& lines,
                                   std::string_view keyword) {
  std::vector<std::string> found;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(found),
               [&](const std::string& line) { return line.find(keyword) != std::string::npos; });
  return found;
}

std::string bodyOf(const std::string& line) {
  const std::size_t start = line.find("= ");
  if (line.empty() || line.front() != '#' || line.back() != ';' || start == std::string::npos) {
    ADD_FAILURE() << "not a numbered line: " << line;
    return line;
  }
  return line.substr(start + 2, line.size() - start - 3);
}

int numberOf(const std::string& line) {
  if (line.empty() || line.front() != '#') {
    ADD_FAILURE() << "not a numbered line: " << line;
    return 0;
  }
  return std::stoi(line.substr(1));
}

}  // namespace exportifc::test
