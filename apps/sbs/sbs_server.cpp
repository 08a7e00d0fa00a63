#include "apps/sbs/sbs_server.h"

#include "apps/common/system_time.h"
#include "apps/sbs/sbs_line.h"

#include <cstddef>
#include <memory>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t mostWaiting = 65536; // bytes

} // namespace

/// The end of a run comes without a poll().
void SbsServer::show(const std::vector<TrackedAircraft>& /*aircraft*/, const Showing& /*showing*/,
                     const TrackHistory& /*history*/) {
    send();
}

void SbsServer::note(const DFMessage& message, const ADSBTarget& aircraft,
                     const std::optional<Position>& position) {
    if (_clients.clients() == 0) {
        return;
    }
    std::unique_ptr<const ADSBMessage> payload;
    if (message.downlinkFormat() == DFMessage::DF17) {
        const auto& squitter = static_cast<const DF17Message&>(message);
        payload.reset(_decoder.decode(aircraft.mopsVersion(), squitter.constFieldME().data()));
    }
    appendSbsLine(_lines, message, payload.get(), position, systemMilliseconds());
    if (_lines.size() > mostWaiting) {
        send();
    }
}

bool SbsServer::poll() {
    send();
    return true;
}

void SbsServer::send() {
    if (!_lines.empty()) {
        _clients.send(_lines);
        _lines.clear();
    }
    _clients.poll();
}

} // namespace tolvarin::ondrel::client
