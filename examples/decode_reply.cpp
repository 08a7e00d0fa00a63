// Decodes one reply, and shows that a damaged extended squitter is repaired. Read this example
// first. The README shows it.

#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include <iostream>
#include <memory>

using namespace tolvarin::ondrel;

int main() {
    Log::setShowLevel(Log::Warning);
    ModeSDecoder decoder;
    const unsigned char reply[] = {0x8D, 0x48, 0x40, 0xD6, 0x20, 0xAC, 0xC3, // bit 40 is damaged
                                   0x71, 0xC3, 0x2C, 0xE0, 0x57, 0x60, 0x98};
    const std::unique_ptr<ModeSMessage> message(
        decoder.decode(ModeSMessage::Downlink, reply, sizeof reply));
    if (message && message->confidence() == ModeSMessage::High) {
        std::cout << message->icaoAddressHexString() << " High " << message->description() << '\n';
    }
}
