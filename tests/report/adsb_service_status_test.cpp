#include <ondrel/adsb_service_status.h>

#include <gtest/gtest.h>

#include <utility>

namespace tolvarin::ondrel {
namespace {

TEST(ADSBServiceStatus, GettersGiveWhatWasSet) {
    ADSBServiceStatus status;
    EXPECT_EQ(status.sac() + status.sic(), 0);
    EXPECT_EQ(status.serviceId(), 1);
    EXPECT_EQ(status.reportMode(), 0);
    EXPECT_EQ(status.reportPeriod(), 1000);
    static_assert(sizeof(ADSBServiceStatus::ReportMode) == sizeof(int));

    status.setSac(11);
    status.setSic(22);
    status.setServiceId(33);
    status.setReportMode(static_cast<ADSBServiceStatus::ReportMode>(-4));
    status.setReportPeriod(65535);
    ADSBServiceStatus copy;
    copy = status;
    ADSBServiceStatus moved;
    moved = std::move(copy);
    EXPECT_EQ(moved.sac(), 11);
    EXPECT_EQ(moved.sic(), 22);
    EXPECT_EQ(moved.serviceId(), 33);
    EXPECT_EQ(moved.reportMode(), -4);
    EXPECT_EQ(moved.reportPeriod(), 65535);
}

} // namespace
} // namespace tolvarin::ondrel
