/* Eight threads that use the library at once, each a model of its own: threads FILE. */
#include <exportifc/library.h>
#include <pthread.h>
#include <stdio.h>
#include <string.h>

enum { threadCount = 8, rounds = 3 };

typedef struct Worker {
  const char* path;
  const char* language;
  size_t bytes; /* of all that it was given */
  int failed;
} Worker;

static int32_t take(void* context, const char* bytes, size_t size) {
  Worker* worker = context;
  (void)bytes;
  worker->bytes += size;
  return 1;
}

static int32_t report(void* context, int64_t done, int64_t total) {
  (void)context;
  return done <= total;
}

static void* work(void* context) {
  Worker* worker = context;
  for (int round = 0; round < rounds; ++round) {
    ExportIfcModel* model = NULL;
    int failed = exportIfcOpenFile(worker->path, worker->language, &model) != exportIfcOk;
    failed |= exportIfcCheck(model, exportIfcNotes) != exportIfcOk;
    worker->bytes += strlen(exportIfcProblemsJson(model));
    failed |= exportIfcExport(model, exportIfcAllBars, take, report, worker) != exportIfcOk;
    failed |=
        exportIfcTakeoff(model, exportIfcAllBars, 0.0, exportIfcCsv, take, worker) != exportIfcOk;
    failed |= exportIfcSections("HEB 1", take, worker) != exportIfcOk;
    failed |= exportIfcFamilies(worker->language, take, worker) != exportIfcOk;
    failed |= strcmp(exportIfcFormats(), "") == 0;
    exportIfcClose(model);
    worker->failed |= failed;
  }
  return NULL;
}

int main(int count, char** arguments) {
  static const char* const languages[] = {"en", "pt"};
  pthread_t threads[threadCount];
  Worker workers[threadCount];
  int failed = 0;
  if (count != 2) {
    return 2;
  }
  for (int i = 0; i < threadCount; ++i) {
    workers[i] = (Worker){arguments[1], languages[i % 2], 0, 0};
    failed |= pthread_create(&threads[i], NULL, work, &workers[i]);
  }
  for (int i = 0; i < threadCount; ++i) {
    failed |= pthread_join(threads[i], NULL);
    failed |= workers[i].failed;
    failed |= workers[i].bytes != workers[i % 2].bytes; /* those of its language */
  }
  puts(failed ? "not all went well" : "all went well");
  return failed;
}
