/* The library as a C program sees it: each check is a line "ok: ..." or "FAILED: ...". */
#include <exportifc/library.h>
#include <stdio.h>
#include <string.h>

static const char portal[] =
    "{\"title\": \"P\", \"unit\": \"mm\", \"nodes\": [[0, 0, 0], [0, 0, 3000]],"
    " \"sections\": {\"column\": {\"text\": \"W 200 100 8 6\"}},"
    " \"bars\": [{\"nodes\": [0, 1], \"section\": \"column\"}]}";

static void holds(const char* what, int is) { printf("%s: %s\n", is ? "ok" : "FAILED", what); }

/* Takes so many pieces, and lets so many reports pass. */
typedef struct Caller {
  size_t bytes;
  int pieces;
  int reports;
} Caller;

static int32_t take(void* context, const char* bytes, size_t size) {
  Caller* caller = context;
  (void)bytes;
  caller->bytes += size;
  return caller->pieces-- > 0;
}

static int32_t report(void* context, int64_t done, int64_t total) {
  Caller* caller = context;
  (void)done, (void)total;
  return caller->reports-- > 0;
}

static ExportIfcModel* opened(const char* text) {
  ExportIfcModel* model = NULL;
  (void)exportIfcOpen(text, strlen(text), "m.json", "en", &model);
  return model;
}

static void use(void) {
  ExportIfcModel* model = opened(portal);
  Caller caller = {0, 1000, 1000};
  holds("the library is that of the header", exportIfcAbi() == EXPORTIFC_LIBRARY_ABI);
  holds("it has a version", strcmp(exportIfcVersion(), "") != 0);
  holds("it reads JSON models", strstr(exportIfcFormats(), ".json") != NULL);
  holds("a model has its bars", exportIfcBarCount(model) == 1);
  holds("it is sound", exportIfcCheck(model, exportIfcAllBars) == exportIfcOk);
  holds("it is exported",
        exportIfcExport(model, exportIfcAllBars, take, report, &caller) == exportIfcOk);
  holds("into the caller's function", caller.bytes > 1000);
  caller = (Caller){0, 0, 1000};
  holds("which may take no more",
        exportIfcExport(model, exportIfcAllBars, take, NULL, &caller) == exportIfcNotWritten);
  caller = (Caller){0, 1000, 0};
  holds("and may cancel",
        exportIfcExport(model, exportIfcAllBars, take, report, &caller) == exportIfcCancelled);
  caller = (Caller){0, 1000, 0};
  holds("sections are found", exportIfcSections("HEB180", take, &caller) == exportIfcOk);
  holds("families are listed", exportIfcFamilies("pt", take, &caller) == exportIfcOk);
  holds("a take-off is made",
        exportIfcTakeoff(model, exportIfcAllBars, 0.0, exportIfcCsv, take, &caller) == exportIfcOk);
  exportIfcClose(model);
}

static void misuse(void) {
  ExportIfcModel* model = opened("no model");
  Caller caller = {0, 1000, 1000};
  holds("null is no model", exportIfcCheck(NULL, exportIfcAllBars) == exportIfcBadUse);
  holds("and has no bars", exportIfcBarCount(NULL) == 0);
  holds("an unreadable model says why", strcmp(exportIfcErrorText(model), "") != 0);
  holds("and is not exported",
        exportIfcExport(model, exportIfcAllBars, take, NULL, &caller) == exportIfcBadUse);
  holds("not even to a file",
        exportIfcExportFile(model, exportIfcAllBars, "never.ifc", NULL, NULL) == exportIfcBadUse);
  exportIfcClose(model);
  holds("a closed model is told", exportIfcCheck(model, exportIfcAllBars) == exportIfcBadUse);
  holds("and has no text", strcmp(exportIfcErrorText(model), "") == 0);
  exportIfcClose(model);
  exportIfcClose(NULL);
  holds("results have a meaning", strcmp(exportIfcResultText(exportIfcBadUse, NULL), "") != 0);
}

int main(void) {
  use();
  misuse();
  puts("end");
  return 0;
}
