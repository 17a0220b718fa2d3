#include "platform/linux/process/stop_signals.h"

#include <signal.h>

#include <array>

namespace hl {

namespace {

constexpr std::array kStopSignals = {SIGINT, SIGTERM, SIGHUP};

volatile sig_atomic_t asked = 0;  ///< The signal; 0 for none.

void note(int signal) {
    asked = signal;
}

}  // namespace

void noteStopSignals() {
    for (const int signal : kStopSignals) {
        struct sigaction before {};
        if (sigaction(signal, nullptr, &before) != 0 || before.sa_handler == SIG_IGN) continue;
        struct sigaction action {};
        action.sa_handler = note;
        action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
        sigemptyset(&action.sa_mask);
        sigaction(signal, &action, nullptr);
    }
}

void endNotingStopSignals() {
    for (const int signal : kStopSignals) {
        struct sigaction now {};
        if (sigaction(signal, nullptr, &now) == 0 && now.sa_handler == note) ::signal(signal, SIG_DFL);
    }
}

bool stopAsked() {
    return asked != 0;
}

// The first signal, or the end of noting, has brought the default action back.
void endAsAsked() {
    if (asked != 0) raise(static_cast<int>(asked));
}

}  // namespace hl
