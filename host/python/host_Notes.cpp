#include "host_Notes.h"

#include "g3d_ColorErrorException.h"
#include "g3d_ColorMap.h"
#include "host_PythonError.h"
#include "omi_Singleton.h"
#include "omu_ErrorExceptions.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace {

/// Number of characters to insert, remove, replace or swap with the next to turn one word into the
/// other. Source: Damerau, CACM 7 (3), 1964, in the form without edits inside a swapped pair.
std::size_t Distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before;
    std::vector<std::size_t> above(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(above.begin(), above.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + change});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before[j - 2] + 1);
            }
        }
        before = std::exchange(above, row);
    }
    return above[b.size()];
}

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

std::vector<std::string> Names(const host_Command& command) {
    std::vector<std::string> names;
    for (const host_Parameter& parameter : command.parameters) {
        names.push_back(parameter.name);
    }
    return names;
}

const host_Parameter* Find(const host_Command& command, std::string_view name) {
    const auto found =
        std::find_if(command.parameters.begin(), command.parameters.end(),
                     [name](const host_Parameter& parameter) { return parameter.name == name; });
    return found != command.parameters.end() ? &*found : nullptr;
}

const host_Parameter* At(const host_Command& command, int argument) {
    return argument >= 1 && static_cast<std::size_t>(argument) <= command.parameters.size()
               ? &command.parameters[static_cast<std::size_t>(argument) - 1]
               : nullptr;
}

/// The parameter that a nesting text ("points[0]", "arg1(points)[2]", "arg1[2]") lies in.
const host_Parameter* AtPlace(const host_Command& command, std::string_view place) {
    for (const host_Parameter& parameter : command.parameters) {
        if (place.find("(" + parameter.name + ")") != std::string_view::npos) {
            return &parameter;
        }
    }
    if (place.starts_with("arg") && place.size() > 3 && std::isdigit(place[3]) != 0) {
        return At(command, std::stoi(std::string(place.substr(3))));
    }
    return Find(command, place.substr(0, place.find('[')));
}

std::string Describe(const host_Parameter& parameter) {
    std::string text = parameter.name + ": " + parameter.type;
    if (!parameter.help.empty()) {
        text += ". " + parameter.help;
    }
    return text;
}

/// The parameter an error is about, or null; \p found receives what the error found, or nothing.
const host_Parameter* ParameterOf(const nex_CommandException& cause, const host_Command& command,
                                  std::string_view& found) {
    if (const auto* type = dynamic_cast<const omu_ArgTypeErrorException*>(&cause)) {
        if (!type->NestingStr().IsEmpty()) {
            return AtPlace(command, type->NestingStr().View());
        }
        found = type->Found().View();
        return At(command, type->ArgNum());
    }
    if (const auto* type = dynamic_cast<const omu_KeywordTypeErrorException*>(&cause)) {
        if (!type->NestingStr().IsEmpty()) {
            return AtPlace(command, type->NestingStr().View());
        }
        found = type->Found().View();
        return Find(command, type->Keyword().View());
    }
    if (const auto* range = dynamic_cast<const omu_RangeErrorException*>(&cause)) {
        return Find(command, range->Keyword().View());
    }
    return nullptr;
}

void NoteParameter(PyObject* error, const host_Parameter& parameter, std::string_view found) {
    if (!parameter.constants.empty()) {
        if (found == "string") {
            host_AddNote(error, "a constant is written without quotes");
        } else if (!found.empty()) {
            host_AddNearestNote(error, found, parameter.constants);
        }
    }
    host_AddNote(error, Describe(parameter));
}

