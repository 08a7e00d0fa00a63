/// @file
/// Identity and reporting settings of a service.
#pragma once

#include <ondrel/export.h>
#include <ondrel/types.h>

#include <cstdint>

namespace tolvarin::ondrel {

/// Holds the values for its client; nothing in the library reads or writes them, and no setter
/// checks them.
class ONDREL_EXPORT ADSBServiceStatus {
public:
    enum ReportMode : i32 {
        Periodic = 0, ///< every report period
        OnChange = 1, ///< when a target was updated
    };

    ADSBServiceStatus();

    /// System area code.
    u8 sac() const;
    void setSac(const u8& sac);

    /// System identification code.
    u8 sic() const;
    void setSic(const u8& sic);

    /// Service identification; 1 at the start.
    u8 serviceId() const;
    void setServiceId(const u8& serviceId);

    ReportMode reportMode() const;
    void setReportMode(const ReportMode& mode);

    /// Milliseconds; 1000 at the start.
    std::uint16_t reportPeriod() const;
    void setReportPeriod(const std::uint16_t& period);

private:
    u8 _sac = 0;
    u8 _sic = 0;
    u8 _serviceId = 1;
    ReportMode _reportMode = Periodic;
    std::uint16_t _reportPeriod = 1000;
};

} // namespace tolvarin::ondrel
