// The one function of the module that plays. For the window's thread.
#pragma once

#include "platform/qt/preview/media_view.h"

extern "C" __attribute__((visibility("default"))) hl::MediaView* harborlanternMedia(
    const hl::MediaStart& start);
