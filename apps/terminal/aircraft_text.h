#pragma once

#include "apps/common/file.h"
#include "apps/display/aircraft_sink.h"
#include "apps/terminal/text_style.h"
#include "apps/terminal/text_table.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// Aircraft as text. All texts are whole lines with their ends; a dash stands for what is not
/// known.
namespace tolvarin::ondrel::client {

/// The columns of a table with a row for each aircraft, in the order given.
std::vector<TableColumn> aircraftTableColumns(const std::vector<TrackedAircraft>& aircraft,
                                              const Showing& showing);

/// A table with a line for each aircraft, in the order given, below its heads. Columns leave until
/// it fits into the width.
std::string aircraftTable(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
                          const TextStyle& style);

/// All that is known of one aircraft: a line for each datum with its value, whether it is valid,
/// its age, and when it was last updated and changed; then the messages counted.
std::vector<TextLine> aircraftReportLines(const TrackedAircraft& aircraft, const Showing& showing,
                                          std::size_t width);

/// The same as text.
std::string aircraftReport(const TrackedAircraft& aircraft, const Showing& showing,
                           const TextStyle& style);

/// Writes the table, or the report of one aircraft in its place.
class AircraftText final : public AircraftSink {
public:
    /// The output must outlive the sink. With `reportAddress`, the report of that aircraft is
    /// shown, and nothing while it is not tracked. With `repeated`, a line with the time comes
    /// first and a blank line last.
    AircraftText(Output& output, const TextStyle& style, std::optional<u32> reportAddress,
                 bool repeated)
        : _output(output), _style(style), _reportAddress(reportAddress), _repeated(repeated) {}

    void show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing) override;
    void showKilled(const TrackedAircraft& aircraft, const Showing& showing) override;

private:
    std::string form(const std::vector<TrackedAircraft>& aircraft, const Showing& showing) const;

    Output& _output;
    TextStyle _style;
    std::optional<u32> _reportAddress;
    bool _repeated;
};

} // namespace tolvarin::ondrel::client
