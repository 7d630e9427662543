#pragma once

#include "cls_xpLists.h"
#include "mdl_PropAttributeStateEnm.h"

/// What the class system knows of the attribute with values of type T; the types below are all
/// there are.
template <class T>
inline constexpr cls_ClassInfo mdl_propAttrClass{};
// clang-format off
template <> inline constexpr cls_ClassInfo mdl_propAttrClass<cow_String>{"mdl_PropString", 0x0A000E, 1, 203};
template <> inline constexpr cls_ClassInfo mdl_propAttrClass<int>{"mdl_PropInt", 0x0A0013, 1, 203};
template <> inline constexpr cls_ClassInfo mdl_propAttrClass<double>{"mdl_PropDouble", 0x0A000F, 1, 203};
template <> inline constexpr cls_ClassInfo mdl_propAttrClass<bool>{"mdl_PropBool", 0x0A0010, 1, 203};
template <> inline constexpr cls_ClassInfo mdl_propAttrClass<cls_xpListInt>{"mdl_PropListInt", 0x0A0011, 1, 203};
template <> inline constexpr cls_ClassInfo mdl_propAttrClass<cls_xp1DArrayInt>{"mdl_Prop1DArrayInt", 0x0A0014, 1, 203};
template <> inline constexpr cls_ClassInfo mdl_propAttrClass<cls_xpListString>{"mdl_PropListString", 0x0A0015, 1, 203};
// The stored name is longer than the one in the type table; saved data fixes both.
template <> inline constexpr cls_ClassInfo mdl_propAttrClass<cls_xp1DArrayListFloat>{"mdl_PropList1DArrayListFloat", 0x0A0016, 1, 203};
// clang-format on

/// A type that propagating attributes hold.
template <class T>
concept mdl_PropValue = mdl_propAttrClass<T>
.typeId != 0;

/// One property of an object of the model in one analysis step: a value, and whether this step set
/// it, took it over from the step before, freed it, or does not have it.
///
/// Comparing with a value looks at the value alone, comparing with a state at the state alone.
/// Copying and assigning an attribute make it the other one, persistent identity included, so that
/// attributes keep theirs when a container moves them; Modify is what carries a change from one
/// attribute to another. Lists share and detach as they do by themselves; one thread at a time.
template <mdl_PropValue T>
class CAE_API mdl_PropAttr : public mem_AllocationOperatorsTiny {
public:
    static constexpr cls_ClassInfo kClass = mdl_propAttrClass<T>;
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    /// Zero and UNSET.
    mdl_PropAttr() : mdl_PropAttr(T()) {}
    /// Holds \p value and is UNSET: what is given at construction does not count as set.
    explicit mdl_PropAttr(const T& value) : _value(value), _uid(cls_Uid::AllocateUid()) {}
    mdl_PropAttr(const mdl_PropAttr&) = default;
    mdl_PropAttr& operator=(const mdl_PropAttr&) = default;
    /// Raises nex_TextException when the stored state is not one of the enumeration.
    explicit mdl_PropAttr(const cls_ReadVisitor& visitor);
    virtual ~mdl_PropAttr();

    [[nodiscard]] virtual unsigned DynTypeId() const { return TypeId(); }
    virtual void DBWrite(const cls_WriteVisitor& visitor) const;
    /// Gives the attribute a fresh persistent identity.
    virtual void NewUid() { _uid = cls_Uid::AllocateUid(); }
    static void InitializeMetadata(cls_ClassRegistrar& registrar);
    [[nodiscard]] const cls_Uid& GetUid() const noexcept { return _uid; }

    /// Takes the value, which may be its own, and is SET.
    mdl_PropAttr& operator=(const T& value) {
        _value = value;
        _state = SET;
        return *this;
    }
    /// Takes the state; UNSET and FREED zero the value, every other state keeps it.
    mdl_PropAttr& operator=(const mdl_PropAttributeStateEnm& state) {
        if (state == UNSET || state == FREED) {
            Zero();
        }
        _state = state;
        return *this;
    }
    /// Takes the state and keeps the value, whatever the state.
    void ForceState(mdl_PropAttributeStateEnm state) noexcept { _state = state; }
    /// Makes the value 0, false or empty; the state stays.
    void Zero() { _value = T(); }

    /// The value for writing. Asking for it makes the attribute SET, written to or not.
    [[nodiscard]] T& Get() noexcept {
        _state = SET;
        return _value;
    }
    [[nodiscard]] const T& ConstGet() const noexcept { return _value; }
    [[nodiscard]] mdl_PropAttributeStateEnm State() const noexcept { return _state; }

    /// Moves on to the next step: SET becomes UNCHANGED, FREED becomes UNSET; the value stays.
    void Propagate() noexcept {
        if (_state == SET) {
            _state = UNCHANGED;
        } else if (_state == FREED) {
            _state = UNSET;
        }
    }
    /// Takes state and value of \p other, as they are, if it was set or freed in its step; else
    /// nothing changes. The identity stays.
    void Modify(const mdl_PropAttr& other) {
        if (other.IsModified()) {
            _value = other._value;
            _state = other._state;
        }
    }
    /// Takes a status given by a script: UNCHANGED changes nothing, the others zero the value.
    /// FREED in the first step, UNSET in a later one and all other states raise nex_TextException,
    /// which names the attribute; nothing has changed then.
    void SetStatus(const cow_String& attributeName,
                   const omu_PrimEnum<mdl_PropAttributeStateEnm, 1>& status, bool isFirstStep);

    [[nodiscard]] bool IsModified() const noexcept { return _state == SET || _state == FREED; }
    [[nodiscard]] bool IsConditionModified() const noexcept { return _state == FREED; }
    [[nodiscard]] bool IsActive() const noexcept { return _state == SET || _state == UNCHANGED; }
    [[nodiscard]] bool IsFree() const noexcept { return _state == UNSET || _state == FREED; }

    bool operator==(const T& value) const { return _value == value; }
    bool operator==(mdl_PropAttributeStateEnm state) const noexcept { return _state == state; }
    /// Equal values in equal states; identities do not count.
    bool operator==(const mdl_PropAttr& other) const {
        return _value == other._value && _state == other._state;
    }

    /// An equal attribute, with the same identity, that shares nothing with this one.
    [[nodiscard]] mdl_PropAttr DeepCopy() const {
        mdl_PropAttr copy(*this);
        copy._value = cow_DeepCopyOf(_value);
        return copy;
    }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple(cls_Field("val", &mdl_PropAttr::_value),
                          cls_Field("state", &mdl_PropAttr::_state));
    }

    T _value;
    mdl_PropAttributeStateEnm _state = UNSET;
    cls_Uid _uid;
};

extern template class CAE_API mdl_PropAttr<cow_String>;
extern template class CAE_API mdl_PropAttr<int>;
extern template class CAE_API mdl_PropAttr<double>;
extern template class CAE_API mdl_PropAttr<bool>;
extern template class CAE_API mdl_PropAttr<cls_xpListInt>;
extern template class CAE_API mdl_PropAttr<cls_xp1DArrayInt>;
extern template class CAE_API mdl_PropAttr<cls_xpListString>;
extern template class CAE_API mdl_PropAttr<cls_xp1DArrayListFloat>;
