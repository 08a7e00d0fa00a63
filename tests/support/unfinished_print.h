/// @file
/// Lets formatting fail as the standard allows it, and as no C library at hand does.
#pragma once

namespace tolvarin::ondrel::test {

/// While it exists, all formatting into a buffer fails: the first call leaves rubbish in all of the
/// buffer, each later one writes only its first bytes. None writes a terminator. At most one may
/// exist at a time.
class UnfinishedPrint {
public:
    /// `written` is what later calls write, cut at the end of the buffer.
    explicit UnfinishedPrint(const char* written);
    UnfinishedPrint(const UnfinishedPrint&) = delete;
    UnfinishedPrint& operator=(const UnfinishedPrint&) = delete;
    ~UnfinishedPrint();
};

} // namespace tolvarin::ondrel::test
