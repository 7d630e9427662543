#pragma once

#include "nex_Exception.h"

#include <string>

/// What \p action raises: the message of an exception of class Error, with "source path:line: "
/// before it when \p withSource; for anything else a text that says so.
template <class Error, class Action>
std::string test_Raised(Action action, bool withSource = true) {
    try {
        action();
    } catch (const nex_Exception& error) {
        const std::string message(error.AsString().View());
        if (dynamic_cast<const Error*>(&error) == nullptr) {
            return "another class: " + message;
        }
        return withSource ? error.SourcePath() + (":" + std::to_string(error.SourceLine())) + ": " +
                                message
                          : message;
    }
    return "nothing was raised";
}

/// The message alone.
template <class Error, class Action>
std::string test_Message(Action action) {
    return test_Raised<Error>(action, false);
}
