#include "apps/terminal/live_screen.h"

#include "apps/common/interruption.h"
#include "apps/terminal/text_style.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <curses.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <termcap.h>
#include <termios.h>
#include <unistd.h>

namespace tolvarin::ondrel::client {

namespace {

constexpr short redPair = 1;
constexpr int escapeDelay = 50; // ms, in which the rest of a key's bytes comes

// What a signal handler needs to leave the screen: it must not call ncurses.
termios modesBefore = {};
std::string leaving;

void leaveAtOnce() {
    [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, leaving.data(), leaving.size());
    ::tcsetattr(STDIN_FILENO, TCSANOW, &modesBefore);
}

/// What the terminal's description has under that name; null if nothing.
const char* capability(const char* name) {
    const char* text = ::tigetstr(name);
    return reinterpret_cast<std::intptr_t>(text) != -1 ? text : nullptr; // by its manual
}

/// Puts together what leaves the screen: colours and looks, keys, cursor, and the screen itself.
void prepareLeaving() {
    leaving.clear();
    for (const char* name : {"op", "sgr0", "rmkx", "cnorm", "rmcup"}) {
        if (const char* text = capability(name)) {
            ::tputs(text, 1, [](int character) {
                leaving += static_cast<char>(character);
                return character;
            });
        }
    }
}

Key keyOf(int code) {
    switch (code) {
    case ERR:
        return Key::None;
    case KEY_UP:
        return Key::Up;
    case KEY_DOWN:
        return Key::Down;
    case KEY_PPAGE:
        return Key::PageUp;
    case KEY_NPAGE:
    case ' ':
        return Key::PageDown;
    case KEY_HOME:
        return Key::First;
    case KEY_END:
        return Key::Last;
    case KEY_ENTER:
    case '\n':
    case '\r':
        return Key::Enter;
    case KEY_BACKSPACE:
    case '\b':
    case '\x7F':
    case '\x1B':
        return Key::Back;
    case 's':
        return Key::NextColumn;
    case 'S':
        return Key::PreviousColumn;
    case 'r':
        return Key::Reverse;
    case '?':
        return Key::Help;
    case 'q':
        return Key::End;
    case KEY_RESIZE:
    case '\f':
        return Key::Redraw;
    default:
        return Key::Other;
    }
}

chtype lookOf(const TextPiece& piece) {
    chtype look = A_NORMAL;
    if (piece.isDim) {
        look |= A_DIM;
    }
    if (piece.isUrgent) {
        look |= static_cast<chtype>(COLOR_PAIR(redPair)) | (piece.isDim ? A_NORMAL : A_BOLD);
    }
    return piece.isChosen ? look | A_BOLD | A_UNDERLINE : look;
}

std::string printable(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char one) { return one < ' ' || one > '~'; }, '?');
    return text;
}

class NcursesScreen final : public LiveScreen {
public:
    explicit NcursesScreen(SCREEN* screen) : _screen(screen) {
        ::cbreak();
        ::noecho();
        ::nonl();
        ::set_escdelay(escapeDelay);
        ::keypad(stdscr, true);
        ::nodelay(stdscr, true);
        ::curs_set(0);
        if (standardOutputStyle().colour && ::has_colors()) {
            ::start_color();
            ::use_default_colors();
            ::init_pair(redPair, COLOR_RED, -1);
        }
    }

    ~NcursesScreen() override {
        ::endwin();
        beforeSuddenEnd(nullptr);
        ::delscreen(_screen);
    }

    std::size_t rows() const override { return static_cast<std::size_t>(::getmaxy(stdscr)); }
    std::size_t columns() const override { return static_cast<std::size_t>(::getmaxx(stdscr)); }

    void draw(const std::vector<ScreenLine>& lines) override {
        ::werase(stdscr);
        for (std::size_t row = 0; row < std::min(lines.size(), rows()); ++row) {
            drawLine(static_cast<int>(row), lines[row]);
        }
        ::wrefresh(stdscr);
    }

    Key key() override {
        pollfd terminal = {STDIN_FILENO, POLLIN, 0};
        ::poll(&terminal, 1, 0);
        if ((terminal.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) {
            return Key::End;
        }
        const int code = ::wgetch(stdscr);
        if (code == '\f') {
            ::clearok(stdscr, true);
        }
        return keyOf(code);
    }

private:
    void drawLine(int row, const ScreenLine& line) const {
        const chtype inverse = line.isInverse ? A_REVERSE : A_NORMAL;
        std::size_t at = 0;
        const auto add = [&](const std::string& text, chtype look) {
            const std::size_t size = std::min(text.size(), columns() - at);
            ::wattrset(stdscr, static_cast<int>(look | inverse));
            ::mvwaddnstr(stdscr, row, static_cast<int>(at), text.data(), static_cast<int>(size));
            at += size;
        };
        for (const TextPiece& piece : line.text) {
            add(printable(piece.text), lookOf(piece));
        }
        if (line.isInverse) {
            add(std::string(columns() - at, ' '), A_NORMAL);
        }
        ::wattrset(stdscr, A_NORMAL);
    }

    SCREEN* _screen;
};

} // namespace

bool hasLiveScreen() {
    return true;
}

std::unique_ptr<LiveScreen> openLiveScreen() {
    if (::isatty(STDOUT_FILENO) == 0 || ::tcgetattr(STDIN_FILENO, &modesBefore) != 0 ||
        !canMoveCursor()) {
        return nullptr;
    }
    SCREEN* screen = ::newterm(nullptr, stdout, stdin);
    if (screen == nullptr) {
        return nullptr;
    }
    prepareLeaving();
    beforeSuddenEnd(leaveAtOnce);
    return std::make_unique<NcursesScreen>(screen);
}

} // namespace tolvarin::ondrel::client
