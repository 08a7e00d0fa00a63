#include "apps/terminal/live_table.h"

#include "apps/common/text.h"
#include "apps/terminal/aircraft_text.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t mostMessages = 3;
constexpr std::size_t rowsForMessages = 5; // of a screen, for each message
constexpr std::size_t wideScreen = 60;
constexpr std::size_t shortestSources = 10;
constexpr std::chrono::seconds longestMessage(60);

const std::vector<std::pair<std::string, std::string>> keys = {
    {"up, down", "mark an aircraft, which keeps its mark when the order changes"},
    {"page up, page down", "the same by a whole screen"},
    {"end", "mark the last aircraft"},
    {"home", "go to the top and mark none"},
    {"enter", "show all that is known of the marked aircraft"},
    {"esc, backspace", "back to the table; there, mark none"},
    {"s, S", "sort by the next or the previous column, which is underlined"},
    {"r", "reverse the order"},
    {"ctrl-L", "draw the screen again"},
    {"q, ctrl-C", "end: the table and a summary are written as text"},
    {"?", "these keys"},
};

/// "15:47:14"; a dash before the first reply.
std::string clockText(u64 milliseconds) {
    const std::string text = timeText(milliseconds);
    const std::size_t begin = text.find('T');
    return begin != std::string::npos ? text.substr(begin + 1, 8) : "-";
}

} // namespace

LiveTable::LiveTable(std::unique_ptr<LiveScreen> screen, Console& console, LiveTableOptions options)
    : _screen(std::move(screen)), _console(console), _options(std::move(options)),
      _sortKey(_options.sortKey), _descending(_options.descending) {
    _console.redirect(this);
    layOut();
    draw();
}

LiveTable::~LiveTable() {
    _screen.reset();
    _console.redirect(nullptr);
}

void LiveTable::take(const std::string& line) {
    std::istringstream lines(line);
    for (std::string one; std::getline(lines, one);) {
        _messages.push_back({Clock::now(), one});
    }
    while (_messages.size() > mostMessages) {
        _messages.pop_front();
    }
    _changed = true;
}

void LiveTable::show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
                     const TrackHistory& /*history*/) {
    _aircraft = aircraft;
    _showing = showing;
    if (_opened) {
        const auto found =
            std::find_if(aircraft.begin(), aircraft.end(), [this](const TrackedAircraft& one) {
                return one.icaoAddress() == _opened->icaoAddress();
            });
        _openedIsGone = found == aircraft.end();
        if (!_openedIsGone) {
            _opened = *found;
        }
    }
    while (!_messages.empty() && Clock::now() - _messages.front().time > longestMessage) {
        _messages.pop_front();
    }
    _state = _options.state();
    layOut();
    draw();
}

bool LiveTable::poll() {
    for (Key key = _screen->key(); key != Key::None && !_ended; key = _screen->key()) {
        doKey(key);
        _changed = true;
    }
    if (_changed && !_ended) {
        draw();
    }
    return !_ended;
}

void LiveTable::doKey(Key key) {
    if (key == Key::End) {
        _ended = true;
    } else if (key == Key::Redraw) {
        layOut();
    } else if (key == Key::Help) {
        goTo(_view == View::Keys ? View::Table : View::Keys);
    } else if (_view == View::Table) {
        doTableKey(key);
    } else if (key == Key::Back || key == Key::Enter) {
        goTo(View::Table);
    } else {
        scrollText(key);
    }
}

void LiveTable::doTableKey(Key key) {
    const auto page = static_cast<std::ptrdiff_t>(tableRows());
    const auto row = static_cast<std::ptrdiff_t>(_chosen ? _row : _top);
    const std::ptrdiff_t first = _chosen ? 1 : 0; // the first key marks the row on top
    switch (key) {
    case Key::Up:
        return choose(row - 1);
    case Key::Down:
        return choose(row + first);
    case Key::PageUp:
        return choose(row - page);
    case Key::PageDown:
        return choose(row + page - 1 + first);
    case Key::Last:
        return choose(static_cast<std::ptrdiff_t>(_aircraft.size()));
    case Key::First:
        _top = 0;
        return _chosen.reset();
    case Key::Back:
        return _chosen.reset();
    case Key::Enter:
        return open();
    case Key::NextColumn:
        return chooseColumn(1);
    case Key::PreviousColumn:
        return chooseColumn(-1);
    case Key::Reverse:
        _descending = !_descending;
        return sortAnew();
    default:
        return;
    }
}

