// Shows why an application keeps one decoder for a whole stream of replies. The same altitude reply
// is graded Low at first, and High after a squitter has proved the address of the aircraft. Read
// decode_reply.cpp first.

#include <ondrel/df_messages.h>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include <iostream>
#include <memory>
#include <string>

using namespace tolvarin::ondrel;

namespace {

const std::string altitudeReply("\x20\x00\x17\x18\x02\x4E\xBD", 7);
const std::string squitter("\x8D\x48\x40\xD6\x20\x2C\xC3\x71\xC3\x2C\xE0\x57\x60\x98", 14);

const char* word(ModeSMessage::Confidence confidence) {
    switch (confidence) {
    case ModeSMessage::None:
        return "None";
    case ModeSMessage::Low:
        return "Low";
    case ModeSMessage::Medium:
        return "Medium";
    default:
        return "High";
    }
}

} // namespace

int main() {
    Log::setShowLevel(Log::Warning);
    ModeSDecoder decoder;
    for (const std::string& reply : {altitudeReply, squitter, altitudeReply}) {
        const std::unique_ptr<ModeSMessage> message(decoder.decode(ModeSMessage::Downlink, reply));
        if (!message) {
            continue;
        }
        // Every message from a decoder is a DFMessage: decoders refuse uplinks.
        const auto& downlink = dynamic_cast<const DFMessage&>(*message);
        std::cout << downlink.downlinkFormatName() << ' ' << word(message->confidence()) << " from "
                  << message->icaoAddressHexString() << ": " << message->description() << '\n';
        for (const ModeSMessageField* field : message->fields()) {
            std::cout << "    " << field->fullName() << ": " << field->description() << '\n';
        }
    }
}
