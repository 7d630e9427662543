#pragma once

#include "cls_MemoryStore.h"
#include "g3d_ColorErrorException.h"
#include "g3d_Point.h"
#include "g3d_Vector.h"
#include "idb_MementoRead.h"
#include "idb_MementoWrite.h"
#include "idb_TestModel.h"
#include "mdl_PropagatingAttribute.h"
#include "mdl_PropertyTable.h"
#include "omu_ErrorExceptions.h"
#include "omu_PrimArray.h"
#include "omu_PrimBool.h"
#include "omu_PrimBoolean.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimException.h"
#include "omu_PrimExpr.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimPath.h"
#include "omu_PrimString.h"
#include "omu_PrimTranslatedString.h"
#include "omu_PrimType.h"
#include "omu_PrimWrapper.h"
#include "omu_QueryPathMsg.h"
#include "omu_StandardTraits.h"

#include <functional>
#include <string>
#include <vector>

/// One memento of one persistent class, under the root "sample". A golden file of the same name
/// stays with the tests as long as the library: what was written once is read for ever.
struct idb_Sample {
    std::string name;
    std::function<std::vector<std::byte>()> write;
    /// Reads the root "sample" of a memento and writes what was read.
    std::function<std::vector<std::byte>(std::span<const std::byte>)> rewrite;
};

/// Objects of models are written and read as such, to which others refer.
template <class T>
std::vector<std::byte> idb_WriteSample(const T& object) {
    idb_MementoWrite memento;
    if constexpr (std::is_base_of_v<mdl_Extension, T>) {
        memento.WriteOwned("sample", cls_ObjectRef::Of(&object));
    } else {
        memento.WriteObject("sample", cls_ObjectRef::Of(&object));
    }
    return memento.Finish();
}

/// \p Root is the class as which it is read: its own, or a base that destroys it.
template <class Root>
idb_Sample idb_SampleOf(std::shared_ptr<const Root> object, std::string name = {}) {
    if (name.empty()) {
        name = omi_Singleton<cls_MetadataRegistrar>::Instance()
                   .Classes()
                   .Find(object->DynTypeId())
                   ->Name()
                   .Std();
    }
    return {std::move(name), [object] { return idb_WriteSample(*object); },
            [](std::span<const std::byte> bytes) {
                const idb_MementoRead memento(bytes);
                constexpr bool kIsKept = std::is_base_of_v<mdl_Extension, Root>;
                void* const built = kIsKept ? memento.ReadOwned("sample", Root::TypeId())
                                            : memento.ReadObject("sample", Root::TypeId());
                const std::unique_ptr<Root> read(static_cast<Root*>(built));
                memento.Finish();
                return idb_WriteSample(*read);
            }};
}

/// An attribute with a value, of a fixed identity: those of the process differ from run to run.
template <class T>
idb_Sample idb_AttributeSample(const T& value) {
    mdl_PropAttr<T> attribute;
    attribute = value;
    attribute.Propagate();
    cls_MemoryStore store;
    store.Write(attribute);
    store.Root().uid = cls_Uid(77);
    using Attribute = const mdl_PropAttr<T>;
    return idb_SampleOf(std::shared_ptr<Attribute>(static_cast<Attribute*>(store.Construct())));
}

