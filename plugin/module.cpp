#include "plugin/module.h"

#include "plugin/texts.h"

namespace exportifc {

namespace {

// For hosts, to see what kind of record this is; the module itself never reads it.
constexpr std::uint64_t exportModuleTag = 504;

}  // namespace

Module::Module(PlugInExecuteFunction execute, PlugInExecuteFunction idle) {
  record.recordTag = exportModuleTag;
  record.caption = texts::menuCaption;
  record.execute = execute;
  record.idle = idle;
}

}  // namespace exportifc
