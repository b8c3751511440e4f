// A model from wherever its bytes come.
#pragma once

#include <functional>

#include "exportifc/library.h"

namespace exportifc::api {

/// Opens a model whose name and bytes `fetch` puts into its handle, or says why not. The handle is
/// the caller's unless memory runs out. `fetch` comes by std::cref: a copy of it would ask for
/// memory where nothing catches that there is none.
ExportIfcResult openModel(const char* language, ExportIfcModel** model,
                          const std::function<ExportIfcResult(ExportIfcModel&)>& fetch);

}  // namespace exportifc::api
