#include <ondrel/adsb_target_report.h>

namespace tolvarin::ondrel {

void ADSBTargetReport::setPosition(double latitude, double longitude) {
    const bool onEarth =
        latitude >= -90.0 && latitude <= 90.0 && longitude >= -180.0 && longitude <= 180.0;
    _position.set({latitude, longitude}, onEarth);
}

} // namespace tolvarin::ondrel
