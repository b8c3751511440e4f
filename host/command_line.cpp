#include "host/command_line.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include "host/console.h"
#include "host/export_command.h"
#include "host/failure.h"
#include "host/messages.h"

namespace exportifc::host {

int runCommandLine(const std::vector<std::string>& arguments) {
  CLI::App app{"exportifc", "exportifc"};
  ExportOptions exportOptions;
  CLI::App* const exportCommand = app.add_subcommand("export", "export");
  exportCommand->add_option("MODEL", exportOptions.models)->required();
  exportCommand->add_option("-o,--output", exportOptions.output);
  exportCommand->add_option("--out-dir", exportOptions.directory);
  exportCommand->add_flag("--visible-only", exportOptions.visibleOnly);
  exportCommand->add_flag("--strict", exportOptions.strict);
  exportCommand->add_flag("--transliterate", exportOptions.transliterate);
  exportCommand->add_flag("-q,--quiet", exportOptions.quiet);
  app.require_subcommand(1);
  std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? exitOk : exitBadUse;
  }
  return runExportCommand(exportOptions);
}

}  // namespace exportifc::host
