// A million objects {name of 8 characters, int, double, state, identity}, every fourth entry
// sharing its neighbour's object, written to a block of memory and read back.

#include "UTI_CaeUtils.h"
#include "cls_MetadataRegistrar.h"
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
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>
#endif
#ifdef BENCH_HAVE_BOOST
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/shared_ptr.hpp>
#include <boost/serialization/vector.hpp>
#endif

#include <memory>
#include <sstream>
#include <string>
#include <vector>

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

using Shared = std::vector<std::shared_ptr<Record>>;

Shared MakeShared() {
    Shared all;
    for (int i = 0; i < kObjects; ++i) {
        all.push_back(i % 4 == 3 ? all.back() : std::make_shared<Record>(RecordAt(i)));
    }
    return all;
}

bool Same(const Shared& a, const Shared& b) {
    for (int i = 0; i < kObjects; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (!(*a[at] == *b[at]) || (i % 4 == 3 && b[at] != b[at - 1])) {
            return false;
        }
    }
    return true;
}

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

/// A peer that writes and reads streams.
template <class Output, class Input>
struct Peer {
    static std::string Written(const Shared& objects) {
        std::ostringstream stream;
        Output(stream) << objects;
        return std::move(stream).str();
    }
    static void Write(benchmark::State& state) {
        const Shared objects = MakeShared();
        std::size_t size = 0;
        for (auto _ : state) {
            const std::string bytes = Written(objects);
            benchmark::DoNotOptimize(bytes.data());
            size = bytes.size();
        }
        PerObject(state, size);
    }
    static void Read(benchmark::State& state) {
        const Shared objects = MakeShared();
        const std::string bytes = Written(objects);
        for (auto _ : state) {
            std::istringstream stream(bytes);
            Shared read;
            Input(stream) >> read;
            state.PauseTiming();
            if (!Same(objects, read)) {
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
    void operator<<(const Shared& objects) { archive(objects); }
    cereal::BinaryOutputArchive archive;
};
struct CerealInput {
    explicit CerealInput(std::istream& stream) : archive(stream) {}
    void operator>>(Shared& objects) { archive(objects); }
    cereal::BinaryInputArchive archive;
};
using Cereal = Peer<CerealOutput, CerealInput>;
#endif
#ifdef BENCH_HAVE_BOOST
using Boost = Peer<boost::archive::binary_oarchive, boost::archive::binary_iarchive>;
#endif

#define WORKLOAD(function, name) \
    BENCHMARK(function)->Name(name)->Unit(benchmark::kMillisecond)->UseRealTime()

WORKLOAD(WriteOurs, "write 1e6 objects/ours");
#ifdef BENCH_HAVE_CEREAL
WORKLOAD(Cereal::Write, "write 1e6 objects/cereal");
#endif
#ifdef BENCH_HAVE_BOOST
WORKLOAD(Boost::Write, "write 1e6 objects/boost");
#endif
WORKLOAD(ReadOurs, "read 1e6 objects/ours");
#ifdef BENCH_HAVE_CEREAL
WORKLOAD(Cereal::Read, "read 1e6 objects/cereal");
#endif
#ifdef BENCH_HAVE_BOOST
WORKLOAD(Boost::Read, "read 1e6 objects/boost");
#endif
WORKLOAD(WriteTuple, "write a tuple of 1e6 values/ours");
WORKLOAD(ReadTuple, "read a tuple of 1e6 values/ours");
WORKLOAD(WriteAttributes, "write 1e6 attributes/ours");
WORKLOAD(ReadAttributes, "read 1e6 attributes/ours");

}  // namespace