/// Required parameters that neither a position nor a keyword of the call fills.
void NoteMissing(PyObject* error, const host_Command& command, Py_ssize_t positional,
                 PyObject* keywordNames) {
    for (std::size_t i = static_cast<std::size_t>(positional); i < command.parameters.size(); ++i) {
        const host_Parameter& parameter = command.parameters[i];
        const host_PyRef name = host_PyText(parameter.name);
        if (parameter.IsRequired() &&
            (keywordNames == nullptr ||
             host_Checked(PySequence_Contains(keywordNames, name.Get())) == 0)) {
            host_AddNote(error, "missing " + Describe(parameter));
        }
    }
}

}  // namespace

void host_AddNearestNote(PyObject* error, std::string_view word,
                         const std::vector<std::string>& names) {
    if (const std::string_view nearest = host_Nearest(word, names); !nearest.empty()) {
        host_AddNote(error, "did you mean " + std::string(nearest) + "?");
    }
}

void host_NoteCurrentError(std::string_view note) {
    PyObject* type = nullptr;
    PyObject* value = nullptr;
    PyObject* traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    try {
        host_AddNote(value, note);
    } catch (const host_PythonError&) {
        // The exception goes without its note.
    }
    PyErr_Restore(type, value, traceback);
}

void host_AddCommandNotes(PyObject* error, const nex_CommandException& cause,
                          const host_Command& command, Py_ssize_t positional,
                          PyObject* keywordNames) {
    std::string_view found;
    if (const auto* keyword = dynamic_cast<const omu_KeywordErrorException*>(&cause)) {
        const std::string_view name = keyword->Keyword().View();
        const std::vector<std::string> names = Names(command);
        const auto at = std::find(names.begin(), names.end(), name) - names.begin();
        if (at < positional) {
            host_AddNote(error, std::string(name) + " was already given as argument " +
                                    std::to_string(at + 1));
        } else {
            host_AddNearestNote(error, name, names);
        }
    } else if (const auto* number = dynamic_cast<const omu_ArgNumberErrorException*>(&cause)) {
        if (number->NestingStr().IsEmpty() && number->Expecting() >= number->Found()) {
            NoteMissing(error, command, positional, keywordNames);
        }
    } else if (const auto* color = dynamic_cast<const g3d_ColorErrorException*>(&cause)) {
        std::vector<std::string> names;
        for (const cow_String& name : omi_Singleton<g3d_ColorMap>::Instance().Keys()) {
            names.push_back(name.Std());
        }
        host_AddNearestNote(error, color->Value().View(), names);
    } else if (const auto* name = dynamic_cast<const omu_TvxNameErrorException*>(&cause);
               name != nullptr && name->Error() == omu_TvxNameErrorEnm::InvalidName) {
        host_AddNote(error,
                     "a name has 1 to 80 bytes, no digit at its start and no double quote, full "
                     "stop or backslash; legalName makes one");
    } else if (const host_Parameter* parameter = ParameterOf(cause, command, found)) {
        NoteParameter(error, *parameter, found);
    }
    host_AddNote(error, command.Signature());
}

std::string host_ArgumentName(const host_Command& command, Py_ssize_t index) {
    std::string name = std::to_string(index + 1);
    if (const host_Parameter* parameter = At(command, static_cast<int>(index) + 1)) {
        name += " (" + parameter->name + ")";
    }
    return name;
}

std::string host_HelpText(const host_Command& command) {
    std::string text = command.help;
    if (!command.parameters.empty()) {
        text += text.empty() ? "Parameters:" : "\n\nParameters:";
    }
    for (const host_Parameter& parameter : command.parameters) {
        text += "\n    " + Describe(parameter);
        if (!parameter.IsRequired()) {
            text += " (default " + parameter.defaultText + ")";
        }
    }
    return text;
}

std::string_view host_Nearest(std::string_view word, const std::vector<std::string>& names) {
    std::string_view nearest;
    std::size_t least = word.size() / 3 + 2;  // one beyond what still counts as near
    for (const std::string& name : names) {
        const std::size_t distance = Distance(Lower(word), Lower(name));
        if (distance < least && distance < name.size()) {
            least = distance;
            nearest = name;
        }
    }
    return nearest;
}
