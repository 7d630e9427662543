#pragma once

#include "host_Command.h"
#include "host_PyRef.h"
#include "nex_CommandException.h"

#include <string>
#include <string_view>
#include <vector>

/// Help that goes into the notes of exceptions (PEP 678), beside their messages.

/// Adds to the exception \p error what helps with \p cause, an error of a call of \p command with
/// that many positional values and those keywords (a tuple, or null): the nearest valid keyword or
/// constant, the missing or wrong parameters, the signature.
void host_AddCommandNotes(PyObject* error, const nex_CommandException& cause,
                          const host_Command& command, Py_ssize_t positional,
                          PyObject* keywordNames);
/// Adds "did you mean ..." when one of \p names is near \p word.
void host_AddNearestNote(PyObject* error, std::string_view word,
                         const std::vector<std::string>& names);
/// Adds a note to the interpreter's current exception.
void host_NoteCurrentError(std::string_view note);

/// "2 (size)": positional argument \p index, counted from 0, as notes call it.
[[nodiscard]] std::string host_ArgumentName(const host_Command& command, Py_ssize_t index);
/// What help() shows below the signature.
[[nodiscard]] std::string host_HelpText(const host_Command& command);
/// The name that differs from \p word in the fewest characters, upper and lower case alike; empty
/// when none is near.
[[nodiscard]] std::string_view host_Nearest(std::string_view word,
                                            const std::vector<std::string>& names);
