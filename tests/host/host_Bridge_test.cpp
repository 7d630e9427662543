#include "host_Command.h"
#include "host_Interpreter.h"
#include "host_Main.h"
#include "nex_AssertException.h"
#include "nex_TextException.h"
#include "omu_ErrorExceptions.h"
#include "omu_InterfaceObj.h"
#include "omu_PrimEnum.h"
#include "omu_PrimException.h"
#include "omu_PrimWrapper.h"
#include "omu_RangeChecker.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <new>
#include <stdexcept>
#include <thread>

// Most of the bridge is tested by the Python scripts in data/, which this program runs as the host
// does (`test_host --as-host SCRIPT`), with the commands below.

namespace {

enum class Mode { Solid, Shell, Beam };

}  // namespace

template <>
struct omu_EnumTable<Mode, 1> {
    static constexpr omu_EnumEntry<Mode> kEntries[] = {{"SOLID", Mode::Solid},
                                                       {"SHELL", Mode::Shell},
                                                       {"BEAM", Mode::Beam},
                                                       {nullptr, Mode::Solid}};
};

namespace {

class Gadget : public omu_InterfaceObj {
public:
    static const omu_InterfaceType& StaticType() {
        static const omu_InterfaceType type =
            omu_InterfaceType("Gadget", &omu_InterfaceObj::StaticType())
                .Attribute("name", &Gadget::Name)
                .Attribute("size", &Gadget::Size, &Gadget::SetSize)
                .Method("scaled", &Gadget::Scaled);
        return type;
    }
    const omu_InterfaceType& Type() const override { return StaticType(); }

    explicit Gadget(cow_String name) : _name(std::move(name)) {}
    cow_String Name() const { return _name; }
    double Size() const { return _size; }
    void SetSize(double size) { _size = size; }
    omu_Primitive* Scaled(omu_Arguments& args) {
        double factor = 0.0;
        args.Begin();
        args.Get(factor, "factor");
        args.End();
        return new omu_PrimNumber(_size * factor);
    }

private:
    cow_String _name;
    double _size = 1.0;
};

std::map<cow_String, Gadget> gadgets;
omu_PrimHolder kept;

omu_PrimHolder One(omu_Arguments& args) {
    omu_PrimHolder value;
    args.Begin();
    args.Get(value, "value");
    args.End();
    return value;
}

cow_String Text(omu_Arguments& args, const char* keyword) {
    cow_String text;
    args.Begin();
    args.Get(text, keyword);
    args.End();
    return text;
}

omu_Primitive* Echo(omu_Arguments& args) { return One(args).ConstGet().Copy(); }

omu_Primitive* Array(omu_Arguments& args) {
    omu_PrimArray values;
    args.Begin();
    args.Get(values, "value");
    args.End();
    return new omu_PrimArray(values);
}

omu_Primitive* Describe(omu_Arguments& args) {
    const omu_PrimHolder value = One(args);
    return new omu_PrimString(value.ConstGet().TypeString() + " " + value.ConstGet().AsRepr());
}

omu_Primitive* Keep(omu_Arguments& args) {
    kept = One(args);
    return nullptr;
}

/// Drops what keep() kept in another thread, and waits for that with the interpreter's lock held.
omu_Primitive* DropInThread(omu_Arguments&) {
    std::thread([] { kept = omu_PrimHolder(); }).join();
    return nullptr;
}

omu_Primitive* Mesh(omu_Arguments& args) {
    int count = 0;
    double size = 0.0;
    cow_String name;
    cow_1DArrayList<double> points;
    omu_PrimEnum<Mode, 1> mode(Mode::Solid);
    bool flag = true;
    args.Begin();
    args.Get(count, "count");
    args.Get(size, "size");
    args.Get(name, "name");
    args.Optional();
    args.Get(points, "points");
    args.Get(mode, "mode");
    args.Get(flag, "flag");
    args.End();
    omu_RangeChecker().Above(0.0).Check("size", size);
    return new omu_PrimNumber(count * size + points.Length() + (flag ? 0.5 : 0.0));
}

omu_Primitive* Apply(omu_Arguments& args) {
    omu_PrimHolder value(new omu_PrimNone);
    args.Begin();
    const omu_PyObjectWrapper* function = nullptr;
    function = args.omu_PrimTuple::Get(function);
    args.Optional();
    args.Get(value, "value");
    args.End();
    omu_Arguments passed;
    passed.Put(value.ConstGet().Copy());
    passed.Put(7, "extra");
    return host_CallPython(*function, passed).release();
}

omu_Primitive* Wait(omu_Arguments&) {
    const host_WithoutInterpreter release;
    for (;;) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        host_CheckInterrupt();
    }
}

