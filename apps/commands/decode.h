#pragma once

#include "apps/commands/command.h"
#include "apps/commands/reply_input.h"
#include "apps/decoding/decoded_reply.h"
#include "apps/tracking/geo_point.h"

#include <ondrel/mode_s_message.h>
#include <ondrel/types.h>

#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// `ondrel decode`: every reply of a recording as a line of text or JSON.
class DecodeCommand final : public Command {
public:
    explicit DecodeCommand(CLI::App& program);

    int run() override;

private:
    bool isShown(const DecodedReply& decoded) const;
    void append(std::string& text, const DecodedReply& decoded,
                const std::optional<GeoPoint>& place) const;

    ReplyInputOptions _input;
    std::optional<MOPSVersion> _version;
    ModeSMessage::Confidence _confidence = ModeSMessage::None; ///< the least that is shown
    bool _json = false;
    bool _fields = false;
};

} // namespace tolvarin::ondrel::client
