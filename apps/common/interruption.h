#pragma once

#include <chrono>

namespace tolvarin::ondrel::client {

/// The exit status of a run that a signal ended early.
constexpr int interruptedStatus = 130;

/// Handles SIGINT (Ctrl-C), SIGTERM and SIGHUP from here on: the first one is noted and ends the
/// waits below. The second SIGINT or SIGTERM ends the program at once; a terminal that closes may
/// send SIGHUP twice. A signal that was ignored when the program started, as a shell does for
/// background jobs, stays ignored.
void noteInterruption();

/// Runs this when a signal ends the program at once: the second one, SIGQUIT, or that of a crash.
/// It may call what is allowed in a signal handler only. Null ends that.
void beforeSuddenEnd(void (*action)());

/// Whether a signal was noted.
bool interrupted();

/// Can be read from the first signal on, for other ways to wait. Valid after noteInterruption().
int interruptionDescriptor();

/// Waits until the descriptor has something to read or is at its end. Gives false if an
/// interruption comes or came before.
bool waitUntilReadable(int descriptor);

/// Waits until the descriptor has room to write, or its reader is gone. Gives false if an
/// interruption comes or came before, and there is no room for two seconds after it.
bool waitUntilWritable(int descriptor);

/// Waits for that time, at most an hour. Gives false at once if an interruption comes or came
/// before.
bool pauseFor(std::chrono::duration<double> time);

} // namespace tolvarin::ondrel::client
