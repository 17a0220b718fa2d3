// The function that the module exports; platform/window_module.h has the interface.
#pragma once

#include "platform/window_module.h"

extern "C" __attribute__((visibility("default"))) hl::WindowResult harborlanternWindow(
    const hl::WindowStart& start);
