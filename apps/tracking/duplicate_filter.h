#pragma once

#include <ondrel/types.h>

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace tolvarin::ondrel::client {

/// Recognises a reply that several sources heard: the same bytes from different sources within half
/// a second. What one source hears twice was sent twice. Time and memory are bounded: the last 16
/// transmissions of the same bytes count, and at least half a million different ones.
class DuplicateFilter {
public:
    static constexpr u64 window = 500; ///< ms

    /// Whether another source has had this reply; if so, this source has had it too from now on.
    bool heardElsewhere(const std::string& bytes, unsigned source, u64 timeMs);

    /// Keeps a reply that is no duplicate.
    void keep(const std::string& bytes, unsigned source, u64 timeMs);

private:
    /// One transmission and the sources that have had it.
    struct Heard {
        u64 timeMs;
        u64 sources; ///< a bit for each of 64
    };
    using Transmissions = std::unordered_map<std::string, std::vector<Heard>>;

    static Heard* oldestWithout(Transmissions& transmissions, const std::string& bytes,
                                unsigned source, u64 timeMs);

    Transmissions _new;
    Transmissions _old; ///< of the window before
    u64 _since = 0;     ///< when _new began
};

} // namespace tolvarin::ondrel::client
