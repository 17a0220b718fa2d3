// Saves what a form shows as a text. For the thread of the logic only.
#pragma once

#include <string_view>

#include "app/services.h"
#include "output/format_choice.h"
#include "platform/window.h"

namespace hl {

/// Asks for a file and writes the text into it. A message tells if that fails.
void saveText(const Services& services, SaveDialog& dialog, const Window& window, std::string_view text);

}  // namespace hl
