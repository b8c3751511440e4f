#pragma once

// NOLINTBEGIN(modernize-*): a header for C.

#include <exportifc/plugin.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct LayoutInC {
  size_t moduleSize;
  size_t recordTag;
  size_t reserved8;
  size_t caption;
  size_t outputPath;
  size_t reserved1056;
  size_t execute;
  size_t idle;
  size_t reserved1096;
  size_t hostQuery;
  size_t hostHandle;
  size_t barRecordSize;
  size_t sectionName;
  size_t quarterTurns;
  int lengthUnit;
  int nodeCoordinates;
} LayoutInC;

extern const LayoutInC layoutInC;

PlugInModule* callFromC(GetPlugInModuleFunction getModule);

#ifdef __cplusplus
}
#endif

// NOLINTEND(modernize-*)
