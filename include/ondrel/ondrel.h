/// @file
/// The identity of the library.
#pragma once

#include <ondrel/export.h>

#include <string>

namespace tolvarin::ondrel {

/// Tells which library this is. Static operations only; any thread may call them at any time. Only
/// exhausted memory throws.
class ONDREL_EXPORT Ondrel {
public:
    /// Major, minor and patch number joined by points, such as "0.4.0".
    static std::string version();

    /// The date of the build in the compiler's form, such as "Jan 10 2021".
    static std::string build();

    /// One line that names the owners and the licence.
    static std::string about();

    /// The web address of the makers.
    static std::string contact();

private:
    explicit Ondrel() = default;
};

} // namespace tolvarin::ondrel
