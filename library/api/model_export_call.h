// An export into whatever takes its bytes.
#pragma once

#include <cstdint>

#include "exportifc/library.h"
#include "platform/byte_sink.h"

namespace exportifc::api {

/// Exports a model that can be, with the caller's progress.
ExportIfcResult exportInto(ByteSink& sink, ExportIfcModel& handle, std::uint32_t flags,
                           ExportIfcProgress progress, void* context);

}  // namespace exportifc::api
