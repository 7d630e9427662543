#include "host_Model.h"

#include "host_ModelRules.h"
#include "idb_MementoErrorException.h"
#include "idb_MementoRead.h"
#include "idb_MementoWrite.h"
#include "omu_ErrorExceptions.h"

namespace {

constexpr const char* kSource = "host/model/host_Model";
constexpr const char* kRoots[] = {"parts", "materials", "steps", "loads"};
static_assert(std::size(kRoots) == host_kMemberKinds);

using MembersField = cls_FieldTraits<mdl_Repository>;

/// The settings as fields.
struct StoredSettings {
    cow_String description;
    mdl_Model::FormulationEnm formulation{};
    cow_String restartJob;
    cow_String restartStep;
    mdl_Model::RestartIncEnm restartInc{};
    int restartIncrement = 0;

    static constexpr auto Fields() {
        using S = StoredSettings;
        return std::tuple(
            cls_Field("description", &S::description), cls_Field("formulation", &S::formulation),
            cls_Field("restartJob", &S::restartJob), cls_Field("restartStep", &S::restartStep),
            cls_Field("restartInc", &S::restartInc),
            cls_Field("restartIncrement", &S::restartIncrement));
    }
};

template <class E>
void CheckEnum(E value, const char* field) {
    for (const auto* entry = omu_EnumTable<E, 1>::kEntries; entry->name != nullptr; ++entry) {
        if (entry->value == value) {
            return;
        }
    }
    idb_MementoErrorException(atr_String::Format("the model's %s is %d, which has no meaning",
                                                 field, static_cast<int>(value)))
        .Throw(kSource, __LINE__);
}

void WriteSettings(const cls_WriteVisitor& visitor, const mdl_Model& settings) {
    const StoredSettings stored{settings.Description(),   settings.GetFormulation(),
                                settings.RestartJob(),    settings.RestartStep(),
                                settings.GetRestartInc(), settings.RestartIncrement()};
    cls_Access::ForEachField<StoredSettings>([&]<class Field>(const Field& field) {
        Field::Traits::Write(visitor, field.name, stored.*field.member);
    });
}

mdl_Model ReadSettings(const cls_ReadVisitor& visitor) {
    StoredSettings stored;
    cls_ReadFields(stored, visitor);
    CheckEnum(stored.formulation, "formulation");
    CheckEnum(stored.restartInc, "restartInc");
    mdl_Model settings;
    settings.SetDescription(stored.description);
    settings.SetFormulation(mdl_Model::Formulation(stored.formulation));
    if (!stored.restartJob.IsEmpty()) {
        if (stored.restartInc == mdl_Model::INCREMENT) {
            settings.SetRestart(stored.restartJob, stored.restartStep, stored.restartIncrement);
        } else {
            settings.SetRestart(stored.restartJob, stored.restartStep);
        }
    }
    return settings;
}

}  // namespace

host_Model& host_Model::Instance() {
    static host_Model model;
    return model;
}

host_Model::host_Model() { (void)host_Changes::Instance(); }

mdl_Model& host_Model::EditSettings() {
    host_Changes::Instance().Save(_contents.settings);
    return _contents.settings.Get();
}

host_Member& host_Model::FindMember(host_MemberKind kind, const cow_String& name) {
    mdl_Extension* found = Repository(kind).Find(name);
    if (found == nullptr) {
        const atr_String text(name.View());
        if (_removed[static_cast<std::size_t>(kind)].contains(name)) {
            omu_AccessErrorException(text).Throw(kSource, __LINE__);
        }
        const std::string_view plural = kRoots[static_cast<std::size_t>(kind)];
        const std::string noun(plural.substr(0, plural.size() - 1));
        omu_KeyErrorException(atr_String("no " + noun + " '" + name.Std() + "'"))
            .Throw(kSource, __LINE__);
    }
    return static_cast<host_Member&>(*found);
}

