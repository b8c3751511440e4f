/* The binary interface as a C99 compiler sees it; the tests compare it with what C++ sees. */
#include "plugin_header_in_c.h"

#include <exportifc/plugin.h>

const LayoutInC layoutInC = {
    sizeof(PlugInModule),
    offsetof(PlugInModule, recordTag),
    offsetof(PlugInModule, reserved8),
    offsetof(PlugInModule, caption),
    offsetof(PlugInModule, outputPath),
    offsetof(PlugInModule, reserved1056),
    offsetof(PlugInModule, execute),
    offsetof(PlugInModule, idle),
    offsetof(PlugInModule, reserved1096),
    offsetof(PlugInModule, hostQuery),
    offsetof(PlugInModule, hostHandle),
    sizeof(BarRecord),
    offsetof(BarRecord, sectionName),
    offsetof(BarRecord, quarterTurns),
    EXPORTIFC_LENGTH_UNIT,
    EXPORTIFC_NODE_COORDINATES,
};

/* Compiles only if the types are those that a C host uses. */
PlugInModule* callFromC(GetPlugInModuleFunction getModule) { return getModule(); }