omu_Primitive* MakeGadget(omu_Arguments& args) {
    const cow_String name = Text(args, "name");
    return new omu_PrimWrapper(&gadgets.try_emplace(name, name).first->second);
}

omu_Primitive* DropGadget(omu_Arguments& args) {
    gadgets.erase(Text(args, "name"));
    return nullptr;
}

omu_Primitive* Fail(omu_Arguments& args) {
    using Fault = void (*)();
    static const std::map<cow_String, Fault> faults = {
        {"access", [] { omu_AccessErrorException("part 'a'").Throw("", 0); }},
        {"attribute",
         [] { omu_AttributeErrorException(omu_AttributeErrorEnm::ReadOnly, "x").Throw("", 0); }},
        {"font", [] { omu_FontErrorException("Foo").Throw("", 0); }},
        {"gui", [] { omu_GuiAccessErrorException("no window").Throw("", 0); }},
        {"index", [] { omu_IndexErrorException(7).Throw("", 0); }},
        {"key", [] { omu_KeyErrorException("a key").Throw("", 0); }},
        {"name", [] { omu_NameErrorException("what").Throw("", 0); }},
        {"overflow", [] { omu_OverflowErrorException("big").Throw("", 0); }},
        {"value", [] { omu_ValueErrorException("bad").Throw("", 0); }},
        {"zero", [] { omu_ZeroDivisionErrorException("by 0").Throw("", 0); }},
        {"tarvex",
         [] { omu_TvxNameErrorException(omu_TvxNameErrorEnm::InvalidJobName).Throw("", 0); }},
        {"generic", [] { omu_GenericTypeErrorException().Throw("", 0); }},
        {"text", [] { nex_TextException("broken").Throw("source", 3); }},
        {"assert", [] { nex_AssertException("a == b").Throw("source", 4); }},
        {"memory", [] { throw std::bad_alloc(); }},
        {"std", [] { throw std::runtime_error("plain"); }},
        {"int", [] { throw 1; }},  // NOLINT: any type may be thrown
    };
    faults.at(Text(args, "kind"))();
    return nullptr;
}

omu_Primitive* Late(omu_Arguments&) { return new omu_PrimException(omu_KeyErrorException("late")); }

void RegisterTestCommands(host_CommandTable& table) {
    const host_Parameter value{"value", "any value", "", "", {}};
    const host_Parameter text{"text", "str", "", "", {}};
    table.Add({"echo", "Returns the value.", {value}, &Echo});
    table.Add({"numbers", "Returns the array.", {value}, &Array});
    table.Add({"describe", "Type and text of the value.", {value}, &Describe, false});
    table.Add({"keep", "Keeps the value.", {value}, &Keep});
    table.Add({"dropInThread", "Drops the kept value.", {}, &DropInThread});
    table.Add({"mesh",
               "Makes a mesh.\n\nOf elements.",
               {{"count", "int", "number of elements", "", {}},
                {"size", "float", "edge length [mm]", "", {}},
                {"name", "str", "", "", {}},
                {"points", "sequence of float", "", "()", {}},
                {"mode", "SOLID, SHELL or BEAM", "", "SOLID", {"SOLID", "SHELL", "BEAM"}},
                {"flag", "bool", "", "True", {}}},
               &Mesh});
    table.Add(
        {"apply", "Calls a function.", {{"function", "callable", "", "", {}}, value}, &Apply});
    table.Add({"wait", "Waits for Ctrl-C.", {}, &Wait});
    table.Add({"gadget", "Makes or finds a gadget.", {{"name", "str", "", "", {}}}, &MakeGadget});
    table.Add({"dropGadget", "Deletes a gadget.", {{"name", "str", "", "", {}}}, &DropGadget});
    table.Add({"fail", "Raises.", {{"kind", "str", "", "", {}}}, &Fail});
    table.Add({"late", "Returns an error as a value.", {}, &Late});
}

class host_Scripts : public testing::TestWithParam<const char*> {};

TEST_P(host_Scripts, Run) {
    const std::string host = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string command =
        "'" + host + "' --as-host '" TEST_DATA_DIR "/" + GetParam() + ".py' '" + host + "'";
    EXPECT_EQ(std::system(command.c_str()), 0);
}

INSTANTIATE_TEST_SUITE_P(All, host_Scripts,
                         testing::Values("values", "errors", "commands", "objects", "journal",
                                         "interrupt", "leaks"),
                         [](const auto& given) { return given.param; });

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string_view(argv[1]) == "--as-host") {
        return host_Main(argc - 1, argv + 1, &RegisterTestCommands);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
