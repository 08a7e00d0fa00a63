#pragma once

#include "apps/messaging/network_replies.h"

#include <CLI/CLI.hpp>

/// Options for what comes from or goes to a message server.
namespace tolvarin::ondrel::client {

/// Adds how to log in at the server: `--credentials`, `--tls-ca`, `--tls-cert` and `--tls-key`,
/// each with a file.
void addServerOptions(CLI::App& command, MessageServer& server);

/// Adds those and `--partitions`, `--worker` and `--rebuild`.
void addWorkerOptions(CLI::App& command, WorkerOptions& worker);

/// Accepts the name of a site or a worker.
CLI::Validator siteName();

} // namespace tolvarin::ondrel::client
