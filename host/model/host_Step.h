#pragma once

#include "host_EnumField.h"
#include "host_Member.h"

/// What a step computes.
enum class host_Procedure : int { Static = 0, Modal = 1, Transient = 2, Heat = 3 };

template <>
struct omu_EnumTable<host_Procedure, 1> {
    static constexpr omu_EnumEntry<host_Procedure> kEntries[] = {
        {"STATIC", host_Procedure::Static},
        {"MODAL", host_Procedure::Modal},
        {"TRANSIENT", host_Procedure::Transient},
        {"HEAT", host_Procedure::Heat},
        {nullptr, host_Procedure::Static}};
};

struct host_StepContent {
    host_Procedure procedure = host_Procedure::Static;
    double period = 1;  ///< above 0, finite
    cow_String description;

    static constexpr auto Fields() {
        using C = host_StepContent;
        return std::tuple(cls_Field<C, host_Procedure, host_EnumField<host_Procedure>>(
                              "procedure", &C::procedure),
                          cls_Field("period", &C::period),
                          cls_Field("description", &C::description));
    }
};

/// A step of the analysis. Steps follow each other in the model's order; the first one is the
/// beginning of the analysis.
class host_Step final : public host_MemberOf<host_Step, host_StepContent> {
public:
    static constexpr host_MemberKind kKind = host_MemberKind::Step;
    static constexpr cls_ClassInfo kClass{"host_Step", TypeIdOf(kKind), mdl_Extension::TypeId(), 1};

    /// A period that is not above 0 raises omu_RangeErrorException, one that is not finite
    /// omu_ValueErrorException.
    host_Step(cow_String name, host_StepContent content);
    /// Raises a script error or the memento's error where what is stored is no step.
    explicit host_Step(const cls_ReadVisitor& visitor);

    static const omu_InterfaceType& StaticType();

    /// Place in the order, from 0.
    [[nodiscard]] int Index() const;

private:
    static void CheckPeriod(double period);

    [[nodiscard]] cow_String Beside(int offset) const;
    [[nodiscard]] cow_String Previous() const { return Beside(-1); }
    [[nodiscard]] cow_String Next() const { return Beside(1); }
    [[nodiscard]] omu_PrimEnumBase Procedure() const {
        return omu_PrimEnum<host_Procedure, 1>(Get().procedure);
    }
    [[nodiscard]] double Period() const { return Get().period; }
    void SetPeriod(double period);
    [[nodiscard]] cow_String Description() const { return Get().description; }
    void SetDescription(const cow_String& description) { Edit().description = description; }
};

extern template class host_MemberOf<host_Step, host_StepContent>;
