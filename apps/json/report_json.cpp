#include "apps/json/report_json.h"

#include "apps/common/text.h"
#include "apps/json/json_object.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <type_traits>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

using Json = nlohmann::json;
using Report = ADSBTargetReport;

constexpr std::size_t longestMessage = 8192; // bytes; one of all data has less than 2000
constexpr std::size_t callsignWidth = 8;
constexpr u8 lastIdentityTypeCode = 4;
constexpr u8 lastCategory = 7;
constexpr std::size_t addressDigits = 6;

// How each type stands in JSON.

template <class Value>
Json toJson(const Value& value) {
    return value;
}

template <std::size_t size>
Json toJson(const std::array<u32, size>& counts) {
    Json list = counts;
    while (!list.empty() && list.back() == 0) {
        list.erase(list.size() - 1);
    }
    return list;
}

Json toJson(const std::optional<Position>& position) {
    return position ? Json::array(
                          {position->place.latitude, position->place.longitude, position->stampMs})
                    : Json();
}

// How it is read: false if the JSON is no such value.

bool read(const Json& json, bool& value) {
    value = json == true;
    return json.is_boolean();
}

bool read(const Json& json, double& value) {
    value = json.is_number() ? json.get<double>() : 0;
    return json.is_number();
}

template <class Whole, std::enable_if_t<std::is_integral_v<Whole>, int> = 0>
bool read(const Json& json, Whole& value) {
    using Limits = std::numeric_limits<Whole>;
    if (json.is_number_unsigned()) { // any number from 0 on
        const auto number = json.get<std::uint64_t>();
        value = static_cast<Whole>(number);
        return number <= static_cast<std::uint64_t>(Limits::max());
    }
    if (!std::is_signed_v<Whole> || !json.is_number_integer()) {
        return false;
    }
    const auto number = json.get<std::int64_t>();
    value = static_cast<Whole>(number);
    return number >= static_cast<std::int64_t>(Limits::min());
}

template <class Enumeration, std::enable_if_t<std::is_enum_v<Enumeration>, int> = 0>
bool read(const Json& json, Enumeration& value) {
    constexpr auto last =
        std::is_same_v<Enumeration, MOPSVersion> ? i32{MOPSVersionUnknown} : i32{Gnss};
    i32 number = 0;
    const bool isOne = read(json, number) && number >= 0 && number <= last;
    value = static_cast<Enumeration>(isOne ? number : 0);
    return isOne;
}

/// A callsign, of the characters that aircraft can send: it goes to terminals and pages as it is.
bool read(const Json& json, std::string& value) {
    const auto isCharacter = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ' || c == '?';
    };
    value = json.is_string() ? json.get<std::string>() : "";
    return json.is_string() && value.size() <= callsignWidth &&
           std::all_of(value.begin(), value.end(), isCharacter);
}

template <std::size_t size>
bool read(const Json& json, std::array<u32, size>& counts) {
    bool areCounts = json.is_array() && json.size() <= size;
    for (std::size_t i = 0; areCounts && i < json.size(); ++i) {
        areCounts = read(json[i], counts[i]);
    }
    return areCounts;
}

bool read(const Json& json, std::optional<Position>& position) {
    Position place{};
    if (!json.is_array() || json.size() != 3 || !read(json[0], place.place.latitude) ||
        !read(json[1], place.place.longitude) || !read(json[2], place.stampMs)) {
        return false;
    }
    position = place;
    return std::abs(place.place.latitude) <= 90 && std::abs(place.place.longitude) <= 180;
}

/// How a value is got from an aircraft, and how it is set.
template <class Get, class Set>
struct Part {
    Get get;
    Set set;
};

template <class Get, class Set>
Part<Get, Set> part(Get get, Set set) {
    return {get, set};
}

/// Of a member, to which `member` gives a reference.
template <class Member>
auto part(Member member) {
    return part(
        [member](const TrackedAircraft& aircraft) { return member(aircraft); },
        [member](TrackedAircraft& aircraft, const auto& value) { member(aircraft) = value; });
}

/// Everything that a message carries but its address. Where a key has several parts, these are the
/// items of an array. Setters of values also set flags, so each value stands before its flag.
template <class Form>
void carry(Form& form) {
    form.value("track_number", part(&Report::trackId, &Report::setTrackId));
    form.value("last_update_ms", part(&Report::lastUpdate, &Report::setLastUpdate));
    form.list("callsign", part(&Report::callsign, &Report::setCallsign),
              part(&Report::callsignValid, &Report::setCallsignValid),
              part(&Report::callsignLastUpdate, &Report::setCallsignLastUpdate),
              part(&Report::callsignLastChange, &Report::setCallsignLastChange));
    form.list("category", part(&Report::emitterCategory, &Report::setEmitterCategory),
              part(&Report::emitterCategoryValid, &Report::setEmitterCategoryValid),
              part(&Report::emitterCategoryLastUpdate, &Report::setEmitterCategoryLastUpdate),
              part(&Report::emitterCategoryLastChange, &Report::setEmitterCategoryLastChange));
    form.list("squawk", part(&Report::squawk, &Report::setSquawk),
              part(&Report::squawkValid, &Report::setSquawkValid),
              part(&Report::squawkLastUpdate, &Report::setSquawkLastUpdate),
              part(&Report::squawkLastChange, &Report::setSquawkLastChange));
    form.list("ground_status", part(&Report::groundStatus, &Report::setGroundStatus),
              part(&Report::groundStatusValid, &Report::setGroundStatusValid),
              part(&Report::groundStatusLastUpdate, &Report::setGroundStatusLastUpdate),
              part(&Report::groundStatusLastChange, &Report::setGroundStatusLastChange));
    form.list("spi", part(&Report::spiStatus, &Report::setSpiStatus),
              part(&Report::spiStatusValid, &Report::setSpiStatusValid),
              part(&Report::spiStatusLastUpdate, &Report::setSpiStatusLastUpdate),
              part(&Report::spiStatusLastChange, &Report::setSpiStatusLastChange));
    form.list("alert", part(&Report::alertStatus, &Report::setAlertStatus),
              part(&Report::alertStatusValid, &Report::setAlertStatusValid),
              part(&Report::alertStatusLastUpdate, &Report::setAlertStatusLastUpdate),
              part(&Report::alertStatusLastChange, &Report::setAlertStatusLastChange));
    form.list("altitude_ft", part(&Report::altitudeBaro, &Report::setAltitudeBaro),
              part(&Report::altitudeBaroValid, &Report::setAltitudeBaroValid),
              part(&Report::altitudeBaroLastUpdate, &Report::setAltitudeBaroLastUpdate));
    form.list("ground_speed_kt", part(&Report::groundSpeed, &Report::setGroundSpeed),
              part(&Report::groundSpeedValid, &Report::setGroundSpeedValid),
              part(&Report::groundSpeedLastUpdate, &Report::setGroundSpeedLastUpdate));
    form.list("track_deg", part(&Report::heading, &Report::setHeading),
              part(&Report::headingValid, &Report::setHeadingValid),
              part(&Report::headingLastUpdate, &Report::setHeadingLastUpdate));
    form.list("vertical_rate_ft_min", part(&Report::verticalRateBaro, &Report::setVerticalRateBaro),
              part(&Report::verticalRateBaroValid, &Report::setVerticalRateBaroValid),
              part(&Report::verticalRateBaroLastUpdate, &Report::setVerticalRateBaroLastUpdate));
    form.list("signal_amplitude", part(&Report::signalAmplitude, &Report::setSignalAmplitude),
              part(&Report::signalAmplitudeValid, &Report::setSignalAmplitudeValid),
              part(&Report::signalAmplitudeLastUpdate, &Report::setSignalAmplitudeLastUpdate));
    form.list("nucp", part(&Report::nucp, &Report::setNUCp),
              part(&Report::nucpValid, &Report::setNUCpValid),
              part(&Report::nucpLastUpdate, &Report::setNUCpLastUpdate),
              part(&Report::nucpLastChange, &Report::setNUCpLastChange));
    form.list("nucr", part(&Report::nucr, &Report::setNUCr),
              part(&Report::nucrValid, &Report::setNUCrValid),
              part(&Report::nucrLastUpdate, &Report::setNUCrLastUpdate),
              part(&Report::nucrLastChange, &Report::setNUCrLastChange));
    form.list("nic", part(&Report::nic, &Report::setNIC),
              part(&Report::nicValid, &Report::setNICValid),
              part(&Report::nicLastUpdate, &Report::setNICLastUpdate),
              part(&Report::nicLastChange, &Report::setNICLastChange));
    form.list("nic_supplement_a", part(&Report::nicSuppA, &Report::setNICSuppA),
              part(&Report::nicSuppAValid, &Report::setNICSuppAValid),
              part(&Report::nicSuppALastUpdate, &Report::setNICSuppALastUpdate));
    form.list("nic_supplement_b", part(&Report::nicSuppB, &Report::setNICSuppB),
              part(&Report::nicSuppBValid, &Report::setNICSuppBValid),
              part(&Report::nicSuppBLastUpdate, &Report::setNICSuppBLastUpdate));
    form.list("nic_supplement_c", part(&Report::nicSuppC, &Report::setNICSuppC),
              part(&Report::nicSuppCValid, &Report::setNICSuppCValid),
              part(&Report::nicSuppCLastUpdate, &Report::setNICSuppCLastUpdate));
    form.list("pic", part(&Report::pic, &Report::setPIC),
              part(&Report::picValid, &Report::setPICValid),
              part(&Report::picLastUpdate, &Report::setPICLastUpdate),
              part(&Report::picLastChange, &Report::setPICLastChange));
    form.list("nacp", part(&Report::nacp, &Report::setNACp),
              part(&Report::nacpValid, &Report::setNACpValid),
              part(&Report::nacpLastUpdate, &Report::setNACpLastUpdate),
              part(&Report::nacpLastChange, &Report::setNACpLastChange));
    form.list("sil", part(&Report::sil, &Report::setSIL),
              part(&Report::silValid, &Report::setSILValid),
              part(&Report::silLastUpdate, &Report::setSILLastUpdate),
              part(&Report::silLastChange, &Report::setSILLastChange));
    form.list("position",
              part(&Report::latitude,
                   [](Report& r, double value) { r.setPosition(value, r.longitude()); }),
              part(&Report::longitude,
                   [](Report& r, double value) { r.setPosition(r.latitude(), value); }),
              part(&Report::positionValid, &Report::setPositionValid),
              part(&Report::positionLastUpdate, &Report::setPositionLastUpdate));
    form.value("accepted_position", part([](auto& t) -> auto& { return t.position; }));
    form.list("mops_version", part(&Report::mopsVersion, &Report::setMopsVersion),
              part(&Report::mopsVersionConfirmed, &Report::setMopsVersionConfirmed),
              part(&Report::mopsVersionLastUpdate, &Report::setMopsVersionLastUpdate),
              part(&Report::mopsVersionLastChange, &Report::setMopsVersionLastChange));
    form.list("capability", part([](auto& t) -> auto& { return t.capability.value; }),
              part([](auto& t) -> auto& { return t.capability.lastUpdate; }));
    form.value("identity_type_code",
               part([](auto& t) -> auto& { return t.notes.identityTypeCode; }));
    form.value("altitude_source", part([](auto& t) -> auto& { return t.notes.altitudeSource; }));
    form.value("sites", part([](auto& t) -> auto& { return t.notes.sites; }));
    form.list("told", part([](auto& t) -> auto& { return t.notes.altitudeTold; }),
              part([](auto& t) -> auto& { return t.notes.velocityTold; }),
              part([](auto& t) -> auto& { return t.notes.verticalRateTold; }),
              part([](auto& t) -> auto& { return t.groundStatusTold; }));
    form.value("messages_by_format", part([](auto& t) -> auto& { return t.messagesByFormat; }));
    form.value("messages_by_type", part([](auto& t) -> auto& { return t.messagesByType; }));
}

