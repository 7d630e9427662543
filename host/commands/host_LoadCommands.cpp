#include "host_LoadCommands.h"

#include "host_Load.h"
#include "host_LoadMarks.h"
#include "host_LoadTables.h"
#include "host_MemberArgument.h"
#include "host_ModelRules.h"
#include "host_Part.h"
#include "host_Progress.h"
#include "mdl_PropAttributeGet.h"
#include "nex_TextException.h"

#include <algorithm>

namespace {

constexpr const char* kSource = "host/commands/host_LoadCommands";

using Dictionary = omu_PrimDictionary<cow_String>;
using StateConstant = omu_PrimEnum<mdl_PropAttributeStateEnm, 1>;
using StatusConstant = omu_PrimEnum<mdl_PropagationStatusEnm, 1>;

host_Model& Model() { return host_Model::Instance(); }

// --- Reading -----------------------------------------------------------------------------------

struct LoadAndStep {
    host_Load& load;
    host_Step& step;
};

/// Reads the first two parameters of most commands; \p readOther reads those behind them.
template <class Read>
LoadAndStep GetLoadAndStep(omu_Arguments& args, const Read& readOther) {
    args.Begin();
    const cow_String load = host_GetName<host_Load>(args, "load");
    const cow_String step = host_GetName<host_Step>(args, "step");
    readOther();
    args.End();
    return {Model().Find<host_Load>(load), Model().Find<host_Step>(step)};
}
LoadAndStep GetLoadAndStep(omu_Arguments& args) {
    return GetLoadAndStep(args, [] {});
}

/// All names of components, each once.
std::vector<const char*> AllComponents() {
    std::vector<const char*> all;
    for (const host_LoadKindRow& kind : host_kLoadKinds) {
        for (const char* const name : kind.Components()) {
            const auto isSame = [name](std::string_view other) { return other == name; };
            if (std::none_of(all.begin(), all.end(), isSame)) {
                all.push_back(name);
            }
        }
    }
    return all;
}

// --- Making and changing -----------------------------------------------------------------------

const char* RegionKeyword(const host_LoadKindRow& kind) {
    return kind.region == host_LoadRegion::Group ? "group" : "nodeSet";
}

template <class Sets>
void CheckRegion(const host_Part& part, const Sets& sets, const char* what,
                 const cow_String& region) {
    if (sets.contains(region)) {
        return;
    }
    std::string names;
    for (const auto& entry : sets) {
        names += (names.empty() ? "; it has '" : ", '") + entry.first.Std() + "'";
    }
    host_RefuseValue(
        "part '" + part.Name().Std() + "' has no " + what + " '" + region.Std() + "'" + names,
        kSource, __LINE__);
}

/// Makes a load of a kind: force, pressure and so on.
omu_Primitive* Load(omu_Arguments& args, host_LoadKind number) {
    const host_LoadKindRow& kind = host_RowOf(number);
    omu_TarvexName name;
    host_LoadContent content;
    content.kind = number;
    host_LoadState state(number);
    args.Begin();
    args.Get(name, "name");
    content.createdIn = host_GetName<host_Step>(args, "step");
    content.part = host_GetName<host_Part>(args, "part");
    if (kind.region == host_LoadRegion::NodeSetOrPart) {
        args.Optional();
    }
    if (kind.region != host_LoadRegion::Part) {
        args.Get(content.region, RegionKeyword(kind));
    }
    args.Optional();
    for (std::size_t i = 0; i < state.components.size(); ++i) {
        mdl_PropAttributeGet<double>::Get(args, state.components[i], kind.names[i]);
    }
    mdl_PropAttributeGet<cow_String>::Get(args, state.amplitude, "amplitude");
    args.End();

    (void)Model().Find<host_Step>(content.createdIn);
    const host_Part& part = Model().Find<host_Part>(content.part);
    if (kind.region == host_LoadRegion::Group) {
        CheckRegion(part, part.Get().groups, "group", content.region);
    } else if (kind.region == host_LoadRegion::NodeSet || !content.region.IsEmpty()) {
        CheckRegion(part, part.Get().nodeSets, "node set", content.region);
    }
    content.changes.emplace(content.createdIn, std::move(state));
    return new omu_PrimWrapper(
        &Model().Add(std::make_unique<host_Load>(name.AsString(), std::move(content))));
}

omu_Primitive* SetLoad(omu_Arguments& args, const std::vector<const char*>& names) {
    std::vector<mdl_PropAttr<double>> values(names.size());
    mdl_PropAttr<cow_String> amplitude;
    const auto [load, step] = GetLoadAndStep(args, [&] {
        args.Optional();
        for (std::size_t i = 0; i < names.size(); ++i) {
            mdl_PropAttributeGet<double>::Get(args, values[i], names[i]);
        }
        mdl_PropAttributeGet<cow_String>::Get(args, amplitude, "amplitude");
    });
    host_LoadState change(load.Get().kind);
    change.amplitude.Modify(amplitude);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (values[i].IsModified()) {
            load.CheckAttribute(names[i]);
            const int place = load.KindRow().FindComponent(names[i]);
            change.components[static_cast<std::size_t>(place)].Modify(values[i]);
        }
    }
    if (!change.IsModified()) {
        host_RefuseValue("no attribute is given; " + load.AsString(0).Std() + " has " +
                             load.KindRow().ComponentNames() + " and amplitude",
                         kSource, __LINE__);
    }
    load.Change(step, change);
    return nullptr;
}

