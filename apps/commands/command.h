#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace tolvarin::ondrel::client {

/// A subcommand of the program: its options and what it does.
class Command {
public:
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    /// Whether the command line names this command.
    bool chosen() const { return _line.parsed(); }

    /// Runs the command with the options of the command line and gives the exit status. Throws
    /// Failure and OutputClosed.
    virtual int run() = 0;

protected:
    Command(CLI::App& program, const std::string& name, const std::string& description)
        : _line(*program.add_subcommand(name, description)) {}

    /// The command's part of the command line.
    CLI::App& line() { return _line; }

private:
    CLI::App& _line;
};

} // namespace tolvarin::ondrel::client
