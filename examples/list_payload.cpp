// Decodes an ADS-B payload, which is the seven bytes of an ME field, and lists its bit fields
// without knowing the class of the message. Read decode_reply.cpp first.

#include <ondrel/adsb_decoder.h>
#include <ondrel/log.h>

#include <iostream>
#include <memory>
#include <string>

using namespace tolvarin::ondrel;

int main() {
    Log::setShowLevel(Log::Warning);
    const ADSBDecoder decoder;
    const std::string payload("\x99\x44\x09\x94\x08\x38\x17", 7);
    const std::unique_ptr<ADSBMessage> message(decoder.decode(MOPSVersion2, payload));
    if (!message) {
        return 1;
    }
    std::cout << message->description() << '\n';
    for (const ADSBMessageField& field : message->fields()) {
        std::cout << "  bit " << unsigned{field.pos()} << ", " << unsigned{field.bits()}
                  << " wide: " << field.name() << " = " << field.description() << '\n';
    }
}
