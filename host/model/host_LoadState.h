#pragma once

#include "host_LoadKind.h"
#include "host_StoredFields.h"
#include "mdl_PropagatingAttribute.h"

#include <vector>

/// The attributes of a load in one step: what they are there, or what the step makes of them.
struct host_LoadState {
    std::vector<mdl_PropAttr<double>> components;  ///< in the order of the kind
    mdl_PropAttr<cow_String> amplitude;            ///< name of a function of time; free text

    host_LoadState() = default;
    /// Nothing is set.
    explicit host_LoadState(host_LoadKind kind)
        : components(host_RowOf(kind).Components().size()) {}

    /// Moves on to the next step.
    void Propagate();
    /// Takes what \p change sets or frees.
    void Modify(const host_LoadState& change);
    /// Whether one of them is set or freed in this step.
    [[nodiscard]] bool IsModified() const;
    /// Whether a component has a value.
    [[nodiscard]] bool IsActive() const;

    bool operator==(const host_LoadState&) const = default;

    /// The components, and behind them the amplitude.
    struct Field : host_RecordField {
        static void Write(const cls_WriteVisitor& visitor, const char* name,
                          const host_LoadState& state);
        static void Read(const cls_ReadVisitor& visitor, const char* name, host_LoadState& state);
    };
};
