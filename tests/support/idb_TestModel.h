#pragma once

#include "idb_ReadMapString2Obj.h"
#include "mdl_Repository.h"
#include "omu_HolderField.h"
#include "omu_PrimString.h"
#include "typ_ArchCompTable.h"

/// How the fields of idb_TestMember are stored that the library has no traits for: references,
/// and lists and maps of objects.
struct idb_TestFields {
    template <cls_CollectionType Collection, unsigned ClassId>
    struct Object {
        static constexpr cls_AttributeType kType = cls_AttributeType::Object;
        static constexpr unsigned kClassId = ClassId;
        static constexpr cls_CollectionType kCollection = Collection;
    };
    template <class T>
    struct Reference : Object<cls_CollectionType::Single, T::TypeId()> {
        static void Write(const cls_WriteVisitor& to, const char* name, T* const& target) {
            to.WriteReference(name, cls_ObjectRef::Of(target));
        }
        static void Read(const cls_ReadVisitor& from, const char* name, T*& target) {
            cls_ReadReference(from, name, target);
        }
    };
    struct Numbered : Object<cls_CollectionType::IntMap, omu_Primitive::TypeId()> {
        static void Write(const cls_WriteVisitor& to, const char* name, const auto& values) {
            idb_WriteMapInt2Obj(to, name, values);
        }
        static void Read(const cls_ReadVisitor& from, const char* name, auto& values) {
            values = idb_ReadMapInt2Obj<omu_PrimHolder>(from, name);
        }
    };
    template <class T>
    struct Named : Object<cls_CollectionType::StringMap, T::TypeId()> {
        static void Write(const cls_WriteVisitor& to, const char* name, const auto& objects) {
            idb_WriteMapString2Obj(to, name, objects);
        }
        static void Read(const cls_ReadVisitor& from, const char* name, auto& objects) {
            objects = idb_ReadMapString2Obj<T>(from, name);
        }
    };
};

/// What a host's models and parts consist of, in one class: a repository of members, references to
/// members anywhere, values that several share, and blocks of numbers.
class idb_TestMember : public mdl_Extension {
public:
    static constexpr cls_ClassInfo kClass{"test_Member", 0x5C0001, mdl_Extension::TypeId(), 1};
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    explicit idb_TestMember(cow_String name) : mdl_Extension(std::move(name)) {}
    explicit idb_TestMember(const cls_ReadVisitor& visitor)
        : mdl_Extension(*visitor.Base(mdl_Extension::TypeId())) {
        cls_ReadFields(*this, visitor);
    }
    [[nodiscard]] unsigned DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override {
        cls_WriteLevel(*this, GetUid(), visitor);
    }
    [[nodiscard]] mdl_Extension* Copy() const override { return new idb_TestMember(Name()); }

    idb_TestMember& Add(const char* name) {
        return static_cast<idb_TestMember&>(members.Add(std::make_unique<idb_TestMember>(name)));
    }
    [[nodiscard]] idb_TestMember& Get(const char* name) {
        return dynamic_cast<idb_TestMember&>(members.Get(name));
    }

    idb_TestMember* other = nullptr;  // owned elsewhere
    omu_PrimHolder value;
    std::vector<int> labels;
    std::vector<float> weights;
    std::vector<double> places;
    mdl_Repository members;
    std::map<int, omu_PrimHolder> steps;
    std::map<cow_String, std::unique_ptr<idb_TestMember>> sets;

    /// Makes the class known to the library, which must be up.
    static void Know() {
        static constexpr typ_Entry kTypes[] = {
            {typ_Entry::Unused, 1, nullptr},
            {typ_Entry::Persistent, kClass.baseTypeId, kClass.storedName}};
        typ_ArchCompTable::InsertEntry(0x5C, {kTypes, std::size(kTypes)});
        cls_RegisterClass<idb_TestMember, cow_COW<mdl_Extension, cow_Virtual<mdl_Extension>>>(
            omi_Singleton<cls_MetadataRegistrar>::Instance().Classes());
    }
    /// A model with something in every field; its identities are always the same.
    [[nodiscard]] static std::unique_ptr<idb_TestMember> Model() {
        std::uint64_t last = 0;
        const cls_UidScope uids(last);
        auto model = std::make_unique<idb_TestMember>("Model-1");
        idb_TestMember& plate = model->Add("plate");
        idb_TestMember& bolt = model->Add("bolt");  // the order is not that of the names
        idb_TestMember& head = bolt.Add("head");
        plate.other = &head;  // forward, across levels
        bolt.other = &plate;
        head.other = model.get();  // to what owns it
        plate.value = omu_PrimHolder(new omu_PrimString("steel"));
        bolt.value = plate.value;
        plate.labels = {1, -2};
        plate.weights = {0.5F};
        plate.places = {1e300, -0.0};
        model->steps[-1] = plate.value;
        model->steps[3] = omu_PrimHolder();
        auto& set = model->sets["all"] = std::make_unique<idb_TestMember>("all");
        set->other = &bolt;
        return model;
    }

private:
    friend struct ::cls_Access;
    using Base = mdl_Extension;
    static constexpr auto Fields() {
        using Self = idb_TestMember;
        using Sets = std::map<cow_String, std::unique_ptr<Self>>;
        return std::tuple(
            NameField(),
            cls_Field<Self, Self*, idb_TestFields::Reference<Self>>("other", &Self::other),
            cls_Field("value", &Self::value), cls_Field("labels", &Self::labels),
            cls_Field("weights", &Self::weights), cls_Field("places", &Self::places),
            cls_Field("members", &Self::members),
            cls_Field<Self, std::map<int, omu_PrimHolder>, idb_TestFields::Numbered>("steps",
                                                                                     &Self::steps),
            cls_Field<Self, Sets, idb_TestFields::Named<Self>>("sets", &Self::sets));
    }
};
