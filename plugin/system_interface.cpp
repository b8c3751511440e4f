#include "plugin/system_interface.h"

#include <string>
#include <variant>

#include "platform/platform.h"
#include "plugin/texts.h"

namespace exportifc {

namespace {

class SystemInterface final : public UserInterface {
 public:
  std::optional<std::wstring> chooseSaveFile() override { return platform::chooseSaveFile(); }

  BarChoice chooseBars() override {
    const bool invisibleToo =
        platform::askYesNo(texts::askInvisibleBars, texts::askInvisibleBarsCaption);
    return invisibleToo ? BarChoice::all : BarChoice::visibleOnly;
  }

  void show(const Message& message) override {
    const texts::MessageTexts& texts = texts::textsOf(message.id);
    if (const auto* const box = std::get_if<texts::NarrowBox>(&texts.box)) {
      platform::showBox(box->text != nullptr ? box->text : message.reason, box->caption);
    } else {
      const auto& wideBox = std::get<texts::WideBox>(texts.box);
      platform::showBox(wideBox.text, wideBox.caption);
    }
    if (texts.consoleLine != nullptr) {
      platform::printLine(std::wstring(texts.consoleLine).append(message.profileName));
    }
  }
};

}  // namespace

UserInterface& systemInterface() {
  static SystemInterface instance;
  return instance;
}

}  // namespace exportifc
