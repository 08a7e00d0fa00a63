/// @file
/// How a datum of a target takes a received value. No rule looks at the age of what it overwrites:
/// a message with an older stamp moves the times back.
#pragma once

#include <ondrel/adsb_datum.h>
#include <ondrel/types.h>

namespace tolvarin::ondrel {

/// The plain rule: stores the value and when it was received.
template <class Value>
void update(ADSBDatum<Value>& datum, const Value& value, u64 time) {
    datum.value = value;
    datum.lastUpdate = time;
}

/// Whether the tracked rule counts the value as a change. The first value always is a change, also
/// if it equals the default. A datum whose last change was reset to 0 counts as new.
template <class Value>
bool wouldChange(const ADSBTrackedDatum<Value>& datum, const Value& value) {
    return value != datum.value || datum.lastChange == 0;
}

/// The tracked rule: as the plain rule, and keeps when the value changed.
template <class Value>
void track(ADSBTrackedDatum<Value>& datum, const Value& value, u64 time) {
    if (wouldChange(datum, value)) {
        datum.value = value;
        datum.lastChange = time;
    }
    datum.lastUpdate = time;
}

} // namespace tolvarin::ondrel
