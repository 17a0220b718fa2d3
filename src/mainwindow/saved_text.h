// Saves what a form shows as a text, and the map as a picture. For the thread of the logic only.
#pragma once

#include <string_view>

#include "app/services.h"
#include "output/format_choice.h"
#include "platform/window.h"

namespace hl {

/// Asks for a file and writes the text, or any other bytes, into it. A message tells if that fails.
void saveText(const Services& services, SaveDialog& dialog, const Window& window, std::string_view text,
              const SaveQuestion& question = {"TXT (*.txt)|*.txt", "txt", ""});

}  // namespace hl
