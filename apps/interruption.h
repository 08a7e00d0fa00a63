#pragma once

namespace tolvarin::ondrel::client {

/// From here on Ctrl-C, or a signal to terminate, does not end the program but is noted; a second
/// one ends it. System calls that wait give up on it.
void noteInterruption();

/// Whether one was noted.
bool interrupted();

} // namespace tolvarin::ondrel::client
