#include "host_StepCommands.h"

#include "host_MemberArgument.h"
#include "host_ModelRules.h"
#include "host_Step.h"

namespace {

omu_Primitive* Step(omu_Arguments& args) {
    omu_TarvexName name;
    host_StepContent content;
    args.Begin();
    args.Get(name, "name");
    args.Optional();
    const cow_String previous = host_GetName<host_Step>(args, "previous");
    host_GetConstant(args, content.procedure, "procedure");
    args.Get(content.period, "period");
    args.Get(content.description, "description");
    args.End();
    host_Model& model = host_Model::Instance();
    const int place = previous.IsEmpty() ? -1 : model.Find<host_Step>(previous).Index() + 1;
    auto step = std::make_unique<host_Step>(name.AsString(), std::move(content));
    return new omu_PrimWrapper(&model.Add(std::move(step), place));
}

omu_Primitive* DeleteStep(omu_Arguments& args) {
    host_RemoveMember(host_GetOnlyMember<host_Step>(args, "step"));
    return nullptr;
}

}  // namespace

void host_RegisterStepCommands(host_CommandTable& table) {
    table.AddChange(
        {"step",
         "Makes a step of the analysis and returns it.\n"
         "Steps follow each other; the first one is the beginning of the analysis. Loads act\n"
         "through a step that is put between others as they did before.\n"
         "STATIC     equilibrium\n"
         "MODAL      natural frequencies and shapes\n"
         "TRANSIENT  motion over time\n"
         "HEAT       conduction of heat",
         {{"name", "str", "a legal name", "", {}},
          host_MemberParameter<host_Step>("previous", "the step before it; the last by default",
                                          "''"),
          {"procedure", "constant", "what it computes", "STATIC", host_Names<host_Procedure>()},
          {"period", "float", "how long it lasts, above 0", "1.0", {}},
          {"description", "str", "what it is for", "''", {}}},
         Step});
    table.AddChange({"deleteStep",
                     "Removes a step, and the loads that it creates; what it changes of other\n"
                     "loads is dropped.",
                     {host_MemberParameter<host_Step>("step", "a step")},
                     DeleteStep});
}
