#pragma once

#include "apps/input/receiver_counter.h"

#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel::client {

/// When the first reply of a file was received, in milliseconds since 1970, if the file was last
/// changed with its last reply. Reads the whole file for the time between the two. Throws Failure
/// for what is no file, such as standard input.
u64 startByModification(const std::string& path, ReceiverCounter::Kind counter);

} // namespace tolvarin::ondrel::client
