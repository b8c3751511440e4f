// Plain tables as models: nodes, sections and bars in sheets of a workbook, or in CSV files.
#pragma once

#include <cstdint>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "library/frame/losses.h"
#include "library/frame/model.h"
#include "library/frame/problem.h"
#include "library/workbook/workbook.h"
#include "library/workbook/workbook_writer.h"
#include "platform/byte_sink.h"

namespace exportifc {

/// Where tables come from: their places are cells, or lines of files.
enum class TableKind : std::uint8_t { sheets, files };

/// Whether a workbook has the sheet of bars, in English or Portuguese.
bool hasTables(const Workbook& workbook);

/// A model from the tables; throws a ModelError at the cell.
Model readTables(const Workbook& workbook, TableKind kind);

/// Places of problems by their pointers, which say nothing to people who type tables.
void locateInTables(const Workbook& workbook, TableKind kind, std::vector<Problem>& problems);

/// The model as tables with English headers.
std::vector<Sheet> tablesOf(const Model& model);

/// Tables with a small example, headers in the user's language, comments and drop-down lists.
std::vector<WrittenSheet> templateTables();

// ---- as a format of models

void writeTableWorkbook(const Model& model, ByteSink& output);
Losses lossesInTables(const Model& model);

/// The same as CSV files in a zip: what a folder of them is read and written as.
Model readTableFiles(std::streambuf& zip);
void writeTableFiles(const Model& model, ByteSink& zip);
/// The content of one CSV file.
std::string tableFileText(const Sheet& table);
void locateInTableFiles(std::streambuf* zip, std::vector<Problem>& problems, TextPlace readTo);

/// "nodes.csv"
std::string tableFileName(std::string_view table);
/// Whether a file in a folder of tables is one of them, under whichever of its names.
bool isTableFile(std::string_view name);

}  // namespace exportifc
