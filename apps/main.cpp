#include "apps/commands/decode.h"
#include "apps/commands/simulate.h"
#include "apps/commands/track.h"
#include "apps/common/failure.h"
#include "apps/common/file.h"

#include <ondrel/ondrel.h>

#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <sstream>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

enum Status : int {
    Done = 0,
    Failed = 1,
    WrongUsage = 2,
};

/// The message for a wrong command line.
std::string usageError(const CLI::App* program, const CLI::Error& error) {
    std::string command = program->get_name();
    for (const CLI::App* chosen : program->get_subcommands()) {
        command += " " + chosen->get_name();
    }
    std::string text = error.what();
    if (program->get_subcommands().empty() && program->remaining_size() > 0) {
        text = "there is no '" + program->remaining().front() + "'";
    }
    return command + ": " + text + "\nTry " + command + " --help\n";
}

int runChosen(const std::vector<Command*>& commands) {
    for (Command* command : commands) {
        if (command->chosen()) {
            return command->run();
        }
    }
    return WrongUsage;
}

int runProgram(int argc, const char* const* argv) {
    CLI::App program("Decodes Mode S replies and ADS-B messages.", "ondrel");
    program.footer("Try ondrel SUBCOMMAND --help");
    program.set_version_flag("--version", "ondrel " + Ondrel::version());
    program.failure_message(usageError);
    program.require_subcommand(1);
    DecodeCommand decode(program);
    TrackCommand track(program);
    SimulateCommand simulate(program);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& result) { // --help and --version come here too
        std::ostringstream output;
        const bool asked = program.exit(result, output, std::cerr) == 0;
        File::openForWriting("-").write(output.str());
        return asked ? Done : WrongUsage;
    }
    return runChosen({&decode, &track, &simulate});
}

} // namespace

} // namespace tolvarin::ondrel::client

int main(int argc, char** argv) {
    using namespace tolvarin::ondrel::client;
    try {
        // So that a write into a closed pipe, or beyond the allowed size of a file, gives an error,
        // which File::write handles.
        static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
        static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
        occupyClosedStandardStreams();
        return runProgram(argc, argv);
    } catch (const OutputClosed&) {
        return Done;
    } catch (const std::bad_alloc&) {
        std::cerr << "ondrel: out of memory\n";
        return Failed;
    } catch (const std::exception& error) {
        std::cerr << "ondrel: " << error.what() << '\n';
        return Failed;
    }
}
