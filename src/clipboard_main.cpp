// This helper keeps a text on the clipboard of an X server, where the owner of a text has to hand it out. It
// reads the text from standard input and ends once the text can be pasted. It leaves a process behind, which
// ends when something else is copied, or with the X server.
#include <iostream>
#include <iterator>

#include "platform/linux/process/background.h"
#include "platform/qt/window/clipboard_holder.h"

int main(int argc, char** argv) {
    const std::string text{std::istreambuf_iterator<char>(std::cin), {}};
    return hl::goOnInBackground(
        [&](const std::function<void()>& ready) { return hl::holdOnClipboard(argc, argv, text, ready); });
}
