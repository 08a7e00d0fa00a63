#include "apps/commands/network_options.h"

#include "apps/commands/options.h"
#include "apps/merging/reply_batch.h"

#include <charconv>
#include <cstddef>
#include <string_view>
#include <system_error>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 longestRebuild = 60; // minutes; the store keeps fewer unless told

bool takeNumber(std::string_view& text, unsigned& number) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    return result.ec == std::errc();
}

/// False if the text does not begin with it.
bool takeCharacter(std::string_view& text, char wanted) {
    const bool isThere = !text.empty() && text.front() == wanted;
    text.remove_prefix(isThere ? 1 : 0);
    return isThere;
}

/// "0-3/16"; nothing if the text is not of the form FIRST[-LAST][/N].
std::optional<Partitions> partitionsOf(const std::string& text) {
    constexpr unsigned usual = 8;
    std::string_view rest = text;
    unsigned first = 0;
    bool isGood = takeNumber(rest, first);
    unsigned last = first;
    if (takeCharacter(rest, '-')) {
        isGood = isGood && takeNumber(rest, last);
    }
    unsigned count = usual;
    if (takeCharacter(rest, '/')) {
        isGood = isGood && takeNumber(rest, count);
    }
    if (!isGood || !rest.empty() || first > last || last >= count || count > mostPartitions) {
        return std::nullopt;
    }
    Partitions partitions{{}, count};
    for (unsigned i = first; i <= last; ++i) {
        partitions.numbers.push_back(i);
    }
    return partitions;
}

} // namespace

void addServerOptions(CLI::App& command, MessageServer& server) {
    const auto addFile = [&command](const char* name, std::optional<std::string>& file,
                                    const char* help) {
        return command.add_option(name, file, help)
            ->type_name("FILE")
            ->check(CLI::ExistingFile.description(""));
    };
    addFile("--credentials", server.credentials,
            "How to log in at the message server: a credentials file\n"
            "of its tools, or a file with the line USER:PASSWORD");
    addFile("--tls-ca", server.authorities,
            "Use TLS, and believe a message server whose certificate\n"
            "is from one of these (PEM)");
    CLI::Option* certificate = addFile("--tls-cert", server.certificate,
                                       "Use TLS, and show this certificate to the message\n"
                                       "server (PEM)");
    CLI::Option* key = addFile("--tls-key", server.key, "The key of that certificate (PEM)");
    certificate->needs(key);
    key->needs(certificate);
}

void addWorkerOptions(CLI::App& command, WorkerOptions& worker) {
    command
        .add_option_function<std::string>(
            "--partitions",
            [&worker](const std::string& text) { worker.partitions = *partitionsOf(text); },
            "From a message server: track these parts of all aircraft;\n"
            "N: how many parts the sites make")
        ->type_name("FIRST[-LAST][/N]=0-7/8")
        ->check(CLI::Validator(
            [](const std::string& text) -> std::string {
                return partitionsOf(text) ? "" : "expected FIRST[-LAST][/N], not '" + text + "'";
            },
            ""));
    command
        .add_option("--worker", worker.name,
                    "From a message server that stores replies: the name for\n"
                    "which it keeps how far they were read")
        ->type_name("NAME=worker")
        ->check(siteName());
    command
        .add_option_function<u64>(
            "--rebuild", [&worker](u64 minutes) { worker.rebuild = std::chrono::minutes(minutes); },
            "From such a server: begin with the replies of so many\n"
            "minutes, to fill the table")
        ->type_name("MINUTES=5")
        ->transform(wholeNumber(0, longestRebuild));
    addServerOptions(command, worker.server);
}

CLI::Validator siteName() {
    return CLI::Validator(
        [](const std::string& name) -> std::string {
            return isSiteName(name)
                       ? ""
                       : "expected 1 to 32 letters, digits, - and _, not '" + name + "'";
        },
        "");
}

} // namespace tolvarin::ondrel::client
