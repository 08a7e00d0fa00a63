#pragma once

#include <chrono>

namespace tolvarin::ondrel::client {

/// Handles SIGINT (Ctrl-C) and SIGTERM from here on: the first one is noted and ends the waits
/// below, the second one ends the program. A signal that was ignored when the program started, as
/// a shell does for background jobs, stays ignored.
void noteInterruption();

/// Whether a signal was noted.
bool interrupted();

/// Waits until the descriptor has something to read or is at its end. Gives false if an
/// interruption comes or came before.
bool waitUntilReadable(int descriptor);

/// Waits for that time, at most an hour. Gives false at once if an interruption comes or came
/// before.
bool pauseFor(std::chrono::duration<double> time);

} // namespace tolvarin::ondrel::client
