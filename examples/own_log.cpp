// Sends the library's log lines to a sink of the application. Read decode_reply.cpp first.

#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include <iostream>
#include <memory>
#include <string>

using namespace tolvarin::ondrel;

namespace {

class StandardOutput final : public LogHandler {
public:
    void writeLine(const std::string& line) override { std::cout << "ondrel: " << line << '\n'; }
};

} // namespace

int main() {
    StandardOutput sink; // must live as long as it is installed: the library does not own it
    Log::setLogHandler(&sink);
    Log::setShowLevel(Log::Info);

    ModeSDecoder decoder;
    const std::string damaged("\x8D\x48\x40\xD6\x20\xAC\xC3\x71\xC3\x2C\xE0\x57\x60\x98", 14);
    const std::unique_ptr<ModeSMessage> message(decoder.decode(ModeSMessage::Downlink, damaged));
    std::cout << (message ? message->description() : "refused") << '\n';

    Log::setLogHandler(nullptr);
}
