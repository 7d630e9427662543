#pragma once

#include "CaeUtilsExport.h"
#include "cls_ClassMetadata.h"
#include "typ_ArchCompEntry.h"

#include <span>
#include <vector>

/// Compares what modules told the class system of their classes with their type tables: two
/// descriptions of the same classes that must not drift apart. For tests and diagnosis.
///
/// The differences that are meant are in one table beside the code, each with its reason.
class CAE_API uti_RegistrationCheck {
public:
    /// A module's type table under its number.
    struct Module {
        unsigned short number;
        typ_ArchCompEntry types;
    };

    /// One sentence per fault, of \p classes against the tables of the modules that they belong
    /// to, and of \p modules' tables against the classes; empty when they agree.
    [[nodiscard]] static std::vector<cow_String> Faults(
        std::span<const cls_ClassMetadata* const> classes, std::span<const Module> modules);

    /// The same for the three modules of this library as they are registered now.
    [[nodiscard]] static std::vector<cow_String> Faults();
};
