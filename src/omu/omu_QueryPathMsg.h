#pragma once

#include "cls_SequenceFields.h"
#include "cow_List.h"
#include "omu_HolderField.h"

/// A persistent message about one value of the application's object tree: the path of the object
/// or attribute asked for, and the value found there or, as a delta, the change to it.
///
/// Copies share path and value; a message and its copies stay in one thread.
class CAE_API omu_QueryPathMsg : public mem_AllocationOperators {
public:
    static constexpr cls_ClassInfo kClass{"omu_QueryPathMsg", 0x13001C, 1, 800};
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    /// No path, no value.
    omu_QueryPathMsg() = default;
    /// \param value  may be null: nothing is known of the value.
    omu_QueryPathMsg(cow_List<cow_String> path, omu_PrimHolder value, bool valueIsDelta);
    explicit omu_QueryPathMsg(const cls_ReadVisitor& visitor);
    omu_QueryPathMsg(const omu_QueryPathMsg&) = default;
    omu_QueryPathMsg& operator=(const omu_QueryPathMsg&) = default;
    virtual ~omu_QueryPathMsg();

    [[nodiscard]] virtual unsigned DynTypeId() const { return TypeId(); }
    virtual void DBWrite(const cls_WriteVisitor& visitor) const;
    virtual void NewUid() noexcept { _uid = cls_Uid::AllocateUid(); }
    [[nodiscard]] const cls_Uid& Uid() const noexcept { return _uid; }
    static void InitializeMetadata(cls_ClassRegistrar& registrar);

    /// The components from the root of the tree down.
    [[nodiscard]] const cow_List<cow_String>& Path() const noexcept { return _path; }
    /// The value, or null.
    [[nodiscard]] const omu_Primitive* Value() const {
        return _value.IsNull() ? nullptr : &_value.ConstGet();
    }
    [[nodiscard]] bool ValueIsDelta() const noexcept { return _valueIsDelta; }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple(cls_Field("path", &omu_QueryPathMsg::_path),
                          cls_Field("value", &omu_QueryPathMsg::_value),
                          cls_Field("valueIsDelta", &omu_QueryPathMsg::_valueIsDelta));
    }

    cow_List<cow_String> _path;
    omu_PrimHolder _value;
    bool _valueIsDelta = false;
    cls_Uid _uid;
};
