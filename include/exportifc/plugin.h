/* The binary interface of the exportIFC module, for host programmers. Plain C99, usable from C++.
 *
 * A host loads the module (exportIFC.dll on 64-bit Windows, libexportIFC.so on Linux), obtains the
 * module's record with GetPlugInModule, stores its query callback and its handle in it and puts the
 * caption into a menu; its command then calls PlugInExecute (interactive). PlugInExportIfcFile
 * exports a text file (batch). examples/minimal_host.c does all of it on one page.
 *
 * Threads: everything runs on the caller's thread and returns when the export is over. The record
 * and the module's mode are unsynchronised, so two exports must not overlap.
 *
 * C++ hosts: when the output file cannot be opened, PlugInExecute and PlugInExportIfcFile throw
 * "Erro na criação do arquivo" (const char*, Windows-1252, static life). A host built
 * by Microsoft's compiler or for mingw-w64 catches it as `const char*`, whichever of the two built
 * the module's own; docs/host-guide.md has the rest. C hosts cannot catch it and end.
 */
#ifndef EXPORTIFC_PLUGIN_H
#define EXPORTIFC_PLUGIN_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Host queries -------------------------------------------------------------------------- */

/* Answers one question about the model. Called only during an interactive PlugInExecute, one call
 * at a time, on the thread that called it.
 *
 * hostHandle  PlugInModule.hostHandle, passed unchanged
 * index       0 for model-wide codes; the 0-based bar index for bar codes; a node index for
 *             EXPORTIFC_NODE_COORDINATES
 * code        one of the codes below
 * out         the slot to fill; its type stands beside the code. Never null, owned by the module,
 *             valid during the call.
 *
 * The result is ignored and the module cannot see whether the slot was filled: a slot left alone
 * keeps the value of the bar before (zero at the start of an export), except for the bar record,
 * which is then "no record". */
typedef int32_t (*HostQuery)(uint64_t hostHandle, int32_t index, int32_t code, void* out);

enum {
  EXPORTIFC_LENGTH_UNIT = 0x25000C, /* int32_t: one of the units below                        */
  EXPORTIFC_BAR_COUNT = 0x50005,    /* int32_t: number of bars                                */
  EXPORTIFC_BAR_TYPE = 0x210003,    /* float: one of the types below, truncated toward zero   */
  EXPORTIFC_BAR_VISIBLE = 0x210702, /* int32_t: 0 hidden                                      */
  EXPORTIFC_BAR_RECORD = 0x210005,  /* uint32_t: address of the bar's BarRecord, 0 for none;
                                       64-bit hosts keep their records below 4 GiB            */
  EXPORTIFC_BAR_ANGLE = 0x21000A,   /* float: how far the section is turned on the bar, radians */
  EXPORTIFC_SECTION_DIMS = 0x10701, /* float[10]: section dimensions, in the order of
                                       docs/profiles.md; written as given, so millimetres     */
  EXPORTIFC_BAR_START_NODE = 0x21001F,  /* int32_t: node index of the bar's first end             */
  EXPORTIFC_BAR_END_NODE = 0x210020,    /* int32_t: node index of the bar's second end            */
  EXPORTIFC_NODE_COORDINATES = 0x220007 /* float[3]: x, y, z in the model's length unit           */
};

/* Answers to EXPORTIFC_LENGTH_UNIT. Any other is taken as millimetres. */
enum { EXPORTIFC_METRES = 0, EXPORTIFC_CENTIMETRES = 1, EXPORTIFC_MILLIMETRES = 2 };

/* Answers to EXPORTIFC_BAR_TYPE. Any other is exported as EXPORTIFC_OTHER is. */
enum {
  EXPORTIFC_MEMBER = 0,        /* storey                                        */
  EXPORTIFC_FRAME_BEAM = 1,    /* frame assembly                                */
  EXPORTIFC_FLOOR_BEAM = 2,    /* frame assembly                                */
  EXPORTIFC_TRUSS_CHORD = 3,   /* truss assembly                                */
  EXPORTIFC_COLUMN = 4,        /* frame assembly; a column when it is upright   */
  EXPORTIFC_BRACING = 5,       /* storey                                        */
  EXPORTIFC_CRANE_BEAM = 6,    /* frame assembly                                */
  EXPORTIFC_WIND_COLUMN = 7,   /* frame assembly; a column when it is upright   */
  EXPORTIFC_STAIR = 8,         /* frame assembly                                */
  EXPORTIFC_TRUSS_WEB = 9,     /* truss assembly                                */
  EXPORTIFC_NOT_EXPORTED = 10, /* never written                                 */
  EXPORTIFC_OTHER = 11         /* storey                                        */
};

/* ---- Bar record ---------------------------------------------------------------------------- */

/* One bar's section text and quarter turns. Owned by the host, read by the module during the
 * export only; the reserved bytes are neither read nor written. */
