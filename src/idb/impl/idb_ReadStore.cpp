#include "idb_ReadStore.h"

#include "idb_MementoCheck.h"
#include "idb_MementoErrorException.h"

#include <algorithm>

using namespace idb_cbor;

idb_ReadStore::idb_ReadStore(std::span<const std::byte> bytes)
    : _bytes(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()) {
    idb_MementoCheck(*this).Run();
}

idb_ReadStore::~idb_ReadStore() {
    for (Shareable& object : _objects) {
        if (object.state == Shareable::Shared) {
            object.ops->destroy(object.holder);
        }
    }
}

void idb_ReadStore::CheckUsable() const {
    if (_isBroken) {
        idb_MementoErrorException("Memento cannot be read further: an object could not be built")
            .Throw("generated/idb/impl/idb_MementoRead", __LINE__);
    }
}

void idb_ReadStore::Finish() {
    CheckUsable();
    if (_waiting == 0) {
        return;
    }
    _isBroken = true;
    const auto lost = std::find_if(_objects.begin(), _objects.end(), [](const Shareable& object) {
        return object.pending != Shareable::kNone;
    });
    idb_RaiseAt(lost->offset, "something refers to an object of " + lost->type->Described() +
                                  ", which nobody read as its owner");
}

void idb_ReadStore::Seek(idb_Sequence& sequence, std::uint64_t index) {
    if (index < sequence.next) {
        sequence.next = 0;
        sequence.at = sequence.start;
    }
    if (sequence.next < index) {
        idb_Cursor cursor = At(sequence.at);
        for (; sequence.next < index; ++sequence.next) {
            cursor.Skip();
        }
        sequence.at = cursor.At();
    }
}

void idb_ReadStore::CheckType(const idb_ReadClass& type, unsigned baseTypeId,
                              std::size_t at) const {
    if (!type.Inherits(baseTypeId)) {
        const cls_ClassMetadata* wanted =
            omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().Find(baseTypeId);
        idb_RaiseAt(at, "an object of " + type.Described() + " where class " +
                            (wanted == nullptr ? std::to_string(baseTypeId >> 16) + "." +
                                                     std::to_string(baseTypeId & 0xFFFFU)
                                               : wanted->Name().Std()) +
                            " is expected");
    }
}

void* idb_ReadStore::Build(idb_Cursor& cursor, const idb_Head& array, unsigned baseTypeId,
                           bool isKept) {
    const idb_Head index = cursor.Head();
    if (!array.Is(kArray) || !index.Is(kUnsigned)) {
        idb_RaiseAt(array.at, std::string(index.first == kNull ? "a list" : array.Name()) +
                                  " where an object is expected");
    }
    const idb_ReadClass& type = _classes[static_cast<std::size_t>(index.value)];
    CheckType(type, baseTypeId, index.at);
    if (_budget.objects == 0 || _budget.depth >= kMaxDepth) {
        idb_RaiseAt(array.at, _budget.objects == 0
                                  ? "an object is read twice"
                                  : "objects lie in each other too deep to be built");
    }
    --_budget.objects;

    idb_Sequence sequence;
    sequence.uids = cursor.At();
    for (std::size_t level = 0; level < type.levels; ++level) {
        static_cast<void>(cursor.Head());
    }
    sequence.start = sequence.at = cursor.At();
    sequence.count = type.FieldCount();
    sequence.isKept = isKept;
    idb_MementoRead visitor(*this);
    visitor._sequence = &sequence;
    visitor._class = &type;

    void* object = nullptr;
    ++_budget.depth;
    try {
        object = type.metadata->Ctor(visitor);
    } catch (const idb_MementoErrorException&) {
        _isBroken = true;
        throw;
    } catch (const nex_Exception& error) {
        _isBroken = true;
        idb_RaiseAt(array.at, "an object of " + type.Described() +
                                  " cannot be built: " + std::string(error.AsString().View()));
    } catch (...) {
        _isBroken = true;
        throw;
    }
    --_budget.depth;

    // What the class did not ask for. The budget is not touched: nothing may raise here, where the
    // object has no owner yet, and the end of an object is looked for only once.
    idb_Budget spare;
    spare.bytes = _bytes.size();
    cursor = idb_Cursor(_bytes, sequence.at, spare);
    for (; sequence.next < sequence.count; ++sequence.next) {
        cursor.Skip();
    }
    cursor = At(cursor.At());
    return object;
}

std::uint32_t idb_ReadStore::NumberAt(std::size_t offset) {
    if (_nextObject >= _objects.size() || _objects[_nextObject].offset != offset) {
        const auto found = std::lower_bound(
            _objects.begin(), _objects.end(), offset,
            [](const Shareable& object, std::size_t wanted) { return object.offset < wanted; });
        _nextObject = static_cast<std::uint32_t>(found - _objects.begin());
    }
    return _nextObject++;
}

idb_ReadStore::Shareable& idb_ReadStore::Object(std::uint64_t number, std::size_t at) {
    if (number >= _objects.size()) {
        idb_RaiseAt(at, "object " + std::to_string(number) + " is not there");
    }
    return _objects[static_cast<std::size_t>(number)];
}

void idb_ReadStore::Share(std::uint64_t number, unsigned baseTypeId, const cls_HolderOps& ops,
                          void* holder, std::size_t at, idb_Cursor* inPlace) {
    Shareable& shared = Object(number, at);
    CheckType(*shared.type, baseTypeId, at);
    if (shared.state == Shareable::Unbuilt) {
        // A class may ask for its fields in another order than they lie in: the object is then
        // built where it is first asked for.
        idb_Cursor elsewhere = At(shared.offset);
        idb_Cursor& cursor = inPlace != nullptr ? *inPlace : elsewhere;
        const idb_Head array = cursor.Head();
        ops.adopt(holder, Build(cursor, array, baseTypeId, false));
        ops.share(shared.holder, holder);
        shared.ops = &ops;
        shared.state = Shareable::Shared;
    } else if (shared.state == Shareable::Shared && *shared.ops->type == *ops.type) {
        ops.assign(holder, shared.holder);
        if (inPlace != nullptr) {
            inPlace->Skip();
        }
    } else {
        idb_RaiseAt(at, "an object of " + shared.type->Described() +
                            " is shared in places that keep it in different ways");
    }
}

void idb_ReadStore::CheckTarget(std::uint64_t number, unsigned baseTypeId, std::size_t at) {
    CheckType(*Object(number, at).type, baseTypeId, at);
}

void idb_ReadStore::SetOwned(std::uint32_t number, void* object) {
    Shareable& owned = _objects[number];
    owned.state = Shareable::Owned;
    owned.owned = object;
    for (std::uint32_t next = std::exchange(owned.pending, Shareable::kNone);
         next != Shareable::kNone; next = _references[next].next) {
        _references[next].set(_references[next].place, object);
        --_waiting;
    }
}

void idb_ReadStore::AddReference(std::uint32_t number, void* place, void (*set)(void*, void*)) {
    Shareable& target = _objects[number];
    if (target.state == Shareable::Owned) {
        set(place, target.owned);
        return;
    }
    _references.push_back({place, set, target.pending});
    target.pending = static_cast<std::uint32_t>(_references.size() - 1);
    ++_waiting;
}
