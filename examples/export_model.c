/* A model file as an IFC file, by the library: what goes wrong is said in one line. */
#include <exportifc/library.h>
#include <stdio.h>

int main(int count, char** words) {
  ExportIfcModel* model = NULL;
  if (count != 3) return exportIfcBadUse;
  ExportIfcResult result = exportIfcOpenFile(words[1], "en", &model);
  if (result == exportIfcOk)
    result = exportIfcExportFile(model, exportIfcAllBars, words[2], NULL, NULL);
  if (result != exportIfcOk) fprintf(stderr, "%s\n", exportIfcErrorText(model));
  exportIfcClose(model);
  return (int)result;
}