omu_Primitive* SetStatus(omu_Arguments& args) {
    cow_String attribute;
    StateConstant status(UNSET);
    const auto [load, step] = GetLoadAndStep(args, [&] {
        args.Get(attribute, "attribute");
        args.Get(status, "status");
    });
    try {
        load.SetStatus(step, attribute, status);
    } catch (const nex_TextException& refusal) {
        // An internal fault to the attribute; here it is the script's.
        const bool isFirst = step.Name() == load.Get().createdIn;
        host_RefuseValue(std::string(refusal.AsString().View()) + (isFirst ? " In" : " Behind") +
                             " the step that creates " + load.AsString(0).Std() + ", it can be " +
                             (isFirst ? "SET, UNSET or UNCHANGED" : "SET, FREED or UNCHANGED"),
                         kSource, __LINE__);
    }
    return nullptr;
}

omu_Primitive* Deactivate(omu_Arguments& args) {
    const auto [load, step] = GetLoadAndStep(args);
    load.Deactivate(step);
    return nullptr;
}

omu_Primitive* Activate(omu_Arguments& args) {
    const auto [load, step] = GetLoadAndStep(args);
    load.Activate(step);
    return nullptr;
}

omu_Primitive* DeleteLoad(omu_Arguments& args) {
    host_RemoveMember(host_GetOnlyMember<host_Load>(args, "load"));
    return nullptr;
}

// --- Asking ------------------------------------------------------------------------------------

omu_Primitive* Status(omu_Arguments& args) {
    const auto [load, step] = GetLoadAndStep(args);
    return new StatusConstant(load.In(step).status);
}

template <class T>
void PutAttribute(Dictionary& all, const char* name, const mdl_PropAttr<T>& attribute) {
    auto entry = std::make_unique<Dictionary>();
    entry->Put("value", attribute.ConstGet());
    entry->Put("state", StateConstant(attribute.State()).Copy());
    all.Put(name, entry.release());
}

omu_Primitive* LoadState(omu_Arguments& args) {
    const auto [load, step] = GetLoadAndStep(args);
    const host_LoadState state = load.In(step).state;
    auto result = std::make_unique<Dictionary>();
    for (std::size_t i = 0; i < state.components.size(); ++i) {
        PutAttribute(*result, load.KindRow().names[i], state.components[i]);
    }
    PutAttribute(*result, "amplitude", state.amplitude);
    return result.release();
}

