#pragma once

#include "apps/display/live_view.h"
#include "apps/web/http_server.h"
#include "apps/web/live_site.h"

#include <functional>
#include <string>
#include <utility>

namespace tolvarin::ondrel::client {

/// Serves live pages over HTTP.
class WebView final : public LiveView {
public:
    /// `name` is that of the input, `dataOrigin` as LiveSite takes it; `status` gives the state of
    /// the run as a JSON object. Throws Failure if the address cannot be served.
    WebView(const FeedAddress& address, std::string name, std::string dataOrigin,
            std::function<std::string()> status)
        : _name(std::move(name)), _status(std::move(status)), _site(std::move(dataOrigin)),
          _server(address, [this](const HttpRequest& request) { return _site.answer(request); }) {}

    void show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
              const TrackHistory& history) override {
        _site.show(std::make_shared<const LiveSite::State>(
            LiveSite::State{_name, showing, aircraft, history, _status(), _messages}));
    }
    void note(const DFMessage& /*message*/, const ADSBTarget& /*aircraft*/,
              const std::optional<Position>& /*position*/) override {
        ++_messages;
    }

    /// "127.0.0.1:8080".
    const std::string& address() const { return _server.address(); }

private:
    std::string _name;
    std::function<std::string()> _status;
    u64 _messages = 0;
    LiveSite _site;
    HttpServer _server; ///< the last member: its thread uses the others
};

} // namespace tolvarin::ondrel::client
