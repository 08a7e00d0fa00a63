#pragma once

#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// A message server (NATS) that carries replies and aircraft between programs, and how to log in
/// there. Secrets come from files, so that no list of processes shows them.
struct MessageServer {
    std::string url; ///< "nats://HOST:PORT"

    /// A credentials file of the server's tools, or a file with the line USER:PASSWORD.
    std::optional<std::string> credentials;

    std::optional<std::string> authorities; ///< certificates (PEM) that the server's must be from
    std::optional<std::string> certificate; ///< of this client (PEM)
    std::optional<std::string> key;         ///< of that certificate (PEM)
};

/// Whether a source that the user named is a message server.
bool isMessageServer(const std::string& name);

/// What is wrong with the name of a message server; empty if nothing is.
std::string messageServerError(const std::string& name);

/// Whether the program was built with a library for messages. Without it, all that needs a server
/// throws Failure.
bool canMessage();

} // namespace tolvarin::ondrel::client
