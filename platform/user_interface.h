// What an export says to and asks of a person.
#pragma once

#include <string>
#include <string_view>

namespace exportifc {

/// The driver and the writers speak to the user only through this interface: the module passes the
/// system's dialogs, the command-line program its own reports, tests a script.
/// Narrow texts are Windows-1252, wide texts UTF-16 code units; both live as long as the call.
class UserInterface {
 public:
  /// The answer to a save dialog. `path` counts only when `accepted`.
  struct SaveChoice {
    bool accepted = false;
    std::wstring path;
  };

  UserInterface() = default;
  UserInterface(const UserInterface&) = delete;
  UserInterface& operator=(const UserInterface&) = delete;
  virtual ~UserInterface() = default;

  /// Asks where to write the exchange file.
  virtual SaveChoice chooseSaveFile() = 0;
  /// A Yes/No question: false when the answer is No, true also when there is none.
  virtual bool ask(const char* text, const char* caption) = 0;
  /// A message with an OK button.
  virtual void show(const char* text, const char* caption) = 0;
  virtual void show(const wchar_t* text, const wchar_t* caption) = 0;
  /// One line on the process's standard output.
  virtual void printLine(std::wstring_view line) = 0;
};

}  // namespace exportifc
