#include "apps/terminal/live_table.h"

#include "apps/common/file.h"
#include "apps/tracking/track_history.h"

#include "apps/tracked_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

/// What a test sees of the screen, and what it types. The live table owns the screen itself.
struct Terminal {
    std::size_t rows = 12;
    std::size_t columns = 80;
    std::deque<Key> keys;
    std::vector<std::string> lines;
    std::string inverse; ///< the line below the head that is
};

class TestScreen final : public LiveScreen {
public:
    explicit TestScreen(Terminal& terminal) : _terminal(terminal) {}

    std::size_t rows() const override { return _terminal.rows; }
    std::size_t columns() const override { return _terminal.columns; }

    void draw(const std::vector<ScreenLine>& lines) override {
        _terminal.lines.clear();
        _terminal.inverse.clear();
        for (const ScreenLine& line : lines) {
            std::string text = linesText({line.text}, false);
            text.pop_back();
            if (line.isInverse && !_terminal.lines.empty()) {
                _terminal.inverse = text;
            }
            _terminal.lines.push_back(text);
        }
    }

    Key key() override {
        if (_terminal.keys.empty()) {
            return Key::None;
        }
        const Key first = _terminal.keys.front();
        _terminal.keys.pop_front();
        return first;
    }

private:
    Terminal& _terminal;
};

/// A live table of the three aircraft, 40621D, 4840D6 and 485020.
class LiveTableTest : public testing::Test {
protected:
    void show(const std::vector<TrackedAircraft>& aircraft) {
        _table.show(aircraft, {_tracked.tracking.now(), 1, std::nullopt, _lostFeeds}, _history);
    }
    void showAll() { show(_tracked.tracking.aircraft()); }

    /// Presses the keys. Gives whether the run goes on.
    bool press(std::deque<Key> keys) {
        _terminal.keys = std::move(keys);
        return _table.poll();
    }

    /// The addresses of the rows from the top.
    std::string rows() const {
        std::string addresses;
        for (const char* address : {"40621D", "4840D6", "485020"}) {
            for (std::size_t i = 0; i < _terminal.lines.size(); ++i) {
                if (_terminal.lines[i].rfind(address, 0) == 0) {
                    addresses += std::to_string(i) + ':' + address + ' ';
                }
            }
        }
        return addresses;
    }

    std::string marked() const { return _terminal.inverse.substr(0, 6); }

    TrackedLines _tracked{threeAircraft()};
    Terminal _terminal;
    LiveTableState _state{5, 1234.5};
    std::size_t _lostFeeds = 0;
    Output _output{"-"};
    Console _console{_output};
    TrackHistory _history;
    LiveTable _table{std::make_unique<TestScreen>(_terminal),
                     _console,
                     {"tcp://a:1", "address", false, [this] { return _state; }}};
};

TEST_F(LiveTableTest, FillsTheScreenFromHeadToFoot) {
    showAll();
    ASSERT_EQ(_terminal.lines.size(), _terminal.rows);
    EXPECT_EQ(_terminal.lines.front().substr(0, 12), "tcp://a:1   ");
    EXPECT_NE(_terminal.lines.front().find("  3 aircraft, 2 hidden  1235"), std::string::npos);
    EXPECT_EQ(_terminal.lines.front().size(), _terminal.columns);
    EXPECT_EQ(rows(), "4:40621D 5:4840D6 6:485020 ");
    EXPECT_EQ(_terminal.lines.back().substr(0, 43), "?: keys  q: end  s: sorted by address  (no ");
}

TEST_F(LiveTableTest, TellsHowManyFeedsAreLost) {
    _lostFeeds = 2;
    showAll();
    EXPECT_NE(_terminal.lines.front().find("  2 not connected  3 aircraft, "), std::string::npos);
}

TEST_F(LiveTableTest, SortsByTheNextOrPreviousColumn) {
    showAll();
    press({Key::NextColumn}); // callsign: only 4840D6 has one
    EXPECT_EQ(rows(), "5:40621D 4:4840D6 6:485020 ");
    press({Key::PreviousColumn, Key::Reverse});
    EXPECT_EQ(rows(), "6:40621D 5:4840D6 4:485020 ");
    press({Key::PreviousColumn}); // from the first to the last: seen
    EXPECT_EQ(_terminal.lines.back().substr(0, 42), "?: keys  q: end  s: sorted by seen, revers");
    EXPECT_EQ(rows(), "4:40621D 6:4840D6 5:485020 ");
}

