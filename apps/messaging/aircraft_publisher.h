#pragma once

#include "apps/display/live_view.h"
#include "apps/messaging/message_server.h"
#include "apps/tracking/report_turns.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// Sends the latest report of each aircraft to a message server: those that were updated, each
/// about every five seconds. A thread of its own sends them, so that nothing waits for the server.
/// What cannot be sent now is not kept.
class AircraftPublisher final : public LiveView {
public:
    /// `worker` is a name for the server's lists; `report` tells what the user should know, from
    /// within poll(). Throws Failure if the options of the server are of no use.
    AircraftPublisher(const MessageServer& server, const std::string& worker,
                      std::function<void(const std::string&)> report);
    ~AircraftPublisher() override;

    void show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
              const TrackHistory& history) override;
    bool showsPaths() const override { return false; }
    bool showsHidden() const override { return true; }
    bool poll() override;

private:
    class Sending;

    std::function<void(const std::string&)> _report;
    ReportTurns _turns;
    unsigned _connections = 0; ///< that the server had
    std::unique_ptr<Sending> _sending;
};

} // namespace tolvarin::ondrel::client