void LiveTable::choose(std::ptrdiff_t row) {
    if (_aircraft.empty()) {
        return;
    }
    const auto last = static_cast<std::ptrdiff_t>(_aircraft.size()) - 1;
    _row = static_cast<std::size_t>(std::clamp(row, std::ptrdiff_t{0}, last));
    _chosen = _aircraft[_row].icaoAddress();
}

void LiveTable::open() {
    if (!_chosen) {
        choose(static_cast<std::ptrdiff_t>(_top));
    }
    if (_chosen) {
        _opened = _aircraft[_row];
        _openedIsGone = false;
        goTo(View::Aircraft);
    }
}

void LiveTable::goTo(View view) {
    _view = view;
    if (view == View::Table) {
        _opened.reset();
    }
    _textTop = 0;
    layOut();
}

void LiveTable::scrollText(Key key) {
    const std::size_t page = bodyRows();
    switch (key) {
    case Key::Up:
        _textTop -= std::min(_textTop, std::size_t{1});
        break;
    case Key::Down:
        ++_textTop;
        break;
    case Key::PageUp:
        _textTop -= std::min(_textTop, page);
        break;
    case Key::PageDown:
        _textTop += page;
        break;
    case Key::First:
        _textTop = 0;
        break;
    case Key::Last:
        _textTop = _text.size();
        break;
    default:
        break;
    }
}

/// Sorts by the column so many places to the right.
void LiveTable::chooseColumn(int step) {
    const std::vector<AircraftColumn> columns = columnsFor(_aircraft, _showing);
    const auto found =
        std::find_if(columns.begin(), columns.end(),
                     [this](const AircraftColumn& column) { return column.key == _sortKey; });
    const auto count = static_cast<std::ptrdiff_t>(columns.size());
    const std::ptrdiff_t next = (found - columns.begin() + step + count) % count;
    _sortKey = columns[static_cast<std::size_t>(next)].key;
    sortAnew();
}

/// Sorts as the next showing will: equal aircraft are in the order in which it gives them.
void LiveTable::sortAnew() {
    sortAircraft(_aircraft, _showing, aircraftColumn("address"), false);
    sortAircraft(_aircraft, _showing, aircraftColumn(_options.sortKey), _options.descending);
    layOut();
}

/// Finds the marked aircraft in its new place. When it has left, the one in its row is marked.
void LiveTable::noteChosen() {
    const auto found =
        std::find_if(_aircraft.begin(), _aircraft.end(),
                     [this](const TrackedAircraft& one) { return one.icaoAddress() == _chosen; });
    if (found != _aircraft.end()) {
        _row = static_cast<std::size_t>(found - _aircraft.begin());
    } else if (_aircraft.empty()) {
        _chosen.reset();
    } else {
        choose(static_cast<std::ptrdiff_t>(_row));
    }
}

void LiveTable::layOut() {
    if (_view == View::Aircraft) {
        _text = aircraftLines();
        return;
    }
    if (_view == View::Keys) {
        _text = keyLines();
        return;
    }
    sortAircraft(_aircraft, _showing, aircraftColumn(_sortKey), _descending);
    if (_chosen) {
        noteChosen();
    }
    std::vector<TableColumn> columns = aircraftTableColumns(_aircraft, _showing);
    for (TableColumn& column : columns) {
        column.isChosen = column.name == sortName();
    }
    _table = tableLines(std::move(columns), _screen->columns());
}

std::string LiveTable::sortName() const {
    return std::string(aircraftColumn(_sortKey).name);
}

std::size_t LiveTable::bodyRows() const {
    const std::size_t others = 2 + lastMessages().size(); // head and foot
    return _screen->rows() - std::min(_screen->rows(), others);
}

std::size_t LiveTable::tableRows() const {
    const std::size_t rows = bodyRows() - std::min(bodyRows(), _table.heads.size());
    return std::max(rows, std::size_t{1});
}

