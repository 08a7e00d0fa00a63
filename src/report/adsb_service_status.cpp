// A small record of a surveillance service: the codes of its system (SAC and SIC), and how and how
// often it reports. Nothing in the library reads it.

#include <ondrel/adsb_service_status.h>

namespace tolvarin::ondrel {

ADSBServiceStatus::ADSBServiceStatus() = default;

u8 ADSBServiceStatus::sac() const {
    return _sac;
}

void ADSBServiceStatus::setSac(const u8& sac) {
    _sac = sac;
}

u8 ADSBServiceStatus::sic() const {
    return _sic;
}

void ADSBServiceStatus::setSic(const u8& sic) {
    _sic = sic;
}

u8 ADSBServiceStatus::serviceId() const {
    return _serviceId;
}

void ADSBServiceStatus::setServiceId(const u8& serviceId) {
    _serviceId = serviceId;
}

ADSBServiceStatus::ReportMode ADSBServiceStatus::reportMode() const {
    return _reportMode;
}

void ADSBServiceStatus::setReportMode(const ReportMode& mode) {
    _reportMode = mode;
}

std::uint16_t ADSBServiceStatus::reportPeriod() const {
    return _reportPeriod;
}

void ADSBServiceStatus::setReportPeriod(const std::uint16_t& period) {
    _reportPeriod = period;
}

} // namespace tolvarin::ondrel