void host_Model::AddMember(host_MemberKind kind, std::unique_ptr<host_Member> member, int index) {
    mdl_Repository& members = Repository(kind);
    const int place = index < 0 ? members.Length() : index;
    host_Member* const object = member.get();
    // Checked before: what the repository refuses it deletes.
    static_cast<void>(omu_TarvexName(object->Name(), members.NameKind()));
    if (members.Has(object->Name())) {
        omu_ValueErrorException(atr_String(object->AsString(0).Std() + " exists already"))
            .Throw(kSource, __LINE__);
    }
    const auto kept = std::make_shared<std::unique_ptr<mdl_Extension>>(std::move(member));
    host_Changes::Instance().Make(
        [&members, kept, place, object] {
            members.Insert(place, std::move(*kept));
            object->Restore();
        },
        [&members, kept, object] {
            object->Withdraw();
            *kept = members.Remove(object->Name());
        });
}

void host_Model::RemoveMember(host_MemberKind kind, host_Member& member) {
    mdl_Repository& members = Repository(kind);
    const auto kept = std::make_shared<std::unique_ptr<mdl_Extension>>();
    host_Member* const object = &member;
    const int place = members.IndexOf(member.Name());
    const cow_String name = member.Name();
    host_Changes::Instance().Make(
        [&members, kept, object] {
            object->Withdraw();
            *kept = members.Remove(object->Name());
        },
        [&members, kept, place, object] {
            members.Insert(place, std::move(*kept));
            object->Restore();
        });
    _removed[static_cast<std::size_t>(kind)].insert(name);
}

void host_Model::Rename(host_Member& member, const cow_String& name) {
    mdl_Repository& members = *member.Owner();
    const cow_String& before = member.Name();
    if (before == name) {
        return;
    }
    host_Changes::Instance().Make([&members, before, name] { members.Rename(before, name); },
                                  [&members, before, name] { members.Rename(name, before); });
}

void host_Model::Exchange(Contents& other) {
    std::swap(_contents.settings, other.settings);
    for (std::size_t kind = 0; kind < host_kMemberKinds; ++kind) {
        for (const auto& member : _contents.members[kind].Members()) {
            static_cast<host_Member&>(*member).Withdraw();
        }
        _contents.members[kind].SwapMembers(other.members[kind]);
        for (const auto& member : _contents.members[kind].Members()) {
            static_cast<host_Member&>(*member).Restore();
        }
    }
}

void host_Model::Replace(const std::shared_ptr<Contents>& contents) {
    const auto exchange = [this, contents] { Exchange(*contents); };
    host_Changes::Instance().Make(exchange, exchange);
    _contents.lastUid = contents->lastUid;  // the transaction records it
}

void host_Model::Clear() { Replace(std::make_shared<Contents>()); }

std::vector<std::byte> host_Model::Memento() const {
    idb_MementoWrite memento;
    WriteSettings(memento, Settings());
    for (std::size_t kind = 0; kind < host_kMemberKinds; ++kind) {
        MembersField::Write(memento, kRoots[kind], _contents.members[kind]);
    }
    memento.Write("lastIdentity", static_cast<double>(_contents.lastUid));
    return memento.Finish();
}

void host_Model::Open(std::span<const std::byte> stored) {
    const idb_MementoRead memento(stored);
    const auto contents = std::make_shared<Contents>();
    contents->settings.Get() = ReadSettings(memento);
    for (std::size_t kind = 0; kind < host_kMemberKinds; ++kind) {
        if (memento.Has(kRoots[kind])) {
            MembersField::Read(memento, kRoots[kind], contents->members[kind]);
        }
        for (const auto& member : contents->members[kind].Members()) {
            if (member->DynTypeId() != host_Member::TypeIdOf(static_cast<host_MemberKind>(kind))) {
                idb_MementoErrorException(atr_String::Format("'%s' is none of the model's %s",
                                                             member->Name().AsCharPtr(),
                                                             kRoots[kind]))
                    .Throw(kSource, __LINE__);
            }
        }
    }
    double lastUid = 0;
    if (memento.Has("lastIdentity")) {
        memento.Read("lastIdentity", lastUid);
    }
    memento.Finish();
    host_CheckReferences(contents->members);
    // Identities below it may be given twice: nothing of the host depends on them.
    contents->lastUid = lastUid >= 1 && lastUid <= 0x1p53 ? static_cast<std::uint64_t>(lastUid) : 0;
    Replace(contents);
}
