#pragma once

#include "apps/common/file.h"
#include "apps/progress.h"

#include <ondrel/types.h>

#include <string_view>

namespace tolvarin::ondrel::client {

/// Standard error, which complaints, log lines, the summary and the progress bar share. Also keeps
/// them in order with the output, for both often go to the same terminal.
class Console {
public:
    /// The output must outlive the console.
    explicit Console(Output& output);

    /// Writes whole lines; the text has no end of its last line.
    void write(std::string_view text);

    /// To be called before the program waits for input: shows the output up to here, and how far
    /// it is. The bar shows for a large total only, and only where it can disturb nothing: on a
    /// terminal, and with the output going somewhere else.
    void progress(u64 done, u64 total);

private:
    Output& _output;
    ProgressBar _bar;
    bool _barAllowed;
};

} // namespace tolvarin::ondrel::client
