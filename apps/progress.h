#pragma once

#include <ondrel/types.h>

#include <iosfwd>
#include <string>

namespace tolvarin::ondrel::client {

/// "[##########..............................]  25 %". `total` above 0; more than it is 100 %.
std::string progressText(u64 done, u64 total);

/// A progress bar in the last line of a terminal. Nothing else may be written there while it shows.
class ProgressBar {
public:
    /// The stream must outlive the bar.
    explicit ProgressBar(std::ostream& terminal) : _terminal(terminal) {}
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar() { hide(); }

    /// Draws the bar, unless it looks just so already.
    void show(u64 done, u64 total);

    /// Wipes the bar, if it shows, and leaves the cursor where the line begins.
    void hide();

private:
    std::ostream& _terminal;
    std::string _shown;
};

} // namespace tolvarin::ondrel::client
