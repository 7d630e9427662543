#include "host_Load.h"

#include "host_Model.h"
#include "omu_ErrorExceptions.h"

#include <algorithm>
#include <cmath>

template class host_MemberOf<host_Load, host_LoadContent>;

namespace {

constexpr const char* kSource = "host/model/host_Load";
constexpr const char* kAmplitude = "amplitude";

[[noreturn]] void Refuse(const std::string& message, int line) {
    omu_ValueErrorException(atr_String(message)).Throw(kSource, line);
}

std::string Quoted(const cow_String& name) { return "'" + name.Std() + "'"; }

/// Whether the attribute is as a change is stored: set, or without a value.
template <class T>
bool IsChange(const mdl_PropAttr<T>& attribute, bool isFirst) {
    return attribute == SET ||
           ((attribute == UNSET || (attribute == FREED && !isFirst)) && attribute == T());
}

}  // namespace

// --- As it is made, and as it is read ----------------------------------------------------------

host_Load::host_Load(cow_String name, host_LoadContent content)
    : host_MemberOf(std::move(name), std::move(content)) {
    Check();
}

host_Load::host_Load(const cls_ReadVisitor& visitor) : host_MemberOf(visitor) { Check(); }

void host_Load::Check() const {
    const host_LoadContent& content = Get();
    const host_LoadRegion acts = KindRow().region;
    if (content.region.IsEmpty()
            ? acts == host_LoadRegion::NodeSet || acts == host_LoadRegion::Group
            : acts == host_LoadRegion::Part) {
        Refuse(Called() + " acts on no such region", __LINE__);
    }
    if (!content.changes.contains(content.createdIn)) {
        Refuse(Called() + " is not made in the step that creates it", __LINE__);
    }
    if (content.deactivatedIn == content.createdIn) {
        Refuse(Called() + " is deactivated in the step that creates it", __LINE__);
    }
    for (const auto& [step, change] : content.changes) {
        CheckChange(step, change);
    }
}

void host_Load::CheckChange(const cow_String& step, const host_LoadState& change) const {
    const bool isFirst = step == Get().createdIn;
    const auto isRight = [isFirst](const auto& attribute) { return IsChange(attribute, isFirst); };
    const auto& components = change.components;
    if (components.size() != KindRow().Components().size() || !isRight(change.amplitude) ||
        !std::all_of(components.begin(), components.end(), isRight)) {
        Refuse(Called() + " is changed in step " + Quoted(step) + " as no load can be", __LINE__);
    }
    for (std::size_t i = 0; i < components.size(); ++i) {
        if (!std::isfinite(components[i].ConstGet())) {
            Refuse(std::string(KindRow().names[i]) + " of " + Called() + " is not finite",
                   __LINE__);
        }
    }
}

void host_Load::CheckReferences(const mdl_Repository& parts, const mdl_Repository& steps) const {
    const host_LoadContent& content = Get();
    if (!parts.Has(content.part)) {
        Refuse(Called() + " acts on part " + Quoted(content.part) + ", which is not there",
               __LINE__);
    }
    const auto check = [&](const cow_String& step, int least) {
        if (!steps.Has(step)) {
            Refuse(Called() + " names step " + Quoted(step) + ", which is not there", __LINE__);
        }
        if (steps.IndexOf(step) < least) {
            Refuse(Called() + " is changed in step " + Quoted(step) + ", before step " +
                       Quoted(content.createdIn) + " creates it",
                   __LINE__);
        }
    };
    check(content.createdIn, 0);
    const int created = steps.IndexOf(content.createdIn);
    for (const auto& entry : content.changes) {
        check(entry.first, created);
    }
    if (!content.deactivatedIn.IsEmpty()) {
        check(content.deactivatedIn, created);
    }
}

std::string host_Load::RegionText() const {
    std::string part = "part " + Quoted(Get().part);
    if (Get().region.IsEmpty()) {
        return part;
    }
    const bool isGroup = KindRow().region == host_LoadRegion::Group;
    return (isGroup ? "group " : "node set ") + Quoted(Get().region) + " of " + part;
}

// --- In the steps ------------------------------------------------------------------------------

std::vector<host_LoadInStep> host_Load::History() const {
    const host_LoadContent& content = Get();
    std::vector<host_LoadInStep> history;
    host_LoadInStep now{NOT_YET_ACTIVE, host_LoadState(content.kind)};
    for (const host_Step* step : host_Model::Instance().All<host_Step>()) {
        const cow_String& name = step->Name();
        const bool isActive = mdl_activePropagationStatus(now.status);
        if (name == content.createdIn) {
            now.status = CREATED;
        } else if (mdl_deactivatedPropagationStatus(now.status)) {
            now.status = NO_LONGER_ACTIVE;
        } else if (isActive && name == content.deactivatedIn) {
            now = {DEACTIVATED, host_LoadState(content.kind)};
        } else if (isActive) {
            now.status = PROPAGATED;
        }
        if (mdl_activePropagationStatus(now.status)) {
            now.state.Propagate();
            if (const auto found = content.changes.find(name); found != content.changes.end()) {
                now.state.Modify(found->second);
            }
            if (now.status == PROPAGATED && now.state.IsModified()) {
                now.status = MODIFIED;
            }
        }
        history.push_back(now);
    }
    return history;
}

