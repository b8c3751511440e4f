/* exportIFC as a library: reads models, says what is wrong with them, writes IFC2X3 files. Plain
 * C99; docs/library.md shows a program.
 *
 * Texts and paths are UTF-8, sizes bytes, lengths the model's own unit unless said otherwise.
 *
 * Whose memory: what a caller hands over stays the caller's, and is not needed once the call has
 * returned. What the library gives stays the library's: a text of a model until the next call with
 * that model that gives a result, or until the model is closed; any other text for good. A model
 * is the caller's to close.
 *
 * Threads: each may work with models of its own. A second call with a model while one is under
 * way, from another thread or from a function that the call has called, does nothing and gives
 * exportIfcBadUse; only `exportIfcBarCount` is allowed then. The caller's functions are called in
 * the thread of the call; they must return, and throw nothing. */
#ifndef EXPORTIFC_LIBRARY_H
#define EXPORTIFC_LIBRARY_H

#include <stddef.h>
#include <stdint.h>

#if defined(__wasm__)
#define EXPORTIFC_API __attribute__((used, visibility("default")))
#elif !defined(_WIN32)
#define EXPORTIFC_API __attribute__((visibility("default")))
#else
#define EXPORTIFC_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Grows when a program compiled against an older header could misread something. */
#define EXPORTIFC_LIBRARY_ABI 1

/** How a call ended; the numbers are those of the program's exit codes as far as it has them. */
typedef enum ExportIfcResult {
  exportIfcOk = 0,
  exportIfcProblems = 1,   /**< the model has a problem with which no file is written */
  exportIfcBadUse = 2,     /**< a null, closed, unreadable or busy model, a null text or function */
  exportIfcUnreadable = 3, /**< the file cannot be read, or is no model */
  exportIfcNotWritten = 4, /**< the system or the caller's function took no more bytes */
  exportIfcNoMemory = 5,
  exportIfcCancelled = 6 /**< the caller's progress function ended the export */
} ExportIfcResult;

/** What an export or a check leaves out or adds; values are or-ed. */
typedef enum ExportIfcFlags {
  exportIfcAllBars = 0,
  exportIfcVisibleOnly = 1, /**< bars that are not visible are left out */
  exportIfcNotes = 2        /**< `exportIfcCheck` also says what is only unusual */
} ExportIfcFlags;

/** A model that is open. */
typedef struct ExportIfcModel ExportIfcModel;

/** EXPORTIFC_LIBRARY_ABI of the library that is loaded. */
EXPORTIFC_API int32_t exportIfcAbi(void);

/** "1.0.0". Never freed. */
EXPORTIFC_API const char* exportIfcVersion(void);

/** The extensions of the formats that models are kept in, ".json;.txt;.xlsx;.zip". Never freed. */
EXPORTIFC_API const char* exportIfcFormats(void);

/** What a result means, in a sentence. `language` is "en" or "pt"; null is "en". Never freed. */
EXPORTIFC_API const char* exportIfcResultText(int32_t result, const char* language);

/** Reads a model from memory.
 *
 * `name` is its file name, of which only the extension counts, or null. `language` is that of the
 * model's messages, "en" or "pt"; null is "en". `bytes` is copied. With exportIfcUnreadable
 * `*model` is open, too: `exportIfcErrorText` and `exportIfcProblemsJson` say why, and nothing else
 * can be done with it. With any other failure `*model` is null. */
EXPORTIFC_API ExportIfcResult exportIfcOpen(const void* bytes, size_t size, const char* name,
                                            const char* language, ExportIfcModel** model);

/** Reads a model from the file at `path`, or from the tables in a folder; all files are closed
 * again. Otherwise as `exportIfcOpen`. */
EXPORTIFC_API ExportIfcResult exportIfcOpenFile(const char* path, const char* language,
                                                ExportIfcModel** model);

