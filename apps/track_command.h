#pragma once

#include "apps/command.h"
#include "apps/recording_source.h"
#include "apps/track_run.h"

namespace tolvarin::ondrel::client {

/// `ondrel track`: the aircraft of a recording as a table or as JSON.
class TrackCommand final : public Command {
public:
    explicit TrackCommand(CLI::App& program);

    int run() override;

private:
    void addOutputOptions();
    void addTrackingOptions();

    RecordingOptions _recording;
    TrackOptions _options;
};

} // namespace tolvarin::ondrel::client
