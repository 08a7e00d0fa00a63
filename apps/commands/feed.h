#pragma once

#include "apps/commands/command.h"
#include "apps/commands/reply_input.h"
#include "apps/messaging/message_server.h"
#include "apps/messaging/reply_publisher.h"

namespace tolvarin::ondrel::client {

/// `ondrel feed`: sends the graded replies of a site to a message server.
class FeedCommand final : public Command {
public:
    explicit FeedCommand(CLI::App& program);

    int run() override;

private:
    ReplyInputOptions _input;
    MessageServer _server;
    PublisherOptions _publishing;
};

} // namespace tolvarin::ondrel::client
