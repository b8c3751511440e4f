// The system's dialogs, with the module's texts.
#pragma once

#include "plugin/user_interface.h"

namespace exportifc {

UserInterface& systemInterface();

}  // namespace exportifc
