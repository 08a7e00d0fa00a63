#pragma once

#include "apps/display/showing.h"
#include "apps/tracking/track_history.h"
#include "apps/tracking/tracked_aircraft.h"
#include "apps/web/http_server.h"

#include <ondrel/types.h>

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

/// The pages that a browser gets while a run goes on:
///
/// - `/` and `/index.html`: map and table
/// - `/ABCDEF.html`: the page of an aircraft; its address may have small letters
/// - `/NAME.body`: what changes of such a page; the script of the page fetches it
/// - `/ABCDEF.report`: the report of the library, which shows the position that it solved
/// - `/live.js`: the script
/// - `/status`: the state of the run, as a JSON object
/// - `/data/aircraft.json` and `/data/receiver.json`: what map pages read
///
/// What is asked for is made once for each state of the run, whoever asks how often. No request
/// reaches the file system.
class LiveSite {
public:
    /// What the pages show.
    struct State {
        std::string name; ///< of the input
        Showing showing;
        std::vector<TrackedAircraft> aircraft; ///< in the order of the table
        TrackHistory history;
        std::string status; ///< a JSON object
        u64 messages;       ///< tracked in this run
    };

    /// Scripts of pages from `dataOrigin` may read what is below `/data/`; with *, all may.
    explicit LiveSite(std::string dataOrigin = "") : _dataOrigin(std::move(dataOrigin)) {}

    /// Shows this state from now on. Any thread may call it.
    void show(std::shared_ptr<const State> state);

    /// Any thread may call it.
    HttpAnswer answer(const HttpRequest& request);

private:
    /// A state and what was made of it so far.
    struct Rendered {
        std::shared_ptr<const State> state;
        std::mutex mutex; ///< of the rest
        std::unordered_map<std::string, HttpAnswer> plain;
        std::unordered_map<std::string, HttpAnswer> packed;
    };

    std::shared_ptr<Rendered> current();
    HttpAnswer contentOf(const HttpRequest& request);

    const std::string _dataOrigin;
    std::mutex _mutex; ///< of _current
    std::shared_ptr<Rendered> _current;
};

} // namespace tolvarin::ondrel::client
