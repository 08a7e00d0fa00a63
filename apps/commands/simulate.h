#pragma once

#include "apps/commands/command.h"

#include "apps/terminal/console.h"

#include "simulator/traffic.h"

#include <ondrel/types.h>

#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// `ondrel simulate`: a recording of invented traffic. The same options give the same bytes.
class SimulateCommand final : public Command {
public:
    explicit SimulateCommand(CLI::App& program);

    int run() override;

private:
    void addRecordingOptions();
    void addFleetOptions();
    void addReceptionOptions();
    void addReceiverOptions();

    int write();
    int serve();
    static void tellEnd(Console& console, const std::string& name, u64 replies);
    simulator::TrafficOptions options() const;
    std::string commandLine();

    simulator::TrafficOptions _traffic;     ///< without start time and damage
    simulator::Receiver _receiver{{}, 150}; ///< if there is one
    bool _hasReceiver = false;
    u64 _startSeconds = _traffic.startMs / 1000;
    double _damage = 0.1;
    std::string _form = "seconds";
    std::string _path = "-";
    std::optional<std::string> _serve; ///< an address
    double _pace = 1;
};

} // namespace tolvarin::ondrel::client
