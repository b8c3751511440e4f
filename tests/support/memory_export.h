// Whole exports without a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "model/bar_source.h"
#include "plugin/module.h"
#include "plugin/user_interface.h"
#include "tests/support/sinks.h"

namespace exportifc::test {

/// A module outside of any host.
Module plainModule(std::string batchPath = {});

/// Runs an export of `module` into `received`, which takes up to `room` bytes. What leaves the
/// driver passes through.
std::int64_t exportToMemory(
    Module& module, UserInterface& ui,
    const std::function<std::unique_ptr<BarSource>(const Module&)>& openModel, Received& received,
    std::size_t room = MemorySink::endless);

}  // namespace exportifc::test
