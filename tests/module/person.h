// The person at the screen (Windows) or at the terminal (Linux): answers the module's dialogs in
// the order of a script and checks what each one shows.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace exportifc::module_tests {

/// One dialog that the script expects, and what the person does with it. All texts are UTF-8.
struct Dialog {
  enum class Kind { saveFile, yesNo, ok };

  Kind kind = Kind::ok;
  std::string caption{};  // of the save dialog: the system's own, not looked at here
  std::string text{};
  bool accepts = true;     // Save, Yes, OK
  std::string fileName{};  // typed into the save dialog
  /// Runs while the dialog is open, before the answer.
  std::function<void()> meanwhile{};
  /// Linux: typed instead of the usual answer.
  std::string keys{};
};

Dialog typesFileName(const std::string& name);
Dialog cancelsFileName();
/// The invisible-bars question.
Dialog answersYes();
Dialog answersNo();
Dialog box(const std::string& text, const std::string& caption);

/// How a run of `attend` went.
struct Attendance {
  std::string console;                // bytes on the process's standard output
  std::vector<std::string> problems;  // what differed from the script; empty when nothing did
};

/// Linux: whether standard input is a terminal. Windows has its dialogs in any case.
enum class Input { terminal, none };

/// Runs `action` while the person answers. Dialogs that differ from the script are reported and
/// dismissed; a dialog that does not close, or an action that does not end, ends the process with a
/// message, so that no test hangs. Exceptions of the action pass through, after `result` is filled.
void attend(const std::vector<Dialog>& script, const std::function<void()>& action,
            Attendance& result, Input input = Input::terminal);

/// Windows: who answers the dialogs of a program. Linux has its messages on standard error in any
/// case.
enum class Answers { person, program };

/// Runs a program with the arguments as a child of this process, its output joined to ours. Inside
/// an action of `attend`, the person sees what it shows. Returns its exit code.
int runProgram(const std::vector<std::string>& command, Answers answers);

/// Forgets what was typed ahead or left at its end by an earlier test. No effect on Windows.
void resetStandardInput();

// ---- Between the platforms' implementations --------------------------------------------------

/// Seconds that a dialog or the action may take before the person gives up.
inline constexpr int patienceSeconds = 60;

/// Text for reports: control characters and bytes that are no ASCII as \xNN.
std::string quoted(const std::string& bytes);

}  // namespace exportifc::module_tests
