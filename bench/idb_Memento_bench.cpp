// A million objects {name of 8 characters, int, double, state, identity}, every fourth entry
// sharing its neighbour's object, written to a block of memory and read back; the same with a tuple
// of primitives and with attributes. Then what attributes do from step to step.

#include "UTI_CaeUtils.h"
#include "cls_MetadataRegistrar.h"
#include "idb_FileSave.h"
#include "idb_MementoRead.h"
#include "idb_MementoWrite.h"
#include "idb_ReadListObj.h"
#include "mdl_PropagatingAttribute.h"
#include "omi_Singleton.h"
#include "omu_PrimString.h"
#include "omu_PrimTuple.h"
#include "omu_StandardTraits.h"
#include "typ_ArchCompTable.h"

#include <benchmark/benchmark.h>

#ifdef BENCH_HAVE_CEREAL
#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/polymorphic.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#endif
#ifdef BENCH_HAVE_BOOST
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/export.hpp>
#include <boost/serialization/shared_ptr.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>
#endif

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <sstream>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

/// The primitives of a tuple, as the peers see them: objects of different classes, each with an
/// identity.
struct bench_Value {
    virtual ~bench_Value() = default;
    virtual bool Equals(const bench_Value& other) const = 0;
    std::uint64_t uid = 0;

    template <class Archive>
    void serialize(Archive& archive, unsigned /*version*/) {
        archive& uid;
    }
};
template <class T>
struct bench_ValueOf : bench_Value {
    bench_ValueOf() = default;
    explicit bench_ValueOf(T given) : value(std::move(given)) {}
    bool Equals(const bench_Value& other) const override {
        const auto* same = dynamic_cast<const bench_ValueOf*>(&other);
        return same != nullptr && same->value == value;
    }
    T value{};

    template <class Archive>
    void serialize(Archive& archive, unsigned /*version*/) {
#ifdef BENCH_HAVE_BOOST
        boost::serialization::void_cast_register<bench_ValueOf, bench_Value>();
#endif
        archive& uid& value;
    }
};
using bench_Number = bench_ValueOf<double>;
using bench_Text = bench_ValueOf<std::string>;
#ifdef BENCH_HAVE_CEREAL
CEREAL_REGISTER_TYPE(bench_Number)
CEREAL_REGISTER_TYPE(bench_Text)
CEREAL_REGISTER_POLYMORPHIC_RELATION(bench_Value, bench_Number)
CEREAL_REGISTER_POLYMORPHIC_RELATION(bench_Value, bench_Text)
#endif
#ifdef BENCH_HAVE_BOOST
BOOST_CLASS_EXPORT(bench_Number)
BOOST_CLASS_EXPORT(bench_Text)
#endif

namespace {

constexpr int kObjects = 1'000'000;

/// What is stored, as the peers see it.
struct Record {
    std::string name;
    int number = 0;
    double size = 0;
    int state = 0;
    std::uint64_t uid = 0;

    template <class Archive>
    void serialize(Archive& archive) {
        archive(name, number, size, state, uid);
    }
    template <class Archive>
    requires requires(Archive& archive) { archive.get_library_version(); }
    void serialize(Archive& archive, unsigned /*version*/) {
        archive& name& number& size& state& uid;
    }
    bool operator==(const Record&) const = default;
};

Record RecordAt(int i) {
    std::string name = std::to_string(10'000'000 + i);
    return {name, i * 3, i * 0.1, i % 4, static_cast<std::uint64_t>(i) + 1};
}

/// What peers write and read beside our objects: how it is made and compared.
struct Records {
    using Objects = std::vector<std::shared_ptr<Record>>;
    static Objects Make() {
        Objects all;
        for (int i = 0; i < kObjects; ++i) {
            all.push_back(i % 4 == 3 ? all.back() : std::make_shared<Record>(RecordAt(i)));
        }
        return all;
    }
    static bool Same(const Objects& a, const Objects& b) {
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (!(*a[i] == *b[i]) || (i % 4 == 3 && b[i] != b[i - 1])) {
                return false;
            }
        }
        return true;
    }
};

/// The same as our tuple.
struct Values {
    using Objects = std::vector<std::shared_ptr<bench_Value>>;
    static Objects Make() {
        Objects all;
        for (int i = 0; i < kObjects; i += 2) {
            all.push_back(std::make_shared<bench_Number>(i * 0.1));
            all.push_back(std::make_shared<bench_Text>(RecordAt(i).name));
        }
        return all;
    }
    static bool Same(const Objects& a, const Objects& b) {
        return std::equal(a.begin(), a.end(), b.begin(),
                          [](const auto& x, const auto& y) { return x->Equals(*y); });
    }
};

/// The same as our attributes, to which others may refer as well.
struct Attributes {
    struct Plain {
        double value = 0;
        int state = 0;
        std::uint64_t uid = 0;

