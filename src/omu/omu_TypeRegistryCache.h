#pragma once

#include "CaeUtilsExport.h"
#include "cow_Btree.h"
#include "cow_String.h"
#include "mem_AllocationOperators.h"

/// Remembers what the class system answered about classes: whether one inherits another, and which
/// identity a stored name has. omi_Singleton<omu_TypeRegistryCache>::Instance(); one thread at a
/// time.
///
/// Answers that a further module may change are not kept, so that modules may start later; start-up
/// of the omu module clears the cache.
class CAE_API omu_TypeRegistryCache : public mem_AllocationOperators {
public:
    /// Whether the class \p typeId is \p baseTypeId or derived from it, by the type tables.
    [[nodiscard]] bool Inherits(unsigned typeId, unsigned baseTypeId);
    /// The identity of the class registered under \p storedName; 0 if there is none.
    [[nodiscard]] unsigned TypeIdOf(const cow_String& storedName);

    void Clear() noexcept;
    /// Number of answers kept.
    [[nodiscard]] int Count() const;

private:
    struct Question {
        unsigned typeId;
        unsigned baseTypeId;

        [[nodiscard]] int Compare(const Question& other) const noexcept;
    };

    cow_Btree<Question, bool> _inherits;
    cow_Btree<cow_String, unsigned> _typeIds;
};
