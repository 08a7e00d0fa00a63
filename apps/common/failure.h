#pragma once

#include "apps/common/text.h"

#include <exception>
#include <stdexcept>
#include <string>
#include <system_error>

/// The ways in which a run ends early.
namespace tolvarin::ondrel::client {

/// Ends the program with a message and status 1. The text says what could not be done, and why, in
/// one line: it may have the name of a file, which can have any bytes.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& text) : std::runtime_error(shownName(text)) {}

    /// "cannot open x: No such file or directory"; `error` is an errno value.
    Failure(const std::string& text, int error)
        : Failure(text + ": " + std::generic_category().message(error)) {}
};

/// The input cannot be read any further. What was read before counts.
class InputFailure final : public Failure {
public:
    using Failure::Failure;
};

/// The reader of the output has closed its pipe. The program ends with status 0 and no message.
class OutputClosed : public std::exception {
public:
    const char* what() const noexcept override { return "the output is closed"; }
};

} // namespace tolvarin::ondrel::client
