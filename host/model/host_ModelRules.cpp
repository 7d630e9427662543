#include "host_ModelRules.h"

#include "host_Load.h"
#include "host_Material.h"
#include "host_Part.h"
#include "omu_ErrorExceptions.h"

#include <algorithm>

namespace {

constexpr const char* kSource = "host/model/host_ModelRules";

host_Model& Model() { return host_Model::Instance(); }

// --- Parts name their materials ----------------------------------------------------------------

bool IsAssigned(const host_Part& part, const cow_String& material) {
    const auto& assigned = part.Get().materials;
    return std::any_of(assigned.begin(), assigned.end(),
                       [&](const auto& entry) { return entry[1] == material; });
}

void RenameMaterial(const cow_String& before, const cow_String& name) {
    for (host_Part* part : Model().All<host_Part>()) {
        if (IsAssigned(*part, before)) {
            for (auto& [group, material] : part->Edit().materials) {
                material = material == before ? name : material;
            }
        }
    }
}

/// Removes a member, unless others refer to it by \p how: those of \p all for which \p refers.
template <class T, class Other, class Refers>
void RemoveUnless(T& member, const char* how, const std::vector<Other*>& all,
                  const Refers& refers) {
    std::string names;
    for (const Other* other : all) {
        if (refers(*other)) {
            names += (names.empty() ? "'" : ", '") + other->Name().Std() + "'";
        }
    }
    if (!names.empty()) {
        omu_ValueErrorException(atr_String(member.AsString(0).Std() + how + names))
            .Throw(kSource, __LINE__);
    }
    Model().Remove(member);
}

// --- Loads name their part and their steps -----------------------------------------------------

void RemoveStep(host_Step& step) {
    for (host_Load* load : Model().All<host_Load>()) {
        if (load->Get().createdIn == step.Name()) {
            Model().Remove(*load);
        } else {
            load->ForgetStep(step.Name());
        }
    }
    Model().Remove(step);
}

}  // namespace

void host_RenameMember(host_Member& member, const cow_String& name) {
    const cow_String before = member.Name();
    Model().Rename(member, name);
    if (before == name) {
        return;
    }
    if (dynamic_cast<host_Material*>(&member) != nullptr) {
        RenameMaterial(before, name);
    }
    for (host_Load* load : Model().All<host_Load>()) {
        if (dynamic_cast<host_Part*>(&member) != nullptr) {
            load->RenamePart(before, name);
        } else if (dynamic_cast<host_Step*>(&member) != nullptr) {
            load->RenameStep(before, name);
        }
    }
}

void host_RemoveMember(host_Member& member) {
    if (auto* part = dynamic_cast<host_Part*>(&member)) {
        RemoveUnless(*part, " has the loads ", Model().All<host_Load>(),
                     [&](const host_Load& load) { return load.Get().part == part->Name(); });
    } else if (auto* material = dynamic_cast<host_Material*>(&member)) {
        RemoveUnless(*material, " is assigned to the parts ", Model().All<host_Part>(),
                     [&](const host_Part& user) { return IsAssigned(user, material->Name()); });
    } else if (auto* step = dynamic_cast<host_Step*>(&member)) {
        RemoveStep(*step);
    } else if (auto* load = dynamic_cast<host_Load*>(&member)) {
        Model().Remove(*load);
    }
}

void host_CheckReferences(std::span<const mdl_Repository> members) {
    const auto of = [members](host_MemberKind kind) -> const mdl_Repository& {
        return members[static_cast<std::size_t>(kind)];
    };
    for (const auto& member : of(host_MemberKind::Part).Members()) {
        const auto* part = dynamic_cast<const host_Part*>(member.get());
        for (const auto& [group, material] : part->Get().materials) {
            if (!of(host_MemberKind::Material).Has(material)) {
                omu_ValueErrorException(atr_String("the stored part '" + part->Name().Std() +
                                                   "' has the material '" + material.Std() +
                                                   "', which is not there"))
                    .Throw(kSource, __LINE__);
            }
        }
    }
    for (const auto& member : of(host_MemberKind::Load).Members()) {
        static_cast<const host_Load&>(*member).CheckReferences(of(host_MemberKind::Part),
                                                               of(host_MemberKind::Step));
    }
}