host_LoadInStep host_Load::In(const host_Step& step) const {
    return History()[static_cast<std::size_t>(step.Index())];
}

void host_Load::CheckActs(const host_Step& step) const {
    const mdl_PropagationStatusEnm status = In(step).status;
    const std::string in = " in step " + Quoted(step.Name());
    if (mdl_deactivatedPropagationStatus(status)) {
        Refuse(Called() + " does not act" + in + ": it is deactivated from step " +
                   Quoted(Get().deactivatedIn) + " on",
               __LINE__);
    }
    if (!mdl_activePropagationStatus(status)) {
        Refuse(
            Called() + " does not act" + in + ": step " + Quoted(Get().createdIn) + " creates it",
            __LINE__);
    }
}

host_LoadState host_Load::Stored(const host_Step& step) const {
    const auto found = Get().changes.find(step.Name());
    return found != Get().changes.end() ? found->second : host_LoadState(Get().kind);
}

void host_Load::Put(const host_Step& step, host_LoadState change) {
    CheckChange(step.Name(), change);
    if (change != Stored(step)) {
        Edit().changes[step.Name()] = std::move(change);
    }
}

void host_Load::Change(const host_Step& step, const host_LoadState& change) {
    CheckActs(step);
    host_LoadState changed = Stored(step);
    changed.Modify(change);
    Put(step, std::move(changed));
}

void host_Load::CheckAttribute(const cow_String& attribute) const {
    if (attribute != kAmplitude && KindRow().FindComponent(attribute.View()) < 0) {
        Refuse(Called() + " has no attribute " + Quoted(attribute) + "; it has " +
                   KindRow().ComponentNames() + " and " + kAmplitude,
               __LINE__);
    }
}

void host_Load::SetStatus(const host_Step& step, const cow_String& attribute,
                          const omu_PrimEnum<mdl_PropAttributeStateEnm, 1>& status) {
    CheckAttribute(attribute);
    CheckActs(step);
    const bool isFirst = step.Name() == Get().createdIn;
    host_LoadState changed = Stored(step);
    if (attribute == kAmplitude) {
        changed.amplitude.SetStatus(attribute, status, isFirst);
    } else {
        changed.components[static_cast<std::size_t>(KindRow().FindComponent(attribute.View()))]
            .SetStatus(attribute, status, isFirst);
    }
    Put(step, std::move(changed));
}

void host_Load::Deactivate(const host_Step& step) {
    CheckActs(step);
    if (step.Name() == Get().createdIn) {
        Refuse(Called() + " cannot be deactivated in step " + Quoted(step.Name()) +
                   ", which creates it; deleteLoad takes it out of the model",
               __LINE__);
    }
    Edit().deactivatedIn = step.Name();
}

void host_Load::Activate(const host_Step& step) {
    const cow_String& deactivatedIn = Get().deactivatedIn;
    if (step.Name() != deactivatedIn) {
        Refuse(Called() + " is not deactivated in step " + Quoted(step.Name()) +
                   (deactivatedIn.IsEmpty() ? std::string()
                                            : "; step " + Quoted(deactivatedIn) + " does it"),
               __LINE__);
    }
    Edit().deactivatedIn = cow_String();
}

// --- Names -------------------------------------------------------------------------------------

void host_Load::RenamePart(const cow_String& from, const cow_String& to) {
    if (Get().part == from) {
        Edit().part = to;
    }
}

void host_Load::RenameStep(const cow_String& from, const cow_String& to) {
    const host_LoadContent& content = Get();
    if (content.createdIn == from) {
        Edit().createdIn = to;
    }
    if (content.deactivatedIn == from) {
        Edit().deactivatedIn = to;
    }
    if (content.changes.contains(from)) {
        auto& changes = Edit().changes;
        auto entry = changes.extract(from);
        entry.key() = to;
        changes.insert(std::move(entry));
    }
}

void host_Load::ForgetStep(const cow_String& step) {
    if (Get().deactivatedIn == step) {
        Edit().deactivatedIn = cow_String();
    }
    if (Get().changes.contains(step)) {
        Edit().changes.erase(step);
    }
}

// --- What scripts see --------------------------------------------------------------------------

cow_List<cow_String> host_Load::Components() const {
    cow_List<cow_String> names;
    for (const char* const name : KindRow().Components()) {
        names.Append(name);
    }
    return names;
}

const omu_InterfaceType& host_Load::StaticType() {
    static const omu_InterfaceType type =
        omu_InterfaceType("Load", &host_Member::StaticType())
            .Help(
                "A load or a support. Commands take it, or its name; what it does in a step is\n"
                "asked for with loadState and changed with setLoad.")
            .Attribute("kind", &host_Load::Kind)
            .Help("FORCE, PRESSURE, SUPPORT, GRAVITY or TEMPERATURE")
            .Attribute("part", &host_Load::Part)
            .Help("name of the part it acts on")
            .Attribute("region", &host_Load::Region)
            .Help("name of the part's node set or group it acts on; empty: all of the part")
            .Attribute("createdIn", &host_Load::CreatedIn)
            .Help("name of the step from which on it acts")
            .Attribute("deactivatedIn", &host_Load::DeactivatedIn)
            .Help("name of the step from which on it no longer acts; empty: none")
            .Attribute("components", &host_Load::Components)
            .Help("names of its components");
    return type;
}
