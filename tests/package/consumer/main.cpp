#include <ondrel/mode_s_decoder.h>

#include <iostream>
#include <memory>

int main() {
    const std::string frame = "\x8D\x48\x40\xD6\x20\x2C\xC3\x71\xC3\x2C\xE0\x57\x60\x98";
    tolvarin::ondrel::ModeSDecoder decoder;
    const std::unique_ptr<tolvarin::ondrel::ModeSMessage> message(
        decoder.decode(tolvarin::ondrel::ModeSMessage::Downlink, frame));
    std::cout << (message ? message->description() : "nothing") << '\n';
}
