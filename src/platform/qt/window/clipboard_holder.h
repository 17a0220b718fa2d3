// What the helper that holds the clipboard does. For the only thread of its process.
#pragma once

#include <functional>
#include <string>

namespace hl {

/// Takes the clipboard for `text`, calls `held`, and returns when another program has taken it. Returns the
/// exit status.
int holdOnClipboard(int argc, char** argv, const std::string& text, const std::function<void()>& held);

}  // namespace hl
