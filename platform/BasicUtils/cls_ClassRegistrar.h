#pragma once

#include "cls_ClassMetadata.h"

#include <map>
#include <memory>

/// The classes known to the class system, by type identity and by stored name.
///
/// Reached through the cls_MetadataRegistrar, which calls the metadata functions that fill it.
class BASIC_API cls_ClassRegistrar {
public:
    using Construct = cls_ClassMetadata::Construct;

    /// Enters a class without an adapter. The result is owned here.
    cls_ClassMetadata& CreateClassMD(const cow_String& name, unsigned typeId, int version,
                                     Construct construct, unsigned baseTypeId);
    /// Enters \p metadata and takes it over; metadata already held for the identity is replaced.
    cls_ClassMetadata& AddClassMD(cls_ClassMetadata* metadata);

    /// Metadata of a class, or null.
    [[nodiscard]] const cls_ClassMetadata* Find(unsigned typeId) const;
    [[nodiscard]] const cls_ClassMetadata* Find(const cow_String& name) const;
    /// All classes, ascending by type identity.
    [[nodiscard]] std::vector<const cls_ClassMetadata*> All() const;

    /// Whether the class of identity \p typeId is the class \p baseTypeId or derived from it, by
    /// the bases of the type table. An identity that no table holds derives from nothing but
    /// itself.
    [[nodiscard]] static bool Inherits(unsigned typeId, unsigned baseTypeId);

private:
    std::map<unsigned, std::unique_ptr<cls_ClassMetadata>> _classes;
};
