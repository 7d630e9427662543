#pragma once

#include "CaeUtilsExport.h"
#include "cow_String.h"

#include <compare>

/// A symbolic constant as a number: its place in the omu_SymbolicConstantTable. A small value; a
/// disagreement with the table is reported on standard error, and work goes on.
class CAE_API omu_SymbolicConstantData {
public:
    /// The type word of symbolic constants in reports.
    static constexpr const char* kTypeWord = "SymbolicConstantData";

    /// No value.
    omu_SymbolicConstantData() noexcept = default;
    /// Keeps \p id; one beyond the table is reported.
    explicit omu_SymbolicConstantData(unsigned int id);
    /// Enters or finds \p name and takes the number the table gives; another \p id is reported.
    omu_SymbolicConstantData(const cow_String& name, unsigned int id);

    [[nodiscard]] unsigned int getId() const noexcept { return _id; }
    /// The name; an empty one is reported.
    [[nodiscard]] cow_String getText() const;

    friend auto operator<=>(const omu_SymbolicConstantData&,
                            const omu_SymbolicConstantData&) noexcept = default;

private:
    unsigned int _id = 0;
};
