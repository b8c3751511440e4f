// exportifc template: tables to start from.
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/file_plan.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/table_folder.h"
#include "library/formats/tables/tables.h"
#include "library/text/file_extension.h"
#include "library/workbook/workbook_writer.h"

namespace exportifc::cli {

namespace {

ExitCode run(const std::string& name, Console& console) {
  FilePlan files(console);
  const std::vector<WrittenSheet> tables = templateTables();
  if (!isStandardStream(name) && isFolderName(name)) {
    for (const WrittenSheet& table : tables) {
      files.writesNew(tableFileIn(name, table.sheet));
    }
    std::vector<Sheet> sheets(tables.size());
    std::transform(tables.begin(), tables.end(), sheets.begin(),
                   [](const WrittenSheet& table) { return table.sheet; });
    console.addFact("files", writeTableFolder(sheets, name));
    return exitOk;
  }
  if (!isStandardStream(name) && extensionOf(name) != ".xlsx") {
    throw Failure(exitBadUse, say(texts::tablesName, {name}));
  }
  files.writesNew(name);
  OutputFile output(name);
  writeWorkbook(tables, output);
  output.commit();
  console.addItem("files", name);
  return exitOk;
}

}  // namespace

Command addTemplate(CLI::App& program) {
  const auto name = std::make_shared<std::string>();
  CLI::App& command = addCommand(program, "template", texts::helpTables);
  require(addArgument(command, texts::wordFile, *name, texts::helpTablesFile));
  return {&command, [name](Console& console) { return run(*name, console); }};
}

}  // namespace exportifc::cli