TEST_F(LiveTableTest, MarksAnAircraftAndFollowsIt) {
    showAll();
    EXPECT_EQ(marked(), "");
    press({Key::Down});
    EXPECT_EQ(marked(), "40621D");
    press({Key::Down, Key::Reverse});
    EXPECT_EQ(marked(), "4840D6");
    press({Key::Down, Key::Down, Key::Down});
    EXPECT_EQ(marked(), "40621D");
    press({Key::PageUp});
    EXPECT_EQ(marked(), "485020");
    press({Key::Last});
    EXPECT_EQ(marked(), "40621D");
    press({Key::First});
    EXPECT_EQ(marked(), "");
}

TEST_F(LiveTableTest, ScrollsToTheMarkedAircraft) {
    _terminal.rows = 7; // two rows of aircraft
    showAll();
    EXPECT_EQ(rows(), "4:40621D 5:4840D6 ");
    press({Key::Last});
    EXPECT_EQ(rows(), "4:4840D6 5:485020 ");
    press({Key::Up, Key::Up});
    EXPECT_EQ(rows(), "4:40621D 5:4840D6 ");
}

TEST_F(LiveTableTest, MarksAnotherWhenTheMarkedOneLeaves) {
    std::vector<TrackedAircraft> aircraft = _tracked.tracking.aircraft();
    show(aircraft);
    press({Key::Last});
    aircraft.pop_back();
    show(aircraft);
    EXPECT_EQ(marked(), "4840D6");
    show({});
    EXPECT_EQ(marked(), "");
    EXPECT_TRUE(press({Key::Enter, Key::Down, Key::NextColumn, Key::Last, Key::PageUp}));
    EXPECT_EQ(rows(), "");
}

TEST_F(LiveTableTest, ShowsOneAircraftInFullAndReturns) {
    std::vector<TrackedAircraft> aircraft = _tracked.tracking.aircraft();
    show(aircraft);
    press({Key::Down, Key::Down, Key::Enter});
    EXPECT_EQ(_terminal.lines[1].substr(0, 16), "Aircraft 4840D6,");
    press({Key::Last});
    EXPECT_EQ(_terminal.lines[_terminal.rows - 2].substr(0, 6), "  ACID");
    press({Key::PageUp, Key::First});
    aircraft.erase(aircraft.begin() + 1);
    show(aircraft);
    EXPECT_EQ(_terminal.lines[1], "It is no longer tracked. This is what was known last:");
    EXPECT_EQ(_terminal.lines[2].substr(0, 16), "Aircraft 4840D6,");
    press({Key::Back});
    EXPECT_EQ(rows(), "4:40621D 5:485020 ");
}

TEST_F(LiveTableTest, TellsItsKeys) {
    press({Key::Help});
    EXPECT_EQ(_terminal.lines[1].substr(0, 8), "up, down");
    press({Key::Help});
    EXPECT_EQ(_terminal.lines[1].substr(0, 7), "address");
}

TEST_F(LiveTableTest, ShowsTheLastLinesOfTheConsole) {
    _terminal.rows = 11; // room for two
    showAll();
    testing::internal::CaptureStderr(); // a file or pipe gets the lines too
    for (const char* line : {"one", "two", "three\nfour"}) {
        _console.write(line);
    }
    testing::internal::GetCapturedStderr();
    press({});
    EXPECT_EQ(_terminal.lines[8], "three");
    EXPECT_EQ(_terminal.lines[9], "four");
    EXPECT_EQ(rows(), "4:40621D 5:4840D6 6:485020 ");
}

TEST_F(LiveTableTest, StandsAnySize) {
    showAll();
    testing::internal::CaptureStderr();
    _console.write("a line");
    testing::internal::GetCapturedStderr();
    for (_terminal.rows = 0; _terminal.rows < 60; ++_terminal.rows) {
        for (const std::size_t columns : {0U, 1U, 7U, 40U, 300U}) {
            _terminal.columns = columns;
            press({Key::Redraw, Key::Last, Key::Enter, Key::Redraw, Key::Last, Key::Help, Key::Last,
                   Key::Back, Key::First});
            EXPECT_LE(_terminal.lines.front().size(), std::max(columns, std::size_t{50}));
        }
    }
}

TEST_F(LiveTableTest, EndsTheRun) {
    EXPECT_TRUE(press({Key::Other}));
    EXPECT_FALSE(press({Key::End, Key::Down}));
}

} // namespace

} // namespace tolvarin::ondrel::client
