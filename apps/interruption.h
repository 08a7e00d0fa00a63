#pragma once

#include <chrono>

namespace tolvarin::ondrel::client {

/// From here on Ctrl-C, or a signal to terminate, does not end the program but is noted, and ends
/// the waits below; a second one ends the program. A signal that the program was started to ignore,
/// as a shell does for what it runs in the background, stays ignored.
void noteInterruption();

/// Whether one was noted.
bool interrupted();

/// Waits until the descriptor has something to read, its end included. Returns false if an
/// interruption came, even one before the call.
bool waitUntilReadable(int descriptor);

/// Lets the time pass, up to an hour of it. Returns false at once if an interruption comes or came.
bool pauseFor(std::chrono::duration<double> time);

} // namespace tolvarin::ondrel::client