/// Keeps the marked row on the screen, and the screen full of rows.
void LiveTable::limitTops() {
    const std::size_t rows = tableRows();
    if (_chosen) {
        _top = std::clamp(_top, _row + 1 - std::min(_row + 1, rows), _row);
    }
    _top = std::min(_top, _table.rows.size() - std::min(_table.rows.size(), rows));
    _textTop = std::min(_textTop, _text.size() - std::min(_text.size(), bodyRows()));
}

void LiveTable::draw() {
    _changed = false;
    limitTops();
    const std::size_t body = bodyRows();
    std::vector<ScreenLine> lines = {headLine()};
    if (_view == View::Table) {
        for (const TextLine& head : _table.heads) {
            lines.push_back({head});
        }
        for (std::size_t i = _top; i < std::min(_top + tableRows(), _table.rows.size()); ++i) {
            lines.push_back({_table.rows[i], _chosen && i == _row});
        }
    } else {
        for (std::size_t i = _textTop; i < std::min(_textTop + body, _text.size()); ++i) {
            lines.push_back({_text[i]});
        }
    }
    lines.resize(body + 1);
    for (const std::string& message : lastMessages()) {
        lines.push_back({{{message, true}}});
    }
    lines.push_back({footLine()});
    _screen->draw(lines);
}

/// Those for which the screen has room.
std::vector<std::string> LiveTable::lastMessages() const {
    const std::size_t count = std::min(_messages.size(), _screen->rows() / rowsForMessages);
    std::vector<std::string> last;
    for (std::size_t i = _messages.size() - count; i < _messages.size(); ++i) {
        last.push_back(_messages[i].text);
    }
    return last;
}

ScreenLine LiveTable::headLine() const {
    const std::size_t width = _screen->columns();
    const bool isWide = width >= wideScreen;
    const std::string lost =
        _showing.lostFeeds > 0 ? std::to_string(_showing.lostFeeds) + " not connected  " : "";
    const u64 hidden = _state.tracked - std::min(_state.tracked, u64{_aircraft.size()});
    const std::string counts = lost + std::to_string(_aircraft.size()) + " aircraft, " +
                               std::to_string(hidden) + " hidden  " +
                               std::to_string(std::llround(_state.perSecond)) +
                               (isWide ? " " + _options.what + "/s  " : "/s  ") +
                               clockText(_showing.timeMs) + (isWide ? " UTC" : "");
    std::size_t room = width - std::min(width, counts.size() + columnGap.size());
    room = room < shortestSources ? 0 : room;
    const std::string sources = toTheLeft(_options.sources.substr(0, room), room);
    return {{{sources + (room > 0 ? std::string(columnGap) : "") + counts}}, true};
}

TextLine LiveTable::footLine() const {
    if (_view == View::Keys) {
        return {{"esc: back  q: end", true}};
    }
    if (_view == View::Aircraft) {
        return {{"esc: back  up, down: scroll  ?: keys  q: end", true}};
    }
    std::string text =
        "?: keys  q: end  s: sorted by " + sortName() + (_descending ? ", reversed" : "");
    if (!_table.left.empty()) {
        text += "  (no room for " + std::to_string(_table.left.size()) + " columns)";
    }
    return {{text, true}};
}

std::vector<TextLine> LiveTable::aircraftLines() const {
    std::vector<TextLine> lines = aircraftReportLines(*_opened, _showing, _screen->columns());
    if (_openedIsGone) {
        lines.insert(lines.begin(), {{"It is no longer tracked. This is what was known last:"}});
    }
    return lines;
}

std::vector<TextLine> LiveTable::keyLines() const {
    constexpr std::size_t nameWidth = 18; // "page up, page down"
    const std::size_t width = _screen->columns();
    std::vector<TextLine> lines;
    const auto add = [&](const std::string& text) {
        const std::vector<TextLine> more = wrappedLines(text, width);
        lines.insert(lines.end(), more.begin(), more.end());
    };
    for (const auto& [name, does] : keys) {
        add(toTheLeft(name, nameWidth) + std::string(columnGap) + does);
    }
    lines.emplace_back();
    add(oldMarkText() + " and dim. An aircraft whose squawk tells an emergency is red.");
    if (!_table.left.empty()) {
        add("Columns without room: " + listText(_table.left, "and") + ".");
    }
    return lines;
}

} // namespace tolvarin::ondrel::client
