/// @file
/// Identity and reporting settings of a service.
#pragma once

#include <ondrel/export.h>
#include <ondrel/types.h>

#include <cstdint>

namespace tolvarin::ondrel {

/// Identity and reporting settings of a service, held for its client. Nothing in the library reads
/// or writes the values, and no setter checks them. Nothing throws.
class ONDREL_EXPORT ADSBServiceStatus {
public:
    /// When the service sends reports.
    enum ReportMode : i32 {
        Periodic = 0, ///< every report period
        OnChange = 1, ///< when a target was updated
    };

    /// A service with the default values.
    ADSBServiceStatus();

    /// System area code, 0 to 255; the default is 0.
    ///@{
    u8 sac() const;
    void setSac(const u8& sac);
    ///@}

    /// System identification code, 0 to 255; the default is 0.
    ///@{
    u8 sic() const;
    void setSic(const u8& sic);
    ///@}

    /// Service identification, 0 to 255; the default is 1.
    ///@{
    u8 serviceId() const;
    void setServiceId(const u8& serviceId);
    ///@}

    /// When reports are sent; the default is `Periodic`.
    ///@{
    ReportMode reportMode() const;
    void setReportMode(const ReportMode& mode);
    ///@}

    /// Milliseconds from one periodic report to the next, 0 to 65535; the default is 1000.
    ///@{
    std::uint16_t reportPeriod() const;
    void setReportPeriod(const std::uint16_t& period);
    ///@}

private:
    u8 _sac = 0;
    u8 _sic = 0;
    u8 _serviceId = 1;
    ReportMode _reportMode = Periodic;
    std::uint16_t _reportPeriod = 1000;
};

} // namespace tolvarin::ondrel