omu_Primitive* LoadStatuses(omu_Arguments& args) {
    args.Begin();
    args.End();
    const std::vector<host_Step*> steps = Model().All<host_Step>();
    auto result = std::make_unique<Dictionary>();
    for (const host_Load* load : Model().All<host_Load>()) {
        const std::vector<host_LoadInStep> history = load->History();
        auto statuses = std::make_unique<Dictionary>();
        for (std::size_t i = 0; i < steps.size(); ++i) {
            statuses->Put(steps[i]->Name(), StatusConstant(history[i].status).Copy());
        }
        result->Put(load->Name(), statuses.release());
    }
    return result.release();
}

omu_Primitive* StepTable(omu_Arguments& args) {
    args.Begin();
    args.End();
    host_Print(host_StepTable());
    return nullptr;
}

omu_Primitive* LoadTable(omu_Arguments& args) {
    args.Begin();
    args.Optional();
    const cow_String name = host_GetName<host_Load>(args, "load");
    args.End();
    std::vector<const host_Load*> loads;
    if (name.IsEmpty()) {
        const std::vector<host_Load*> all = Model().All<host_Load>();
        loads.assign(all.begin(), all.end());
    } else {
        loads.push_back(&Model().Find<host_Load>(name));
    }
    host_Print(host_LoadTable(loads));
    return nullptr;
}

omu_Primitive* MarkLoads(omu_Arguments& args) {
    args.Begin();
    args.Optional();
    const cow_String name = host_GetName<host_Step>(args, "step");
    args.End();
    const std::vector<host_Step*> steps = Model().All<host_Step>();
    if (name.IsEmpty() && steps.empty()) {
        host_RefuseValue("the model has no steps", kSource, __LINE__);
    }
    return new omu_PrimNumber(
        host_MarkLoads(name.IsEmpty() ? *steps.back() : Model().Find<host_Step>(name)));
}

// --- Their declarations ------------------------------------------------------------------------

const host_Parameter kAmplitude{
    "amplitude", "str", "name of the function of time that it follows; any text", "unset", {}};

std::vector<host_Parameter> ParametersOf(const host_LoadKindRow& kind) {
    std::vector<host_Parameter> parameters{
        {"name", "str", "a legal name", "", {}},
        host_MemberParameter<host_Step>("step", "the step from which on it acts"),
        host_MemberParameter<host_Part>("part", "the part it acts on")};
    if (kind.region == host_LoadRegion::Group) {
        parameters.push_back({"group", "str", "name of a group of its cells", "", {}});
    } else if (kind.region != host_LoadRegion::Part) {
        const bool isRequired = kind.region == host_LoadRegion::NodeSet;
        parameters.push_back(
            {"nodeSet",
             "str",
             std::string("name of a set of its nodes") + (isRequired ? "" : "; all by default"),
             isRequired ? "" : "''",
             {}});
    }
    for (const std::string name : kind.Components()) {
        const std::string direction = name == "magnitude" ? "" : " in " + name;
        parameters.push_back({name, "float", kind.meaning + direction, "unset", {}});
    }
    parameters.push_back(kAmplitude);
    return parameters;
}

void AddMaker(host_CommandTable& table, const omu_EnumEntry<host_LoadKind>& entry) {
    const host_LoadKindRow& kind = host_RowOf(entry.value);
    table.AddChange({kind.command,
                     std::string("Makes ") + kind.what +
                         ", and returns it.\n"
                         "It acts from a step on; a component that is not given has no value.\n" +
                         kind.details,
                     ParametersOf(kind),
                     [number = entry.value](omu_Arguments& args) { return Load(args, number); }});
}

host_Parameter LoadParameter(const char* help = "a load or support", const char* text = "") {
    return host_MemberParameter<host_Load>("load", help, text);
}

host_Parameter StepParameter(const char* help, const char* text = "") {
    return host_MemberParameter<host_Step>("step", help, text);
}

