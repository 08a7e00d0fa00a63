// Uses the library in constructor and destructor of a static object, which run before and after
// main(). What it does and what the log has goes to the standard error output; static_use_test.sh
// has the lines that are right. This file must not include <iostream>, which would make the streams
// in time.
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_service_status.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include "support/bytes.h"

#include <cstdio>
#include <memory>
#include <string>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;

void print(const std::string& line) {
    std::fputs((line + "\n").c_str(), stderr);
}

class Application {
public:
    Application() { use("constructor"); }
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application() { use("destructor"); }

    void use(const std::string& when) {
        Log::setShowLevel(Log::Debug);
        Log::log(Log::Info, "Static object", when); // as long as the longest name of the library
        _decoder = ModeSDecoder();
        _tracker = ADSBTracker();
        receive("8D4840D6 20ACC371C32CE0 576098"_hex); // a wrong bit
        receive("8D4840D6 20ACC371C32CE1 576099"_hex); // too many
        receive("8D40621D 58C382D690C8AC 2863A7"_hex);
        receive("8D40621D 58C386435CC412 692AD6"_hex);
        receive("8DA05629 C021485CBF3F8C"_hex);
        receive(test::surveillance(5, 0x40621D, 0x0808));
        receive(test::surveillance(21, 0x40621D, 0x0A0A));
        for (const unsigned format : {0U, 4U, 16U, 20U}) {
            receive(test::surveillance(format, 0x40621D));
        }
        receive(test::allCall(0x40621D, 0));
        receive(test::squitter(0x40621D, 18));
        receive(test::head(19, 1, 0x123456) + "00 00 00 00 00 00 00 00 00 00"_hex);
        receive(test::head(24, 0, 0x123456));
        payload(MOPSVersion0, "9B06B6AF189400"_hex);
        payload(MOPSVersion2, "E312B600000000"_hex);
        payload(MOPSVersion2, "F8230000000000"_hex);
        payload(MOPSVersion2, "EE21485CBF3F8C"_hex);
        payload(MOPSVersion2, "3FFA9A15323700"_hex);
        payload(MOPSVersion2, "BF000000000000"_hex);
        payload(MOPSVersion2, "C8000000000000"_hex);
        ADSBIdentityMessage().decode("58C382D690C8AC"_hex);
        DF4Message().decode(test::surveillance(5, 0x40621D));
        list();
        passOn();
        print("service " + std::to_string(ADSBServiceStatus().serviceId()));
        print("killed: " + std::to_string(_tracker.killTargets(stamp).size()));
    }

private:
    static constexpr u64 stamp = 1457996402000;

    void receive(const std::string& frame) {
        const std::unique_ptr<ModeSMessage> message(
            _decoder.decode(ModeSMessage::Downlink, frame, stamp));
        if (message == nullptr) {
            return print("refused");
        }
        print(message->modeSMsgTypeName() + ", " + message->description());
        for (const ModeSMessageField* field : message->fields()) {
            print("  " + field->name() + ", " + field->fullName());
        }
        _tracker.procModeSMsg(message.get());
    }

    static void payload(MOPSVersion version, const std::string& bytes) {
        const std::unique_ptr<ADSBMessage> message(ADSBDecoder().decode(version, bytes));
        if (message == nullptr) {
            return print("refused");
        }
        print(message->typeFullName() + ", " + message->description());
        for (const ADSBMessageField& field : message->fields()) {
            print("  " + field.name() + ", " + field.fullName() + ", " + field.description());
        }
    }

    void list() const {
        for (const ADSBTarget& target : _tracker.allTargets()) {
            const ADSBTargetReport report = target.report();
            print(report.icaoAddressString() + ' ' + report.callsign() + ' ' +
                  report.squawkString() + ' ' + report.positionString());
            const std::string page = report.toHtml("");
            print(page.find(report.icaoAddressString()) != std::string::npos ? "page" : "no page");
        }
    }

    void passOn() {
        ADSBTracker other;
        for (const ADSBTarget& target : _tracker.allTargetsSince(stamp - 1, stamp)) {
            const ADSBTargetReport report = target.report();
            print("passed on: " + other.procTargetReport(&report)->report().positionString());
        }
    }

    ModeSDecoder _decoder;
    ADSBTracker _tracker;
};

Application application; // NOLINT(cert-err58-cpp): what is tested

} // namespace
} // namespace tolvarin::ondrel

int main() {
    tolvarin::ondrel::application.use("main");
}
