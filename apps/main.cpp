#include "apps/commands/command.h"
#include "apps/commands/decode.h"
#include "apps/commands/feed.h"
#include "apps/commands/simulate.h"
#include "apps/commands/track.h"
#include "apps/common/failure.h"
#include "apps/common/file.h"
#include "apps/common/text.h"
#include "apps/input/unpacked_file.h"
#include "apps/messaging/message_server.h"
#include "apps/network/feeds.h"
#include "apps/terminal/live_screen.h"
#include "apps/web/http_server.h"

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
    return command + ": " + shownName(text) + "\nTry " + command + " --help\n";
}

/// `ondrel help`: the help text of the program, or of one command.
class HelpCommand final : public Command {
public:
    /// The program has all other commands.
    explicit HelpCommand(CLI::App& program)
        : Command(program, "help", "Show this help, or that of a command"), _program(program) {
        std::vector<std::string> names;
        for (const CLI::App* command : program.get_subcommands({})) {
            names.push_back(command->get_name());
        }
        line()
            .add_option("COMMAND", _name, "The command; without it, this program")
            ->type_name("")
            ->check(CLI::IsMember(names).description(""));
    }

    int run() override {
        const std::string text =
            _name.empty() ? _program.get_formatter()->make_help(&_program, _program.get_name(),
                                                                CLI::AppFormatMode::Normal)
                          : _program.get_subcommand(_name)->help(_program.get_name());
        File::openForWriting("-").write(text);
        return Done;
    }

private:
    const CLI::App& _program;
    std::string _name;
};

/// "with zlib, Asio; without ncurses, libmicrohttpd"
std::string libraries() {
    std::string with;
    std::string without;
    const auto add = [&](bool isIn, const std::string& name) {
        std::string& list = isIn ? with : without;
        list += (list.empty() ? "" : ", ") + name;
    };
    add(canUnpack(), "zlib");
    add(canConnect(), "Asio");
    add(hasLiveScreen(), "ncurses");
    add(canServeHttp(), "libmicrohttpd");
    add(canMessage(), "libnats");
    return (with.empty() ? "" : "with " + with) + (with.empty() || without.empty() ? "" : "; ") +
           (without.empty() ? "" : "without " + without);
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
    program.footer("Try ondrel help SUBCOMMAND");
    program.set_version_flag("-V,--version", "ondrel " + Ondrel::version() + "\n" + libraries());
    program.failure_message(usageError);
    program.require_subcommand(1);
    DecodeCommand decode(program);
    TrackCommand track(program);
    FeedCommand feed(program);
    SimulateCommand simulate(program);
    HelpCommand help(program);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& result) { // --help and --version come here too
        std::ostringstream output;
        const bool asked = program.exit(result, output, std::cerr) == 0;
        File::openForWriting("-").write(output.str());
        return asked ? Done : WrongUsage;
    }
    return runChosen({&decode, &track, &feed, &simulate, &help});
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
        std::cerr << "ondrel: " << shownName(error.what()) << '\n';
        return Failed;
    }
}
