// Notes that somebody wants the process to end: Ctrl+C in the terminal, a closed terminal, the end of the
// session. From any thread.
#pragma once

namespace hl {

/// From now on the first SIGINT, SIGTERM or SIGHUP is noted; a second one of the same kind ends the process.
/// Those that the process was started to ignore stay ignored.
void noteStopSignals();

/// Ends noting: from now on such a signal ends the process.
void endNotingStopSignals();

/// Tells whether such a signal has come.
bool stopAsked();

/// Ends the process by the signal that has come, as whoever started it expects. Does nothing if none has.
void endAsAsked();

}  // namespace hl
