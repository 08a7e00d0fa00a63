#pragma once

#include "apps/display/aircraft_columns.h"
#include "apps/display/live_view.h"
#include "apps/terminal/console.h"
#include "apps/terminal/live_screen.h"
#include "apps/terminal/text_table.h"

#include <ondrel/types.h>

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// What the head line of a live table tells of a run.
struct LiveTableState {
    u64 tracked;      ///< aircraft, with those that are hidden
    double perSecond; ///< replies, or what else comes, of all sources
};

/// What a live table shows beside the aircraft, and how it begins.
struct LiveTableOptions {
    std::string sources; ///< their names
    std::string sortKey; ///< of a column
    bool descending;
    std::function<LiveTableState()> state; ///< that of now
    std::string what = "replies";          ///< comes from the sources
};

/// The table of aircraft on a terminal, refreshed in place; its user chooses the order, and one
/// aircraft to see in full. Takes the lines of the console as long as it lives, and shows the last
/// ones for a minute.
class LiveTable final : public LiveView, private LineTaker {
public:
    /// The console must outlive the view.
    LiveTable(std::unique_ptr<LiveScreen> screen, Console& console, LiveTableOptions options);
    ~LiveTable() override;

    void show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
              const TrackHistory& history) override;
    bool showsPaths() const override { return false; }
    bool poll() override;

private:
    using Clock = std::chrono::steady_clock;
    enum class View { Table, Aircraft, Keys };
    struct Message {
        Clock::time_point time;
        std::string text;
    };

    void take(const std::string& line) override;

    void doKey(Key key);
    void doTableKey(Key key);
    void scrollText(Key key);
    void chooseColumn(int step);
    void sortAnew();
    void choose(std::ptrdiff_t row);
    void open();
    void goTo(View view);

    void noteChosen();
    void layOut();
    void draw();
    std::size_t bodyRows() const;
    std::size_t tableRows() const;
    void limitTops();
    std::string sortName() const;
    ScreenLine headLine() const;
    TextLine footLine() const;
    std::vector<TextLine> aircraftLines() const;
    std::vector<TextLine> keyLines() const;
    std::vector<std::string> lastMessages() const;

    std::unique_ptr<LiveScreen> _screen;
    Console& _console;
    LiveTableOptions _options;
    std::string _sortKey;
    bool _descending;
    std::vector<TrackedAircraft> _aircraft; ///< in the order of the rows
    Showing _showing{};
    View _view = View::Table;
    TableLines _table;
    std::size_t _top = 0;                   ///< first row of the table that is shown
    std::size_t _row = 0;                   ///< of the marked aircraft
    std::optional<u32> _chosen;             ///< the address of the marked aircraft
    std::optional<TrackedAircraft> _opened; ///< as it was last
    bool _openedIsGone = false;             ///< from the table
    std::vector<TextLine> _text;            ///< of the other views
    std::size_t _textTop = 0;
    std::deque<Message> _messages;
    bool _changed = false; ///< since the screen was drawn
    bool _ended = false;
    LiveTableState _state{};
};

} // namespace tolvarin::ondrel::client
