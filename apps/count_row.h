#pragma once

#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel::client {

/// One line of a table of counts, with its end. The share in percent is of `all`; none for 0.
std::string countRow(const std::string& label, u64 count, u64 all = 0);

} // namespace tolvarin::ondrel::client