typedef struct BarRecord {
  uint8_t reserved0[80];
  char sectionName[48]; /* NUL-terminated Windows-1252 text: family word, blank, dimensions      */
  int32_t quarterTurns; /* added to the rotation angle, in quarter turns                         */
  uint8_t reserved132[160];
} BarRecord;

/* ---- Module record ------------------------------------------------------------------------- */

/* The record that GetPlugInModule returns: owned by the module, alive while it is loaded. The host
 * writes hostQuery and hostHandle, before the first PlugInExecute, and only reads the rest. */
typedef struct PlugInModule {
  uint64_t recordTag;       /* always 504                                                         */
  uint64_t reserved8[2];    /* zero                                                               */
  const char* caption;      /* menu caption, "Exportar IFC"                                       */
  char outputPath[1024];    /* narrow path of the last file written, NUL-terminated, zero-filled  */
  uint8_t reserved1056[24]; /* zero                                                               */
  int64_t (*execute)(void); /* PlugInExecute                                                      */
  int64_t (*idle)(void);    /* does nothing, returns 0                                            */
  uint8_t reserved1096[64]; /* zero                                                               */
  HostQuery hostQuery;      /* set by the host; called without a check                            */
  uint64_t hostHandle;      /* set by the host; first argument of every hostQuery call            */
} PlugInModule;

/* ---- Entry points -------------------------------------------------------------------------- */

#if defined(_WIN32) && defined(EXPORTIFC_BUILDING_MODULE)
#define EXPORTIFC_ENTRY /* named by the module definition file, so that names stay undecorated */
#elif defined(__GNUC__)
#define EXPORTIFC_ENTRY __attribute__((visibility("default")))
#else
#define EXPORTIFC_ENTRY
#endif

/* Returns the module's record: the same address at every call while the module stays loaded. */
EXPORTIFC_ENTRY PlugInModule* GetPlugInModule(void);

/* Exports the host's model, asking for the file and for invisible bars.
 * Returns -1 when no file was obtained (dialog cancelled, chosen file not creatable), otherwise 1,
 * also when the export ended in the reported error "UNHANDLED EXCEPTION". After an export that
 * reached its end, the module stays in batch mode on the file just written. */
EXPORTIFC_ENTRY int64_t PlugInExecute(void);

/* Exports the batch text file at `path` (NUL-terminated, the system's narrow encoding) and puts the
 * exchange file in its place. Returns 0 when path is null, otherwise 1, whatever happened. */
EXPORTIFC_ENTRY int64_t PlugInExportIfcFile(const char* path);

/* The same as types, for hosts that look the functions up by name. */
typedef PlugInModule* (*GetPlugInModuleFunction)(void);
typedef int64_t (*PlugInExecuteFunction)(void);
typedef int64_t (*PlugInExportIfcFileFunction)(const char* path);

#ifdef __cplusplus
} /* extern "C" */
#endif

/* The layouts, as every compiler must see them; C99 has no way to say so. */
#ifdef __cplusplus
#define EXPORTIFC_ASSERT static_assert
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define EXPORTIFC_ASSERT _Static_assert
#endif
#if defined(EXPORTIFC_ASSERT) && !defined(__wasm__) /* where no host is */
EXPORTIFC_ASSERT(sizeof(void*) == 8, "the interface is defined for 64-bit processes");
EXPORTIFC_ASSERT(sizeof(BarRecord) == 292, "BarRecord is 292 bytes");
EXPORTIFC_ASSERT(offsetof(BarRecord, sectionName) == 80, "BarRecord.sectionName");
EXPORTIFC_ASSERT(offsetof(BarRecord, quarterTurns) == 128, "BarRecord.quarterTurns");
EXPORTIFC_ASSERT(sizeof(PlugInModule) == 1176, "PlugInModule is 1176 bytes");
EXPORTIFC_ASSERT(offsetof(PlugInModule, recordTag) == 0, "PlugInModule.recordTag");
EXPORTIFC_ASSERT(offsetof(PlugInModule, reserved8) == 8, "PlugInModule.reserved8");
EXPORTIFC_ASSERT(offsetof(PlugInModule, caption) == 24, "PlugInModule.caption");
EXPORTIFC_ASSERT(offsetof(PlugInModule, outputPath) == 32, "PlugInModule.outputPath");
EXPORTIFC_ASSERT(offsetof(PlugInModule, reserved1056) == 1056, "PlugInModule.reserved1056");
EXPORTIFC_ASSERT(offsetof(PlugInModule, execute) == 1080, "PlugInModule.execute");
EXPORTIFC_ASSERT(offsetof(PlugInModule, idle) == 1088, "PlugInModule.idle");
EXPORTIFC_ASSERT(offsetof(PlugInModule, reserved1096) == 1096, "PlugInModule.reserved1096");
EXPORTIFC_ASSERT(offsetof(PlugInModule, hostQuery) == 1160, "PlugInModule.hostQuery");
EXPORTIFC_ASSERT(offsetof(PlugInModule, hostHandle) == 1168, "PlugInModule.hostHandle");
#undef EXPORTIFC_ASSERT
#endif

#endif
