// What an export asks of a person, and what it has to say to one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace exportifc {

/// Which bars of a model are exported. Those without a record or of a type that never is are not.
enum class BarChoice : std::uint8_t { all, visibleOnly };

enum class MessageId : std::uint8_t {
  exportFailed,      ///< an exception ended the export
  barWithoutRecord,  ///< the bar is left out
  unknownProfile,    ///< the section's family is not known: the bar gets a square in its place
  cannotCreateFile,  ///< the chosen file
  noFileName,        ///< to export in batch mode
};

/// A message and what varies in it. What it reads like is for whoever shows it (texts.h).
struct Message {
  MessageId id;
  const char* reason = "";          ///< of `exportFailed`: what was thrown, Windows-1252
  std::wstring_view profileName{};  ///< of `unknownProfile`, UTF-16 code units
};

/// Hears what an export has to say: the module shows it, the library collects it.
class MessageReceiver {
 public:
  MessageReceiver() = default;
  MessageReceiver(const MessageReceiver&) = delete;
  MessageReceiver& operator=(const MessageReceiver&) = delete;
  virtual ~MessageReceiver() = default;

  virtual void show(const Message& message) = 0;
};

/// The driver speaks to the user only through this interface: the module passes the system's
/// dialogs, tests a script.
class UserInterface : public MessageReceiver {
 public:
  /// The path of the exchange file to write; nothing when the user gives up.
  virtual std::optional<std::wstring> chooseSaveFile() = 0;
  virtual BarChoice chooseBars() = 0;
};

}  // namespace exportifc
