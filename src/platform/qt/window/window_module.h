// What the module exports. The border itself is platform/window_module.h.
#pragma once

#include "platform/window_module.h"

extern "C" __attribute__((visibility("default"))) hl::WindowResult harborlanternWindow(
    const hl::WindowStart& start);
