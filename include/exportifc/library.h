/* exportIFC as a library: reads models, says what is wrong with them, writes IFC2X3 files. Plain
 * C99.
 *
 * Texts are UTF-8, sizes bytes, lengths the model's own unit unless said otherwise. A call takes
 * and gives texts that stay the owner's: what the library gives lives until the next call with the
 * same model, or until the model is closed. Two threads may work with two models, not with one. */
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
  exportIfcBadUse = 2,     /**< a null model, text or function */
  exportIfcUnreadable = 3, /**< the bytes are no model */
  exportIfcNotWritten = 4, /**< the caller's functions stopped the export or took no more bytes */
  exportIfcNoMemory = 5
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

/** The extensions of the formats that models are kept in, ".json;.txt". Never freed. */
EXPORTIFC_API const char* exportIfcFormats(void);

/** Reads a model from memory.
 *
 * `name` is its file name, of which only the extension counts, or null. `language` is that of the
 * messages, "en" or "pt"; null is "en". `bytes` is not needed after the call but for the places of
 * problems: it is copied. With exportIfcUnreadable `*model` is open, too: `exportIfcProblemsJson`
 * says why, and nothing else can be done with it. With any other failure `*model` is null. */
EXPORTIFC_API ExportIfcResult exportIfcOpen(const void* bytes, size_t size, const char* name,
                                            const char* language, ExportIfcModel** model);

/** Closes a model; null is allowed. */
EXPORTIFC_API void exportIfcClose(ExportIfcModel* model);

/** Number of bars that the model has; 0 of null. */
EXPORTIFC_API int64_t exportIfcBarCount(const ExportIfcModel* model);

/** Replaces the characters of section texts that a file cannot hold by plain letters. */
EXPORTIFC_API ExportIfcResult exportIfcTransliterate(ExportIfcModel* model);

/** Looks for problems. exportIfcOk when a file can be written, be there problems or not. */
EXPORTIFC_API ExportIfcResult exportIfcCheck(ExportIfcModel* model, uint32_t flags);

/** What the last opening or check found: a JSON array of objects with the keys of
 * `exportifc check --json`. "[]" of null. */
EXPORTIFC_API const char* exportIfcProblemsJson(const ExportIfcModel* model);

/** Takes the next bytes of the file; 0 when it takes no more, which ends the export. */
typedef int32_t (*ExportIfcWrite)(void* context, const char* bytes, size_t size);

/** Is told before some of the bars how many are done; 0 ends the export. */
typedef int32_t (*ExportIfcProgress)(void* context, int64_t done, int64_t total);

/** Writes the IFC file of the model into `write`, piece by piece. `progress` may be null. */
EXPORTIFC_API ExportIfcResult exportIfcExport(ExportIfcModel* model, uint32_t flags,
                                              ExportIfcWrite write, ExportIfcProgress progress,
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

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif
