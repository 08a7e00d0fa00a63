#include "apps/decoding/message_values.h"

namespace tolvarin::ondrel::client {

u64 readBits(const std::string& bytes, unsigned position, unsigned count) {
    u64 value = 0;
    for (unsigned bit = position; bit < position + count; ++bit) {
        const unsigned byte = static_cast<u8>(bytes[bit / 8]);
        value = value << 1U | (byte >> (7 - bit % 8) & 1U);
    }
    return value;
}

/// Statuses 4 and 5 are sent in the air and on the ground.
std::optional<FlightStatusValues> valuesOf(ModeSMessageFieldFS::FlightStatus status) {
    using Field = ModeSMessageFieldFS;
    if (status > Field::Spi) {
        return std::nullopt;
    }
    FlightStatusValues values = {std::nullopt,
                                 status >= Field::AirborneAlert && status <= Field::AlertSpi,
                                 status >= Field::AlertSpi};
    if (status < Field::AlertSpi) {
        values.onGround = status == Field::OnGround || status == Field::OnGroundAlert;
    }
    return values;
}

} // namespace tolvarin::ondrel::client