        template <class Archive>
        void serialize(Archive& archive, unsigned /*version*/) {
            archive& value& state& uid;
        }
        bool operator==(const Plain&) const = default;
    };
    using Objects = std::vector<std::shared_ptr<Plain>>;
    static Objects Make() {
        Objects all;
        for (int i = 0; i < kObjects; ++i) {
            all.push_back(
                std::make_shared<Plain>(Plain{i * 0.1, 0, static_cast<std::uint64_t>(i)}));
        }
        return all;
    }
    static bool Same(const Objects& a, const Objects& b) {
        return std::equal(a.begin(), a.end(), b.begin(),
                          [](const auto& x, const auto& y) { return *x == *y; });
    }
};

/// The same as a persistent class of this library.
class Item : public mem_AllocationOperatorsTiny {
public:
    static constexpr cls_ClassInfo kClass{"bench_Item", 0x5B0001, 1, 1};
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    explicit Item(const Record& from)
        : _name(from.name),
          _number(from.number),
          _size(from.size),
          _state(static_cast<mdl_PropAttributeStateEnm>(from.state)),
          _uid(from.uid) {}
    explicit Item(const cls_ReadVisitor& visitor) : _uid(visitor.GetUid()) {
        cls_ReadFields(*this, visitor);
    }
    [[nodiscard]] unsigned DynTypeId() const noexcept { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const { cls_WriteLevel(*this, _uid, visitor); }
    [[nodiscard]] bool Is(const Record& record) const {
        return _name.View() == record.name && _number == record.number && _size == record.size &&
               static_cast<int>(_state) == record.state && _uid.Value() == record.uid;
    }

private:
    friend struct ::cls_Access;
    static constexpr auto Fields() {
        return std::tuple(cls_Field("name", &Item::_name), cls_Field("number", &Item::_number),
                          cls_Field("size", &Item::_size), cls_Field("state", &Item::_state));
    }
    cow_String _name;
    int _number = 0;
    double _size = 0;
    mdl_PropAttributeStateEnm _state = UNSET;
    cls_Uid _uid;
};

using Holder = cow_COW<Item, cow_Direct<Item>>;
constexpr typ_Entry kTypes[] = {{typ_Entry::Unused, 1, nullptr},
                                {typ_Entry::Persistent, 1, "bench_Item"}};

void StartLibrary() {
    static int count = 0;
    if (count == 0) {
        UTI_CaeUtils_initialize(count);
        typ_ArchCompTable::InsertEntry(0x5B, {kTypes, std::size(kTypes)});
        cls_RegisterClass<Item, Holder>(omi_Singleton<cls_MetadataRegistrar>::Instance().Classes());
    }
}

std::vector<Holder> MakeItems() {
    StartLibrary();
    std::vector<Holder> items;
    for (int i = 0; i < kObjects; ++i) {
        items.push_back(i % 4 == 3 ? items.back() : Holder(new Item(RecordAt(i))));
    }
    return items;
}

std::vector<std::byte> Written(const std::vector<Holder>& items) {
    idb_MementoWrite memento;
    idb_WriteListObj(memento, "items", items);
    return memento.Finish();
}

void PerObject(benchmark::State& state, std::size_t bytes) {
    state.SetItemsProcessed(state.iterations() * kObjects);
    state.counters["bytes/object"] = static_cast<double>(bytes) / kObjects;
}

/// "VmRSS:" or "VmHWM:" of this process [kB].
double Memory(const char* which) {
    std::ifstream status("/proc/self/status");
    std::string word;
    double value = 0;
    while (status >> word && word != which) {
    }
    status >> value;
    return value;
}

void InChild(auto action) {
    const pid_t child = fork();
    if (child == 0) {
        action();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
}

/// The peak of memory while the objects are read, over what they take once they are read. In
/// processes of their own, where nothing was freed before that could be taken again.
double PeakOfReading() {
    constexpr std::size_t kRoom = std::size_t{64} << 20;
    struct Exchange {
        double peak = 0;
        std::size_t size = 0;
        std::byte bytes[kRoom];
    };
    auto* const shared = static_cast<Exchange*>(
        mmap(nullptr, sizeof(Exchange), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (shared == MAP_FAILED) {
        return 0;
    }
    InChild([shared] {
        const auto bytes = Written(MakeItems());
        shared->size = std::min(bytes.size(), sizeof shared->bytes);
        std::copy_n(bytes.begin(), shared->size, shared->bytes);
    });
    InChild([shared] {
        StartLibrary();
        const std::vector<std::byte> bytes(shared->bytes, shared->bytes + shared->size);
        const double before = Memory("VmRSS:");
        auto memento = std::make_unique<idb_MementoRead>(bytes);
        const auto items = idb_ReadListObj<Holder>(*memento, "items");
        memento->Finish();
        memento.reset();
        malloc_trim(0);
        shared->peak = (Memory("VmHWM:") - before) / (Memory("VmRSS:") - before);
    });
    const double peak = shared->peak;
    munmap(shared, sizeof(Exchange));
    return peak;
}

double thePeakOfReading = 0;

void WriteOurs(benchmark::State& state) {
    const std::vector<Holder> items = MakeItems();
    std::size_t size = 0;
    for (auto _ : state) {
        const auto bytes = Written(items);
        benchmark::DoNotOptimize(bytes.data());
        size = bytes.size();
    }
    PerObject(state, size);
}

void ReadOurs(benchmark::State& state) {
    const auto bytes = Written(MakeItems());
    for (auto _ : state) {
        const idb_MementoRead memento(bytes);
        auto items = idb_ReadListObj<Holder>(memento, "items");
        state.PauseTiming();
        for (int i = 0; i < kObjects; ++i) {
            const auto at = static_cast<std::size_t>(i);
            if (!items[at]->Is(RecordAt(i % 4 == 3 ? i - 1 : i)) ||
                (i % 4 == 3 && !items[at].SharesWith(items[at - 1]))) {
                state.SkipWithError("read something else");
                break;
            }
        }
        items.clear();
        state.ResumeTiming();
    }
    PerObject(state, bytes.size());
    state.counters["peak/built"] = thePeakOfReading;
}

const char* const kFile = "idb_Memento_bench.tmp";  // on the disk of the build

void SaveOurs(benchmark::State& state) {
    const auto bytes = Written(MakeItems());
    for (auto _ : state) {
        idb_FileSave(kFile, bytes);
    }
    std::filesystem::remove(kFile);
}

/// The least there is to do: write and flush, without a temporary file and its folder.
void SavePlainly(benchmark::State& state) {
    const auto bytes = Written(MakeItems());
    for (auto _ : state) {
        const int file = open(kFile, O_WRONLY | O_CREAT | O_TRUNC, 0666);
        if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) ||
            fsync(file) != 0 || close(file) != 0) {
            state.SkipWithError("cannot write");
        }
    }
    std::filesystem::remove(kFile);
}

omu_PrimTuple MakeTuple() {
    StartLibrary();
    omu_PrimTuple tuple('s');
    for (int i = 0; i < kObjects; i += 2) {
        tuple.Put(i * 0.1);
        tuple.Put(RecordAt(i).name.c_str());
    }
    return tuple;
}

std::vector<std::byte> Written(const omu_PrimTuple& tuple) {
    idb_MementoWrite memento;
    memento.WriteObject("tuple", cls_ObjectRef::Of(&tuple));
    return memento.Finish();
}

void WriteTuple(benchmark::State& state) {
    const omu_PrimTuple tuple = MakeTuple();
    std::size_t size = 0;
    for (auto _ : state) {
        const auto bytes = Written(tuple);
        benchmark::DoNotOptimize(bytes.data());
        size = bytes.size();
    }
    PerObject(state, size);
}

void ReadTuple(benchmark::State& state) {
    const omu_PrimTuple tuple = MakeTuple();
    const auto bytes = Written(tuple);
    for (auto _ : state) {
        const idb_MementoRead memento(bytes);
        std::unique_ptr<omu_PrimTuple> read(
            static_cast<omu_PrimTuple*>(memento.ReadObject("tuple", omu_PrimTuple::TypeId())));
        state.PauseTiming();
        if (!(*read == tuple)) {
            state.SkipWithError("read something else");
        }
        read.reset();
        state.ResumeTiming();
    }
    PerObject(state, bytes.size());
}

using Attribute = mdl_PropAttr<double>;

std::vector<std::unique_ptr<Attribute>> MakeAttributes() {
    StartLibrary();
    std::vector<std::unique_ptr<Attribute>> attributes;
    for (int i = 0; i < kObjects; ++i) {
        attributes.push_back(std::make_unique<Attribute>(i * 0.1));
    }
    return attributes;
}

std::vector<std::byte> Written(const std::vector<std::unique_ptr<Attribute>>& attributes) {
    idb_MementoWrite memento;
    auto list = memento.List("attributes", kObjects);
    for (const auto& attribute : attributes) {
        list->WriteObject("", cls_ObjectRef::Of(attribute.get()));
    }
    list.reset();
    return memento.Finish();
}

void WriteAttributes(benchmark::State& state) {
    const auto attributes = MakeAttributes();
    std::size_t size = 0;
    for (auto _ : state) {
        const auto bytes = Written(attributes);
        benchmark::DoNotOptimize(bytes.data());
        size = bytes.size();
    }
    PerObject(state, size);
}

void ReadAttributes(benchmark::State& state) {
    const auto attributes = MakeAttributes();
    const auto bytes = Written(attributes);
    for (auto _ : state) {
        const idb_MementoRead memento(bytes);
        auto read = idb_ReadListObj<Attribute>(memento, "attributes");
        state.PauseTiming();
        for (std::size_t i = 0; i < read.size(); ++i) {
            if (!(*read[i] == *attributes[i]) || read[i]->GetUid() != attributes[i]->GetUid()) {
                state.SkipWithError("read something else");
                break;
            }
        }
        read.clear();
        state.ResumeTiming();
    }
    PerObject(state, bytes.size());
}

void PropagateAll(benchmark::State& state) {
    const auto attributes = MakeAttributes();
    for (auto _ : state) {
        for (const auto& attribute : attributes) {
            attribute->Propagate();
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kObjects);
}

void SetStatusOfAll(benchmark::State& state) {
    const auto attributes = MakeAttributes();
    const omu_PrimEnum<mdl_PropAttributeStateEnm, 1> freed(FREED);
    const cow_String name("u1");
    for (auto _ : state) {
        for (const auto& attribute : attributes) {
            attribute->SetStatus(name, freed, false);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kObjects);
}

/// A peer that writes and reads streams.
template <class Output, class Input, class Workload>
struct Peer {
    using Objects = typename Workload::Objects;

    static std::string Written(const Objects& objects) {
        std::ostringstream stream;
        Output(stream) << objects;
        return std::move(stream).str();
    }
    static void Write(benchmark::State& state) {
        const Objects objects = Workload::Make();
        std::size_t size = 0;
        for (auto _ : state) {
            const std::string bytes = Written(objects);
            benchmark::DoNotOptimize(bytes.data());
            size = bytes.size();
        }
        PerObject(state, size);
    }
    static void Read(benchmark::State& state) {
        const Objects objects = Workload::Make();
        const std::string bytes = Written(objects);
        for (auto _ : state) {
            std::istringstream stream(bytes);
            Objects read;
            Input(stream) >> read;
            state.PauseTiming();
            if (read.size() != objects.size() || !Workload::Same(objects, read)) {
                state.SkipWithError("read something else");
            }
            read.clear();
            state.ResumeTiming();
        }
        PerObject(state, bytes.size());
    }
};

#ifdef BENCH_HAVE_CEREAL
struct CerealOutput {
    explicit CerealOutput(std::ostream& stream) : archive(stream) {}
    void operator<<(const auto& objects) { archive(objects); }
    cereal::BinaryOutputArchive archive;
};
struct CerealInput {
    explicit CerealInput(std::istream& stream) : archive(stream) {}
    void operator>>(auto& objects) { archive(objects); }
    cereal::BinaryInputArchive archive;
};
template <class Workload>
using Cereal = Peer<CerealOutput, CerealInput, Workload>;
#endif
#ifdef BENCH_HAVE_BOOST
template <class Workload>
using Boost = Peer<boost::archive::binary_oarchive, boost::archive::binary_iarchive, Workload>;
#endif

void Register(const char* workload, const char* who, void (*run)(benchmark::State&)) {
    benchmark::RegisterBenchmark((std::string(workload) + "/" + who).c_str(), run)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

/// Ours and the peers', written and read.
template <class Workload>
void RegisterAll(const char* write, const char* read, void (*writeOurs)(benchmark::State&),
                 void (*readOurs)(benchmark::State&)) {
    Register(write, "ours", writeOurs);
#ifdef BENCH_HAVE_CEREAL
    Register(write, "cereal", &Cereal<Workload>::Write);
#endif
#ifdef BENCH_HAVE_BOOST
    Register(write, "boost", &Boost<Workload>::Write);
#endif
    Register(read, "ours", readOurs);
#ifdef BENCH_HAVE_CEREAL
    Register(read, "cereal", &Cereal<Workload>::Read);
#endif
#ifdef BENCH_HAVE_BOOST
    Register(read, "boost", &Boost<Workload>::Read);
#endif
}

}  // namespace

int main(int count, char** arguments) {
    thePeakOfReading = PeakOfReading();
    RegisterAll<Records>("write 1e6 objects", "read 1e6 objects", &WriteOurs, &ReadOurs);
    RegisterAll<Values>("write a tuple of 1e6 values", "read a tuple of 1e6 values", &WriteTuple,
                        &ReadTuple);
    RegisterAll<Attributes>("write 1e6 attributes", "read 1e6 attributes", &WriteAttributes,
                            &ReadAttributes);
    Register("save 1e6 objects and flush", "ours", &SaveOurs);
    Register("save 1e6 objects and flush", "plain", &SavePlainly);
    Register("Propagate of 1e6 attributes", "ours", &PropagateAll);
    Register("SetStatus of 1e6 attributes", "ours", &SetStatusOfAll);
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
