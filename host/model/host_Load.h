#pragma once

#include "host_EnumField.h"
#include "host_LoadState.h"
#include "host_Member.h"
#include "host_Step.h"
#include "mdl_PropagationStatusEnm.h"

#include <map>

/// A load as the steps make it. Only what a step changes is stored, by the step's name: a step that
/// is put in between, or taken out, changes nothing here.
struct host_LoadContent {
    host_LoadKind kind = host_LoadKind::Force;
    cow_String part;
    cow_String region;  ///< node set or group of the part; empty: all of it
    cow_String createdIn;
    cow_String deactivatedIn;                      ///< a later step; empty: none
    std::map<cow_String, host_LoadState> changes;  ///< by step; that of the creation is among them

    static constexpr auto Fields() {
        using C = host_LoadContent;
        return std::tuple(
            cls_Field<C, host_LoadKind, host_EnumField<host_LoadKind>>("kind", &C::kind),
            cls_Field("part", &C::part), cls_Field("region", &C::region),
            cls_Field("createdIn", &C::createdIn), cls_Field("deactivatedIn", &C::deactivatedIn),
            cls_Field<C, decltype(C::changes),
                      host_NamedField<host_LoadState, host_LoadState::Field>>("changes",
                                                                              &C::changes));
    }
};

/// A load in a step: its status, and its attributes; nothing is set where it does not act.
struct host_LoadInStep {
    mdl_PropagationStatusEnm status = NOT_YET_ACTIVE;
    host_LoadState state;
};

/// A load or a support of the model: what acts on a region of a part, from the step that creates it
/// on, as the steps behind that change it.
///
/// Operations that take a step raise omu_ValueErrorException, and change nothing, where the load
/// does not act in that step: before it is created, and once it is deactivated.
class host_Load final : public host_MemberOf<host_Load, host_LoadContent> {
public:
    static constexpr host_MemberKind kKind = host_MemberKind::Load;
    static constexpr cls_ClassInfo kClass{"host_Load", TypeIdOf(kKind), mdl_Extension::TypeId(), 1};

    /// Numbers that are not finite raise omu_ValueErrorException.
    host_Load(cow_String name, host_LoadContent content);
    /// Raises omu_ValueErrorException or the memento's error where what is stored is no load.
    explicit host_Load(const cls_ReadVisitor& visitor);

    static const omu_InterfaceType& StaticType();

    [[nodiscard]] const host_LoadKindRow& KindRow() const { return host_RowOf(Get().kind); }
    /// "node set 'tip' of part 'beam'".
    [[nodiscard]] std::string RegionText() const;

    /// The load in each step of the model, in order.
    [[nodiscard]] std::vector<host_LoadInStep> History() const;
    [[nodiscard]] host_LoadInStep In(const host_Step& step) const;

    /// Takes over, from a step on, what \p change sets or frees there.
    void Change(const host_Step& step, const host_LoadState& change);
    /// Gives an attribute, a component or "amplitude", a state, as mdl_PropAttr::SetStatus has it;
    /// the step that creates the load is the first one.
    void SetStatus(const host_Step& step, const cow_String& attribute,
                   const omu_PrimEnum<mdl_PropAttributeStateEnm, 1>& status);
    /// Switches the load off from a step behind its creation on; what steps from there on change
    /// is kept for Activate.
    void Deactivate(const host_Step& step);
    /// Takes the Deactivate of that step back.
    void Activate(const host_Step& step);

    /// Raises omu_ValueErrorException for a name that is neither a component nor "amplitude".
    void CheckAttribute(const cow_String& attribute) const;
    /// Raises omu_ValueErrorException unless the names that it refers to are of \p parts and
    /// \p steps, and in order.
    void CheckReferences(const mdl_Repository& parts, const mdl_Repository& steps) const;

    // For those who keep the names right: a change where one is concerned.
    void RenamePart(const cow_String& from, const cow_String& to);
    void RenameStep(const cow_String& from, const cow_String& to);
    void ForgetStep(const cow_String& step);

private:
    [[nodiscard]] std::string Called() const { return AsString(0).Std(); }
    void Check() const;
    void CheckChange(const cow_String& step, const host_LoadState& change) const;
    void CheckActs(const host_Step& step) const;
    void Put(const host_Step& step, host_LoadState change);
    [[nodiscard]] host_LoadState Stored(const host_Step& step) const;

    [[nodiscard]] omu_PrimEnumBase Kind() const {
        return omu_PrimEnum<host_LoadKind, 1>(Get().kind);
    }
    [[nodiscard]] cow_String Part() const { return Get().part; }
    [[nodiscard]] cow_String Region() const { return Get().region; }
    [[nodiscard]] cow_String CreatedIn() const { return Get().createdIn; }
    [[nodiscard]] cow_String DeactivatedIn() const { return Get().deactivatedIn; }
    [[nodiscard]] cow_List<cow_String> Components() const;
};

extern template class host_MemberOf<host_Load, host_LoadContent>;