void AddChanges(host_CommandTable& table) {
    std::vector<host_Parameter> parameters{LoadParameter(), StepParameter("where it changes")};
    const std::vector<const char*> names = AllComponents();
    for (const char* const name : names) {
        parameters.push_back({name, "float", "its new value, if the load has it", "unchanged", {}});
    }
    parameters.push_back(kAmplitude);
    parameters.back().defaultText = "unchanged";
    table.AddChange({"setLoad",
                     "Sets components of a load in a step; they keep those values behind it until\n"
                     "another step changes them.",
                     std::move(parameters),
                     [names](omu_Arguments& args) { return SetLoad(args, names); }});
    table.AddChange(
        {"setStatus",
         "Gives a component of a load, or its amplitude, a state in a step.\n"
         "SET        it has the value zero, until setLoad gives it another\n"
         "FREED      it has no value from this step on; not in the step that creates the load\n"
         "UNSET      it has no value; only in the step that creates the load\n"
         "UNCHANGED  nothing changes",
         {LoadParameter(),
          StepParameter("where it changes"),
          {"attribute", "str", "name of a component, or 'amplitude'", "", {}},
          {"status", "constant", "the state", "", host_Names<mdl_PropAttributeStateEnm>()}},
         SetStatus});
    table.AddChange({"deactivate",
                     "Switches a load off from a step on.\n"
                     "What that step and those behind it change of the load is kept for activate.",
                     {LoadParameter(), StepParameter("the first step in which it does not act")},
                     Deactivate});
    table.AddChange({"activate",
                     "Takes back that a load is switched off from a step on.",
                     {LoadParameter(), StepParameter("the step that deactivates it")},
                     Activate});
    table.AddChange({"deleteLoad", "Removes a load or support.", {LoadParameter()}, DeleteLoad});
}

void AddQueries(host_CommandTable& table) {
    const char* const kStatuses =
        "NOT_YET_ACTIVE    a later step creates it\n"
        "CREATED           this step creates it\n"
        "PROPAGATED        it acts as in the step before\n"
        "MODIFIED          this step changes it\n"
        "DEACTIVATED       this step switches it off\n"
        "NO_LONGER_ACTIVE  an earlier step has switched it off";
    table.Add({"status",
               std::string("Returns the status of a load in a step.\n") + kStatuses,
               {LoadParameter(), StepParameter("a step")},
               Status,
               false});
    table.Add({"loadState",
               "Returns what a load is in a step: a dictionary that has for each component, and\n"
               "for 'amplitude', a dictionary of its value and its state.\n"
               "SET        this step has set it\n"
               "UNCHANGED  it is as in the step before\n"
               "FREED      this step has freed it\n"
               "UNSET      it has no value",
               {LoadParameter(), StepParameter("a step")},
               LoadState,
               false});
    table.Add(
        {"loadStatuses",
         std::string("Returns a dictionary that has for each load the dictionary of its\n"
                     "statuses by step. Names come sorted; steps() has the steps in order.\n") +
             kStatuses,
         {},
         LoadStatuses,
         false});
    table.Add({"stepTable",
               std::string("Prints the statuses of all loads in all steps.\n") + kStatuses,
               {},
               StepTable});
    table.Add({"loadTable",
               "Prints the values of a load, or of all loads, in all steps.",
               {LoadParameter("a load or support; all by default", "''")},
               LoadTable});
    table.Add(
        {"markLoads",
         "Puts symbols at the nodes on which loads and supports act in a step, and a caption\n"
         "that explains them, in place of those of an earlier call; returns how many loads\n"
         "are marked. A load of a whole part is marked in the middle of it, one without any\n"
         "value is not marked. Symbols are where nodes are without deformation.\n"
         "clearMarkers removes the symbols, clearLabels the caption.",
         {StepParameter("a step; the last by default", "''")},
         MarkLoads});
    table.AddConstants(host_Names<host_LoadKind>());
    table.AddConstants(host_Names<mdl_PropagationStatusEnm>());
}

}  // namespace

void host_RegisterLoadCommands(host_CommandTable& table) {
    for (const auto& entry : omu_EnumTable<host_LoadKind, 1>::kEntries) {
        if (entry.name != nullptr) {
            AddMaker(table, entry);
        }
    }
    AddChanges(table);
    AddQueries(table);
}
