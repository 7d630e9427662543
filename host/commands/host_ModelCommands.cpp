#include "host_ModelCommands.h"

#include "host_Load.h"
#include "host_Material.h"
#include "host_MemberArgument.h"
#include "host_Part.h"
#include "host_Progress.h"
#include "host_Step.h"
#include "idb_FileLoad.h"
#include "idb_FileSave.h"
#include "idb_MementoErrorException.h"
#include "omu_Get.h"

namespace {

/// The longest file that is read as a model; far above what the host can hold.
constexpr std::uint64_t kLongestFile = std::uint64_t{1} << 36;
/// Bytes that are written between two looks at the user's Ctrl-C.
constexpr std::size_t kChunk = std::size_t{1} << 22;

host_Model& Model() { return host_Model::Instance(); }
host_Changes& Changes() { return host_Changes::Instance(); }

// --- Settings ----------------------------------------------------------------------------------

omu_Primitive* SetModelSettings(omu_Arguments& args) {
    mdl_Model settings = Model().Settings();
    settings.Set(args);
    if (settings != Model().Settings()) {
        Model().EditSettings() = settings;
    }
    return nullptr;
}

omu_Primitive* ModelSettings(omu_Arguments& args) {
    args.Begin();
    args.End();
    const mdl_Model& settings = Model().Settings();
    auto result = std::make_unique<omu_PrimDictionary<cow_String>>();
    result->Put("description", settings.Description());
    result->Put("formulation", mdl_Model::Formulation(settings.GetFormulation()).Copy());
    result->Put("restartJob", settings.RestartJob());
    result->Put("restartStep", settings.RestartStep());
    if (settings.GetRestartInc() == mdl_Model::INCREMENT) {
        result->Put("restartIncrement", settings.RestartIncrement());
    } else {
        result->Put("restartIncrement", mdl_Model::RestartInc(settings.GetRestartInc()).Copy());
    }
    return result.release();
}

// --- Files -------------------------------------------------------------------------------------

std::string OnlyPath(omu_Arguments& args) {
    cow_String path;
    args.Begin();
    args.Get(path, "path");
    args.End();
    return host_FilePath(path);
}

omu_Primitive* NewModel(omu_Arguments& args) {
    args.Begin();
    args.End();
    Model().Clear();
    return nullptr;
}

omu_Primitive* SaveModel(omu_Arguments& args) {
    const std::string path = OnlyPath(args);
    const std::vector<std::byte> memento = Model().Memento();
    std::span<const std::byte> left(memento);
    host_Progress progress("Saving the model", host_Work{memento.size()});
    idb_FileSave(path, [&] {
        host_Poll();
        const auto chunk = left.first(std::min(kChunk, left.size()));
        left = left.subspan(chunk.size());
        progress.Count(chunk.size());
        return chunk;
    });
    return nullptr;
}

omu_Primitive* OpenModel(omu_Arguments& args) {
    const std::string path = OnlyPath(args);
    const std::vector<std::byte> memento = idb_FileLoad(path, kLongestFile);
    host_Poll();
    try {
        Model().Open(memento);
    } catch (const idb_MementoErrorException& error) {
        host_RefuseValue(path + " is no whole model: " + cow_String(error.UserReport()).Std(),
                         "host/commands/host_ModelCommands", __LINE__);
    }
    return nullptr;
}

// --- Undo and redo -----------------------------------------------------------------------------

int OnlySteps(omu_Arguments& args) {
    int steps = 1;
    args.Begin();
    args.Optional();
    args.Get(steps, "steps");
    args.End();
    host_CheckRange("steps", steps, 1, std::numeric_limits<int>::max());
    return steps;
}

omu_Primitive* ChangeHistory(omu_Arguments& args) {
    args.Begin();
    args.End();
    const omu_ChangeHistory& history = Changes().History();
    auto result = std::make_unique<omu_PrimDictionary<cow_String>>();
    result->Put("undo", history.UndoCount());
    result->Put("undoLabel", history.UndoLabel());
    result->Put("redo", history.RedoCount());
    result->Put("redoLabel", history.RedoLabel());
    return result.release();
}

cow_String OnlyLabel(omu_Arguments& args) {
    cow_String label("changes");
    args.Begin();
    args.Optional();
    args.Get(label, "label");
    args.End();
    return label;
}

/// For host_Command::run: no arguments are given, and \p check raises nothing.
template <void (host_Changes::*check)() const>
omu_Primitive* Check(omu_Arguments& args) {
    args.Begin();
    args.End();
    (Changes().*check)();
    return nullptr;
}

// --- Finding -----------------------------------------------------------------------------------

template <class T>
omu_Primitive* All(omu_Arguments& args) {
    args.Begin();
    args.End();
    const std::vector<T*> all = Model().All<T>();
    return omu_MakeTuple(static_cast<int>(all.size()), [&](int i) {
        return new omu_PrimWrapper(all[static_cast<std::size_t>(i)]);
    });
}

template <class T>
omu_Primitive* FindOne(omu_Arguments& args) {
    return new omu_PrimWrapper(&host_GetOnlyMember<T>(args, "name"));
}

/// parts and findPart, and so on.
template <class T>
void AddFinders(host_CommandTable& table, const std::string& plural, const std::string& noun) {
    const std::string type = T::StaticType().Name();
    table.Add({plural,
               "Returns the model's " + noun + "s, in order, as a tuple of " + type + " objects.",
               {},
               &All<T>,
               false});
    table.Add({"find" + type,
               "Returns the " + type + " object of a name.",
               {{"name", "str", "name of a " + noun, "", {}}},
               &FindOne<T>,
               false});
}

// --- Declarations ------------------------------------------------------------------------------

const host_Parameter kPath{"path", "str", "the file", "", {}};
const host_Parameter kSteps{"steps", "int", "how many", "1", {}};

}  // namespace

