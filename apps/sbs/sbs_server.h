#pragma once

#include "apps/display/live_view.h"
#include "apps/network/broadcast.h"
#include "apps/network/feed_address.h"

#include <ondrel/adsb_decoder.h>

#include <functional>
#include <string>

namespace tolvarin::ondrel::client {

/// Sends an SBS line of each tracked message to all clients of an address. Nothing is done for a
/// message while there is no client.
class SbsServer final : public LiveView {
public:
    /// As Broadcast.
    SbsServer(const FeedAddress& address, std::function<void(const std::string&)> report)
        : _clients(address, std::move(report)) {}

    void show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
              const TrackHistory& history) override;
    void note(const DFMessage& message, const ADSBTarget& aircraft,
              const std::optional<Position>& position) override;
    bool showsPaths() const override { return false; }
    bool poll() override;

private:
    void send();

    Broadcast _clients;
    ADSBDecoder _decoder;
    std::string _lines; ///< not sent yet
};

} // namespace tolvarin::ondrel::client
