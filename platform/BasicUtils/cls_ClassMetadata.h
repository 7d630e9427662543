#pragma once

#include "cls_FieldHandle.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "mem_AllocationOperators.h"

#include <cstddef>
#include <vector>

template <class T>
class cow_Direct;
template <class T, class Policy>
class cow_COW;

/// Destroys and frees a copy-on-write holder; the holder's own type is erased to this one.
using cls_CowDeleter = void (*)(cow_COW<int, cow_Direct<int>>*);

/// What the class system knows of one persistent class.
///
/// Owned by the metadata registrar. The virtual operations stand in a fixed order, which the type
/// adapters rely on.
class BASIC_API cls_ClassMetadata : public mem_AllocationOperators {
public:
    using Construct = void* (*)(cls_ReadVisitor&);

    /// \param construct  builds an object from a reader; null for abstract classes and adapters.
    cls_ClassMetadata(cow_String name, unsigned typeId, int version, Construct construct,
                      unsigned baseTypeId);
    cls_ClassMetadata(const cls_ClassMetadata&) = delete;
    cls_ClassMetadata& operator=(const cls_ClassMetadata&) = delete;

    virtual ~cls_ClassMetadata();
    /// Writes \p object, which is of this class. Raises nex_TextException where there is no writer.
    virtual void DBWrite(const void* object, const cls_WriteVisitor& writer) const;
    /// Deletes an object of this class; null is ignored. Raises where the class has no destroyer.
    virtual void Destroy(void* object) const;
    /// Destroys and frees a copy-on-write holder of this class with the deleter of AddDtor.
    virtual void DeleteCow(cow_COW<int, cow_Direct<int>>* holder) const;
    /// A new object built from \p reader, owned by the caller. Raises nex_TextException for an
    /// abstract class.
    [[nodiscard]] virtual void* Ctor(const cls_ReadVisitor& reader) const;

    cls_ClassMetadata& AddDtor(cls_CowDeleter deleter) noexcept;
    cls_ClassMetadata& AddAttribute(const cls_FieldHandle& handle, cls_AttributeType type,
                                    unsigned classId, cls_CollectionType collection);

    /// The stored class name.
    [[nodiscard]] const cow_String& Name() const noexcept { return _name; }
    [[nodiscard]] unsigned TypeId() const noexcept { return _typeId; }
    [[nodiscard]] int Version() const noexcept { return _version; }
    [[nodiscard]] unsigned BaseTypeId() const noexcept { return _baseTypeId; }
    /// The persisted fields in the order they were added.
    [[nodiscard]] const std::vector<cls_Attribute>& Attributes() const noexcept {
        return _attributes;
    }
    /// Whether Ctor can build an object of this class.
    [[nodiscard]] bool IsConcrete() const noexcept { return _isConcrete; }
    /// sizeof the class; 0 where it is not known. Stores reckon with it before they build objects.
    [[nodiscard]] std::size_t ObjectSize() const noexcept { return _objectSize; }
    cls_ClassMetadata& SetObjectSize(std::size_t bytes) noexcept;
    [[nodiscard]] bool HasDtor() const noexcept { return _deleter != nullptr; }

protected:
    /// For adapters whose Ctor builds objects of \p objectSize bytes.
    void SetConcrete(std::size_t objectSize) noexcept;

private:
    cow_String _name;
    unsigned _typeId;
    int _version;
    Construct _construct;
    unsigned _baseTypeId;
    bool _isConcrete;
    std::size_t _objectSize = 0;
    cls_CowDeleter _deleter = nullptr;
    std::vector<cls_Attribute> _attributes;
};
