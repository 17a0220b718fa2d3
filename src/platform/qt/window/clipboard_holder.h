// What the helper that holds the clipboard does in its process.
#pragma once

#include <functional>
#include <string>

namespace hl {

/// Takes the clipboard for `text`, calls `held`, and returns when another has taken it. Status of the
/// process.
int holdOnClipboard(int argc, char** argv, const std::string& text, const std::function<void()>& held);

}  // namespace hl
