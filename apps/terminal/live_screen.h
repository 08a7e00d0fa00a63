#pragma once

#include "apps/terminal/text_table.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace tolvarin::ondrel::client {

/// What the user asks for with one key.
enum class Key {
    None, ///< no key was pressed
    Up,
    Down,
    PageUp,
    PageDown,
    First,
    Last,
    Enter,
    Back,
    NextColumn,
    PreviousColumn,
    Reverse,
    Help,
    Redraw, ///< also after the terminal got another size
    End,    ///< also when the terminal is gone
    Other,
};

/// One line of the screen.
struct ScreenLine {
    TextLine text;
    bool isInverse = false; ///< over the whole width
};

/// A terminal on which lines are drawn in place. It is as it was before when the screen is gone.
class LiveScreen {
public:
    LiveScreen() = default;
    LiveScreen(const LiveScreen&) = delete;
    LiveScreen& operator=(const LiveScreen&) = delete;
    virtual ~LiveScreen() = default;

    virtual std::size_t rows() const = 0;
    virtual std::size_t columns() const = 0;

    /// Shows these lines from the top, as far as there is room. A character that is not printable
    /// ASCII shows as a question mark.
    virtual void draw(const std::vector<ScreenLine>& lines) = 0;

    /// The next key. Does not wait.
    virtual Key key() = 0;
};

/// Whether the program was built with what a live screen needs.
bool hasLiveScreen();

/// The terminal of standard input and output; null if one of them is none, or if nothing can be
/// drawn in place there. Call noteInterruption() first.
std::unique_ptr<LiveScreen> openLiveScreen();

} // namespace tolvarin::ondrel::client