void host_RegisterModelCommands(host_CommandTable& table) {
    table.AddChange(
        {"setModelSettings",
         "Sets what the model is for and where its analysis goes on from an earlier one.\n"
         "What is not given stays as it is; an empty restartJob: no earlier one.",
         {{"description", "str", "what the model is", "''", {}},
          {"formulation", "constant", "what strains and stresses refer to", "SMALL_DISPLACEMENT",
           host_Names<mdl_Model::FormulationEnm>()},
          {"restartJob", "str", "the earlier job", "''", {}},
          {"restartStep", "str", "its step", "''", {}},
          {"restartIncrement",
           "int or STEP_END",
           "its increment, from 1, or the step's end",
           "STEP_END",
           {"STEP_END"}}},
         SetModelSettings});
    table.Add({"modelSettings",
               "Returns a dictionary of the model's settings.",
               {},
               ModelSettings,
               false});
    table.AddChange(
        {"newModel", "Empties the model; its settings become the default.", {}, NewModel});
    table.Add({"saveModel",
               "Saves the model: parts, materials, steps, loads and settings, but not the view.\n"
               "The file is replaced in one step, when everything has been written to disk.",
               {kPath},
               SaveModel});
    table.AddChange({"openModel",
                     "Opens a saved model in place of this one, which undo brings back.\n"
                     "A file that is not whole, or no model, changes nothing.",
                     {kPath},
                     OpenModel});
    table.Add(
        {"undo",
         "Takes back the latest steps and returns the label of the last one taken back.\n"
         "A step is a command that changed the model, an attribute that was set, or a block\n"
         "`with changes('label'):`. Objects that come back are the same objects. The view is\n"
         "no part of the model.",
         {kSteps},
         [](omu_Arguments& args) {
             return new omu_PrimString(Changes().UndoLabel(OnlySteps(args)));
         },
         true,
         false,
         [](omu_Arguments& args) { Changes().Undo(OnlySteps(args)); }});
    table.Add({"redo",
               "Makes the steps again that were undone last and returns the label of the last one.",
               {kSteps},
               [](omu_Arguments& args) {
                   return new omu_PrimString(Changes().RedoLabel(OnlySteps(args)));
               },
               true,
               false,
               [](omu_Arguments& args) { Changes().Redo(OnlySteps(args)); }});
    table.Add({"changeHistory",
               "Returns a dictionary: how many steps can be undone and redone (undo, redo), and\n"
               "what the next ones are (undoLabel, redoLabel).",
               {},
               ChangeHistory,
               false});
    table.Add({"clearHistory",
               "Forgets all steps, and frees what they hold.",
               {},
               &Check<&host_Changes::CheckNoGroup>,
               true,
               false,
               [](omu_Arguments& /*args*/) { Changes().Forget(); }});
    table.Add({"beginChanges",
               "Opens a group of changes, which will be one step; `with changes(label):` does.",
               {{"label", "str", "name of the step", "'changes'", {}}},
               [](omu_Arguments& args) -> omu_Primitive* {
                   (void)OnlyLabel(args);
                   (void)Changes().History();
                   return nullptr;
               },
               true,
               false,
               [](omu_Arguments& args) { Changes().OpenGroup(OnlyLabel(args)); }});
    table.Add({"keepChanges",
               "Closes the innermost group of changes.",
               {},
               &Check<&host_Changes::CheckGroup>,
               true,
               false,
               [](omu_Arguments& /*args*/) { Changes().CloseGroup(true); }});
    table.Add({"dropChanges",
               "Takes the changes of the innermost group back, and closes it.",
               {},
               &Check<&host_Changes::CheckGroup>,
               true,
               false,
               [](omu_Arguments& /*args*/) { Changes().CloseGroup(false); }});
    AddFinders<host_Part>(table, "parts", "part");
    AddFinders<host_Material>(table, "materials", "material");
    AddFinders<host_Step>(table, "steps", "step");
    AddFinders<host_Load>(table, "loads", "load");
}