/// One sample at least for every class that objects can be of. The library must be up.
inline std::vector<idb_Sample> idb_Samples() {
    std::vector<idb_Sample> samples;
    const auto value = [&](omu_Primitive* owned, std::string name = {}) {
        samples.push_back(idb_SampleOf(std::shared_ptr<const omu_Primitive>(owned), name));
    };
    const auto error = [&](nex_Exception* owned) {
        samples.push_back(idb_SampleOf(std::shared_ptr<const nex_Exception>(owned)));
    };
    value(new omu_PrimNumber(-7));
    value(new omu_PrimNumber(4000000000U), "omu_PrimNumber_unsigned");
    value(new omu_PrimNumber(0.1), "omu_PrimNumber_double");
    value(new omu_PrimString("m\xC3\xA4rz"));
    value(new omu_PrimString("\xE4"), "omu_PrimString_bytes");
    value(new omu_PrimEnumBase("C3D8R"));
    value(new omu_PrimBoolean(true));
    value(new omu_PrimType());
    auto* none = new omu_PrimNone;
    none->SetIsSet(true);
    value(none);
    value(new omu_PrimPath({"mdb", "models", ""}));
    value(new omu_PrimComplex(omi_complex(1, -0.5)));
    value(new omu_PrimExpr("a + b"));
    value(new omu_PrimTranslatedString("text"));
    value(new omu_PrimArray(std::vector<int>{1, -2, 3, 4}, {2, 2}));
    value(new omu_PrimArray(std::vector<float>{0.5F, -0.0F}), "omu_PrimArray_float");
    value(new omu_PrimArray(std::vector<double>{1e300}), "omu_PrimArray_double");
    value(new omu_PrimBool<2>(true));
    value(new omu_PrimWrapper(std::shared_ptr<void>(), "Part"));
    value(new omu_PrimException(omu_KeyErrorException("Part-1"), "trace"));

    auto* tuple = new omu_PrimTuple('s');
    tuple->Put(1);
    tuple->Put("b");
    value(tuple);
    auto* list = new omu_PrimList(1, 4, 'l');
    list->Append(new omu_PrimNone);
    value(list);
    auto* names = new omu_PrimDictionary<cow_String>;
    auto* numbers = new omu_PrimDictionary<int>;
    const omu_PrimHolder shared(new omu_PrimString("shared"));
    names->Put("a", shared);
    names->Put("b", shared);
    names->Put("c", 3);
    numbers->Put(-1, true);
    numbers->Put(7, "seven");
    value(names);
    value(numbers);

    samples.push_back(idb_SampleOf<omu_QueryPathMsg>(std::make_shared<const omu_QueryPathMsg>(
        cow_List<cow_String>{"mdb", "models"}, shared, true)));
    samples.push_back(idb_SampleOf(std::make_shared<const g3d_Point>(1, 2, 3)));
    samples.push_back(idb_SampleOf(std::make_shared<const g3d_Vector>(1.0F, -2.0F, 0.25F)));

    error(new omu_ArgNumberErrorException(1, 2, "arg1"));
    error(new omu_ArgTypeErrorException(1, "int", "str", "arg1"));
    error(new omu_GenericTypeErrorException());
    error(new omu_KeywordErrorException("key", "arg1"));
    error(new omu_KeywordTypeErrorException("key", "int", "str", "arg1"));
    error(new omu_TvxNameErrorException(omu_TvxNameErrorEnm::EmptyName));
    error(new omu_AttributeErrorException(omu_AttributeErrorEnm::ReadOnly, "name"));
    error(new omu_RangeErrorException("k", omu_KeywordTypeEnm::Float, "1",
                                      omu_LimitQualifierEnm::Inclusive, "9",
                                      omu_LimitQualifierEnm::Exclusive));
    error(new omu_AccessErrorException("text"));
    error(new omu_FontErrorException("text"));
    error(new omu_GuiAccessErrorException("text"));
    error(new omu_IndexErrorException(-7));
    error(new omu_KeyErrorException("text"));
    error(new omu_NameErrorException("text"));
    error(new omu_OverflowErrorException("text"));
    error(new omu_ValueErrorException("text"));
    error(new omu_ZeroDivisionErrorException("text"));
    error(new g3d_ColorErrorException("text"));

    samples.push_back(idb_AttributeSample<cow_String>("text"));
    samples.push_back(idb_AttributeSample<int>(-7));
    samples.push_back(idb_AttributeSample<double>(0.1));
    samples.push_back(idb_AttributeSample<bool>(true));
    samples.push_back(idb_AttributeSample<cls_xpListInt>({1, -2}));
    samples.push_back(idb_AttributeSample<cls_xp1DArrayInt>({1, -2}));
    samples.push_back(idb_AttributeSample<cls_xpListString>({"a", "b"}));
    cls_xp1DArrayListFloat floats;
    floats.Append(0.5F);
    samples.push_back(idb_AttributeSample(floats));

    std::uint64_t last = 0;
    const cls_UidScope uids(last);
    auto table = std::make_shared<mdl_PropertyTable>(
        std::vector<mdl_PropertyColumn>{{"T", mdl_ColumnType::Float},
                                        {"cycles", mdl_ColumnType::Integer},
                                        {"source", mdl_ColumnType::String}},
        true);
    omu_PrimTuple row(3, 's');
    row.Put(20.5);
    row.Put(7);
    row.Put("test");
    table->AddRow(row);
    table->AddEmptyFirstRow();
    samples.push_back(idb_SampleOf<mdl_PropertyTable>(table));
    samples.push_back(idb_SampleOf<mdl_Extension>(std::make_shared<const mdl_Repository>("loads")));
    // Its members are stored by its owner.
    idb_TestMember::Know();
    samples.push_back(idb_SampleOf<mdl_Extension>(idb_TestMember::Model()));
    return samples;
}