/** Closes a model; null is allowed. One that a call is under way with stays open. A closed model
 * must not be used any more; its calls give exportIfcBadUse as long as nothing else has taken its
 * memory. */
EXPORTIFC_API void exportIfcClose(ExportIfcModel* model);

/** Why the last call with the model gave another result than exportIfcOk, with the place in the
 * model as far as there is one; empty when it did not, and of null. */
EXPORTIFC_API const char* exportIfcErrorText(const ExportIfcModel* model);

/** Number of bars that the model has; 0 of null. */
EXPORTIFC_API int64_t exportIfcBarCount(const ExportIfcModel* model);

/** Replaces the characters of section texts that a file cannot hold by plain letters. */
EXPORTIFC_API ExportIfcResult exportIfcTransliterate(ExportIfcModel* model);

/** Looks for problems. exportIfcOk when a file can be written, be there problems or not. */
EXPORTIFC_API ExportIfcResult exportIfcCheck(ExportIfcModel* model, uint32_t flags);

/** What the last opening or check found, or what forbade the last export: a JSON array of objects
 * with the keys of `exportifc check --json`. "[]" of null. */
EXPORTIFC_API const char* exportIfcProblemsJson(const ExportIfcModel* model);

/** Takes the next bytes of the file; 0 when it takes no more, which ends the export. */
typedef int32_t (*ExportIfcWrite)(void* context, const char* bytes, size_t size);

/** Is told before some of the bars how many are done; 0 ends the export. */
typedef int32_t (*ExportIfcProgress)(void* context, int64_t done, int64_t total);

/** Writes the IFC file of the model into `write`, piece by piece. `progress` may be null. */
EXPORTIFC_API ExportIfcResult exportIfcExport(ExportIfcModel* model, uint32_t flags,
                                              ExportIfcWrite write, ExportIfcProgress progress,
                                              void* context);

/** Writes the IFC file of the model to `path`, zipped when that ends with ".ifczip". The file
 * appears whole or not at all: until then it has a temporary name beside, and one that was there
 * stays. The file that the model was read from is never written: exportIfcBadUse. `progress` may
 * be null. */
EXPORTIFC_API ExportIfcResult exportIfcExportFile(ExportIfcModel* model, uint32_t flags,
                                                  const char* path, ExportIfcProgress progress,
                                                  void* context);

/** How `exportIfcTakeoff` gives its lists. */
typedef enum ExportIfcLists {
  exportIfcCsv =
      0, /**< as spreadsheets of the model's language read them, without a mark of UTF-8 */
  exportIfcJson = 1 /**< one object, its keys the same in every language */
} ExportIfcLists;

/** Lists sections, lengths (m), masses (kg) and paint surfaces (m²) of the bars that an export
 * writes, into `write`. `density` is that of all bars in kg/m³; 0 takes that of their material, or
 * of steel, 7850. exportIfcProblems when bars refer to nodes or sections that are not there. */
EXPORTIFC_API ExportIfcResult exportIfcTakeoff(ExportIfcModel* model, uint32_t flags,
                                               double density, ExportIfcLists lists,
                                               ExportIfcWrite write, void* context);

/** Lists the section families that are drawn, into `write`: a JSON array of objects with "word",
 * "entity" and "dimensions", the numbers behind the word in their order, each with the index
 * "dimension", what it measures ("measures", in the language) and "mayBeZero". */
EXPORTIFC_API ExportIfcResult exportIfcFamilies(const char* language, ExportIfcWrite write,
                                                void* context);

/** Lists rolled sections, into `write`: that of the name, however it is spelt, "HEB180"; without
 * such a one all whose names begin so, "HE 300"; all of null or "". A JSON array of objects with
 * "name", "series", "standard", "depthMm", "widthMm", "flangeMm", "webMm", "massPerMetreKg",
 * "areaCm2" and "text", the section text; empty when there is none. */
EXPORTIFC_API ExportIfcResult exportIfcSections(const char* name, ExportIfcWrite write,
                                                void* context);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
