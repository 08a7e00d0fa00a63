/// @file
/// Values that an application can use in constructors and destructors of its static objects,
/// whatever the order in which these and the sources of a static library are initialised.
#pragma once

#include <utility>

namespace tolvarin::ondrel {

/// A copy of the value that is never destroyed, to be made once, at first use:
///
///     static const std::string& name = lasting(std::string("Uplink"));
template <class Value>
const Value& lasting(Value value) {
    return *new const Value(std::move(value));
}

} // namespace tolvarin::ondrel