/// Puts an aircraft into an object.
class Writing {
public:
    Writing(const TrackedAircraft& aircraft, Json& form) : _aircraft(aircraft), _form(form) {}

    template <class Part>
    void value(const char* key, const Part& part) {
        put(key, jsonOf(part, _aircraft), jsonOf(part, _empty));
    }

    template <class... Parts>
    void list(const char* key, const Parts&... parts) {
        put(key, Json::array({jsonOf(parts, _aircraft)...}),
            Json::array({jsonOf(parts, _empty)...}));
    }

private:
    template <class Part>
    static Json jsonOf(const Part& part, const TrackedAircraft& aircraft) {
        return toJson(std::invoke(part.get, aircraft));
    }

    void put(const char* key, Json&& value, const Json& empty) {
        if (value != empty) {
            _form[key] = std::move(value);
        }
    }

    const TrackedAircraft& _aircraft;
    const TrackedAircraft _empty;
    Json& _form;
};

/// Fills an aircraft from an object.
class Reading {
public:
    Reading(const Json& form, TrackedAircraft& aircraft) : _form(form), _aircraft(aircraft) {}

    template <class Part>
    void value(const char* key, const Part& part) {
        if (const auto found = _form.find(key); found != _form.end()) {
            _succeeded = _succeeded && set(part, *found);
        }
    }

