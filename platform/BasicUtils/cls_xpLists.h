#pragma once

#include "cls_SequenceFields.h"

/// \file
/// The class system's own lists: containers that are persistent objects by themselves, so that a
/// field can hold a list as it holds any other object.

/// What the class system knows of the list class over Container; none but the four below exist.
template <class Container>
inline constexpr cls_ClassInfo cls_xpClass{};
// clang-format off
template <> inline constexpr cls_ClassInfo cls_xpClass<cow_List<int>>{"cls_xpListInt", 0x230001, 1, 1};
template <> inline constexpr cls_ClassInfo cls_xpClass<cow_1DArray<int>>{"cls_xp1DArrayInt", 0x230002, 1, 1};
template <> inline constexpr cls_ClassInfo cls_xpClass<cow_List<cow_String>>{"cls_xpListString", 0x230003, 1, 1};
template <> inline constexpr cls_ClassInfo cls_xpClass<cow_1DArrayList<float>>{"cls_xp1DArrayListFloat", 0x230004, 1, 1};
// clang-format on

/// A container that can be stored as an object: class identity, writing and reading are added to
/// it, nothing else changes.
///
/// Copies share and detach as those of the container do, and stay in one thread with it. A value
/// without virtual functions and without a persistent identity of its own.
template <class Container>
class BASIC_API cls_xpList : public Container, public mem_AllocationOperatorsTiny {
public:
    static constexpr cls_ClassInfo kClass = cls_xpClass<Container>;
    static_assert(kClass.typeId != 0, "There is no persistent list over this container.");
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    cls_xpList() noexcept = default;
    using Container::Container;
    /// The list that shares the elements of \p values.
    cls_xpList(const Container& values) : Container(values) {}
    explicit cls_xpList(const cls_ReadVisitor& visitor);

    [[nodiscard]] unsigned DynTypeId() const noexcept { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const;
    /// Does nothing: a list is stored without an identity of its own.
    void NewUid() noexcept {}
    static void InitializeMetadata(cls_ClassRegistrar& registrar);

    /// An equal list that shares nothing with this one.
    [[nodiscard]] cls_xpList DeepCopy() const { return Container::DeepCopy(); }

private:
    friend struct cls_Access;
    /// The one field: the container that this object is.
    struct Elements {
        using Traits = cls_FieldTraits<Container>;
        const char* name = "values";
    };
    static constexpr auto Fields() { return std::tuple(Elements{}); }
};

using cls_xpListInt = cls_xpList<cow_List<int>>;
using cls_xp1DArrayInt = cls_xpList<cow_1DArray<int>>;
using cls_xpListString = cls_xpList<cow_List<cow_String>>;
using cls_xp1DArrayListFloat = cls_xpList<cow_1DArrayList<float>>;

extern template class BASIC_API cls_xpList<cow_List<int>>;
extern template class BASIC_API cls_xpList<cow_1DArray<int>>;
extern template class BASIC_API cls_xpList<cow_List<cow_String>>;
extern template class BASIC_API cls_xpList<cow_1DArrayList<float>>;

/// Lists are stored as objects, and their fields say that they are lists.
template <class Container>
struct cls_FieldTraits<cls_xpList<Container>> {
    static constexpr cls_AttributeType kType = cls_AttributeType::Object;
    static constexpr unsigned kClassId = cls_xpList<Container>::TypeId();
    static constexpr cls_CollectionType kCollection = cls_CollectionType::List;

    static void Write(const cls_WriteVisitor& visitor, const char* name,
                      const cls_xpList<Container>& values) {
        visitor.WriteObject(name, cls_ObjectRef::Of(&values));
    }
    /// A stored null reads as an empty list.
    static void Read(const cls_ReadVisitor& visitor, const char* name,
                     cls_xpList<Container>& values) {
        const std::unique_ptr<cls_xpList<Container>> read(
            static_cast<cls_xpList<Container>*>(visitor.ReadObject(name, kClassId)));
        values = read == nullptr ? cls_xpList<Container>() : *read;
    }
};