    template <class... Parts>
    void list(const char* key, const Parts&... parts) {
        if (const auto found = _form.find(key); found != _form.end()) {
            std::size_t next = 0;
            _succeeded = _succeeded && found->is_array() && found->size() == sizeof...(parts) &&
                         (set(parts, (*found)[next++]) && ...);
        }
    }

    bool succeeded() const { return _succeeded; }

private:
    template <class Part>
    bool set(const Part& part, const Json& json) {
        std::decay_t<decltype(std::invoke(part.get, _aircraft))> value{};
        if (!read(json, value)) {
            return false;
        }
        std::invoke(part.set, _aircraft, value);
        return true;
    }

    const Json& _form;
    TrackedAircraft& _aircraft;
    bool _succeeded = true;
};

/// Six hexadecimal digits that are not all 0; otherwise 0.
u32 addressOf(const Json& form) {
    const auto found = form.find("address");
    if (found == form.end() || !found->is_string()) {
        return 0;
    }
    const auto& digits = found->get_ref<const std::string&>();
    u32 address = 0;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), address, 16);
    const bool isWhole = digits.size() == addressDigits && end.ptr == digits.data() + addressDigits;
    return isWhole ? address : 0;
}

} // namespace

std::string reportMessage(const TrackedAircraft& aircraft) {
    Json form = {{"schema", jsonSchema}, {"address", hex24(aircraft.icaoAddress())}};
    Writing writing(aircraft, form);
    carry(writing);
    return form.dump();
}

std::optional<TrackedAircraft> reportFromMessage(std::string_view message) {
    if (message.size() > longestMessage) {
        return std::nullopt;
    }
    const Json form = Json::parse(message, nullptr, false);
    if (!form.is_object() || form.value("schema", Json()) != jsonSchema) {
        return std::nullopt;
    }
    TrackedAircraft aircraft;
    aircraft.setIcaoAddress(addressOf(form));
    Reading reading(form, aircraft);
    carry(reading);
    const bool isSound = reading.succeeded() && aircraft.icaoAddressValid() &&
                         aircraft.notes.identityTypeCode <= lastIdentityTypeCode &&
                         aircraft.emitterCategory() <= lastCategory;
    return isSound ? std::optional(std::move(aircraft)) : std::nullopt;
}

} // namespace tolvarin::ondrel::client
