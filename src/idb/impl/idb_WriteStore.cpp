#include "idb_WriteStore.h"

#include "cls_MetadataRegistrar.h"
#include "idb_Crc32c.h"
#include "idb_MementoErrorException.h"
#include "idb_MementoWrite.h"
#include "omi_Singleton.h"
#include "typ_ArchCompTable.h"

#include <algorithm>

using idb_cbor::HeadSize;
using idb_cbor::PutHead;

namespace {

constexpr const char* kSource = "generated/idb/impl/idb_MementoWrite";

const cls_ClassMetadata* MetadataOf(unsigned typeId) {
    return omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().Find(typeId);
}

}  // namespace

idb_WriteStore::idb_WriteStore() { _frames.push_back({Frame::Kind::Roots}); }

void idb_WriteStore::Fail(std::string text) {
    if (_fault.empty()) {
        _fault = "Memento cannot be written: " + std::move(text);
    }
    idb_MementoErrorException(atr_String(_fault)).Throw(kSource, __LINE__);
}

std::string idb_WriteStore::ClassName(unsigned typeId) const {
    if (const cls_ClassMetadata* metadata = MetadataOf(typeId)) {
        return metadata->Name().Std();
    }
    const typ_Entry* entry = typ_ArchCompTable::Find(typeId);
    if (entry != nullptr && entry->name != nullptr) {
        return entry->name;
    }
    return "of type " + std::to_string(typeId >> 16) + "." + std::to_string(typeId & 0xFFFFU);
}

void idb_WriteStore::CheckTurn(std::size_t frame) {
    if (!_fault.empty()) {
        Fail({});
    }
    if (_isFinished) {
        Fail("it is finished");
    }
    if (_body.IsBroken()) {
        Fail("memory ran out");
    }
    if (_frames.size() - 1 != frame) {
        Fail("something is written while a list or an object within it is open");
    }
}

// Values.

idb_cbor::Encoder& idb_WriteStore::UnexpectedValue(std::size_t frame, unsigned level,
                                                   const char* name) {
    CheckTurn(frame);
    Frame& top = _frames.back();
    switch (top.kind) {
        case Frame::Kind::Roots:
            NewRoot(name);
            break;
        case Frame::Kind::List:
            if (top.field == 0) {
                Fail("more elements are written to a list than announced");
            }
            --top.field;
            break;
        case Frame::Kind::Object:
            if (level >= top.level) {
                Fail("class " + ClassName(top.typeId) + " writes field " + name +
                     " before it opens the class level");
            }
            Learn(top);
            _learned[top.learned].fields.emplace_back(level, name);
            ++top.field;
            break;
    }
    return _body;
}

void idb_WriteStore::NewRoot(const char* name) {
    if (std::find(_roots.begin(), _roots.end(), name) != _roots.end()) {
        Fail("two roots are named " + std::string(name));
    }
    _roots.emplace_back(name);
    _body.Text(name);
}

std::size_t idb_WriteStore::OpenList(std::size_t frame, unsigned level, const char* name,
                                     int count) {
    if (count < 0) {
        Fail("list " + std::string(name) + " of " + std::to_string(count) + " elements");
    }
    idb_cbor::Encoder& to = Value(frame, level, name);
    if (_frames.size() >= idb_cbor::kMaxDepth) {
        Fail("objects and lists lie in each other more than " +
             std::to_string(idb_cbor::kMaxDepth) + " deep");
    }
    // An array that begins with null is a list, one that begins with a number an object.
    to.Head(idb_cbor::kArray, static_cast<std::uint64_t>(count) + 1);
    to.Byte(idb_cbor::kNull);
    _frames.push_back({Frame::Kind::List});
    _frames.back().field = static_cast<std::size_t>(count);
    return _frames.size() - 1;
}

void idb_WriteStore::CloseList(std::size_t frame) noexcept {
    if (!_fault.empty()) {
        return;  // the frames are not looked at any more
    }
    if (_frames.size() - 1 != frame || _frames.back().field != 0) {
        _fault = "Memento cannot be written: fewer elements are written to a list than announced";
        return;
    }
    const int height = _frames.back().height + 1;
    _frames.pop_back();
    _frames.back().height = std::max(_frames.back().height, height);
}

// Class levels.

void idb_WriteStore::Start(std::size_t frame, unsigned level, unsigned typeId, const cls_Uid& uid) {
    CheckTurn(frame);
    Frame& top = _frames.back();
    if (top.kind != Frame::Kind::Object || level != top.level) {
        Fail("class level " + ClassName(typeId) + " is opened out of turn");
    }
    if (level == 0) {
        top.typeId = typeId;
        top.headAt = _body.Size();
        idb_WriteClass* shape = _recent[typeId % _recent.size()];
        if (shape == nullptr || shape->typeId != typeId) {
            const auto last = std::find_if(_last.begin(), _last.end(), [&](const auto& entry) {
                return entry.first == typeId;
            });
            shape = last == _last.end() ? nullptr : last->second;
            _recent[typeId % _recent.size()] = shape;
        }
        top.shape = shape;
        if (shape != nullptr) {
            _body.Head(idb_cbor::kArray, shape->Length());
            _body.Head(idb_cbor::kUnsigned, shape->index);
        } else {
            top.mark = _marks.size();
            _marks.push_back({_body.Size(), 0, Mark::Head, 0});
            top.learned = _learned.size();
            _learned.emplace_back();
        }
    } else if (top.field != 0) {
        Fail("class " + ClassName(top.typeId) + " opens level " + ClassName(typeId) +
             " behind a field");
    } else if (top.shape != nullptr &&
               (level >= top.shape->levels.size() || top.shape->levels[level] != typeId)) {
        Learn(top);
    }
    if (top.shape == nullptr) {
        _learned[top.learned].levels.push_back(typeId);
    }
    ++top.level;
    _body.Head(idb_cbor::kUnsigned, uid.Value());
}

void idb_WriteStore::CheckBase(std::size_t frame, unsigned level, unsigned typeId) {
    CheckTurn(frame);
    const Frame& top = _frames.back();
    if (top.kind != Frame::Kind::Object || level + 1 != top.level) {
        Fail("base level " + ClassName(typeId) + " is asked for out of turn");
    }
}

/// From here on the frame's object is taken down field by field: it differs from what objects of
/// its class wrote before.
void idb_WriteStore::Learn(Frame& frame) {
    if (frame.shape == nullptr) {
        return;
    }
    const idb_WriteClass& shape = *frame.shape;
    Learned learned;
    learned.levels.assign(shape.levels.begin(), shape.levels.begin() + frame.level);
    for (std::size_t i = 0; i < frame.field; ++i) {
        learned.fields.emplace_back(shape.fields[i].level, shape.fields[i].name);
    }
    // The head that is written already goes, and another comes in at the end.
    const auto dropped =
        static_cast<std::uint8_t>(HeadSize(shape.Length()) + HeadSize(shape.index));
    const auto place =
        std::upper_bound(_marks.begin(), _marks.end(), frame.headAt,
                         [](std::size_t offset, const Mark& mark) { return offset < mark.offset; });
    frame.mark = static_cast<std::size_t>(place - _marks.begin());
    _marks.insert(place, {frame.headAt, 0, Mark::Head, dropped});
    frame.learned = _learned.size();
    _learned.push_back(std::move(learned));
    frame.shape = nullptr;
}

void idb_WriteStore::EndObject() {
    Frame& top = _frames.back();
    if (top.level == 0) {
        Fail("an object opens no class level");
    }
    if (top.shape != nullptr &&
        (top.field != top.shape->fields.size() || top.level != top.shape->levels.size())) {
        Learn(top);
    }
    if (top.shape == nullptr) {
        const int entry = Resolve(_learned[top.learned]);
        _learned.pop_back();
        _marks[top.mark].target = static_cast<std::uint32_t>(entry);
        idb_WriteClass* shape = _classes[static_cast<std::size_t>(entry)].get();
        _recent[top.typeId % _recent.size()] = shape;
        const auto last = std::find_if(_last.begin(), _last.end(), [&](const auto& known) {
            return known.first == top.typeId;
        });
        if (last == _last.end()) {
            _last.emplace_back(top.typeId, shape);
        } else {
            last->second = shape;
        }
    }
    const int height = top.height + 1;
    _frames.pop_back();
    _frames.back().height = std::max(_frames.back().height, height);
}

int idb_WriteStore::Resolve(const Learned& learned) {
    const unsigned own = learned.levels.front();
    const cls_ClassMetadata* metadata = MetadataOf(own);
    if (metadata == nullptr || !metadata->IsConcrete()) {
        Fail("objects of class " + ClassName(own) + " could not be read back: it is " +
             (metadata == nullptr ? "not registered" : "abstract"));
    }
    int base = -1;
    std::size_t field = 0;
    for (std::size_t level = learned.levels.size(); level-- > 0;) {
        std::vector<std::string> names;
        for (; field < learned.fields.size() && learned.fields[field].first == level; ++field) {
            const std::string& name = learned.fields[field].second;
            if (std::find(names.begin(), names.end(), name) != names.end()) {
                Fail("class " + ClassName(learned.levels[level]) + " writes field " + name +
                     " twice");
            }
            names.push_back(name);
        }
        base = Entry(learned.levels[level], base, std::move(names));
    }
    if (field != learned.fields.size()) {
        Fail("class " + ClassName(own) + " writes field " + learned.fields[field].second +
             " before its base level");
    }
    return base;
}

int idb_WriteStore::Entry(unsigned typeId, int base, std::vector<std::string> ownFields) {
    const cls_ClassMetadata* metadata = MetadataOf(typeId);
    const unsigned baseId = base < 0 ? 1 : _classes[static_cast<std::size_t>(base)]->typeId;
    if (metadata != nullptr && metadata->BaseTypeId() != baseId) {
        Fail("class " + ClassName(typeId) + " does not write the level of its base class " +
             ClassName(metadata->BaseTypeId()));
    }
    for (const auto& known : _classes) {
        if (known->typeId == typeId && known->base == base && known->ownFields == ownFields) {
            return static_cast<int>(known->index);
        }
    }
    auto added = std::make_unique<idb_WriteClass>();
    added->typeId = typeId;
    added->index = static_cast<unsigned>(_classes.size());
    added->base = base;
    added->name = ClassName(typeId);
    added->version = metadata == nullptr ? 0 : metadata->Version();
    added->levels.push_back(typeId);
    if (base >= 0) {
        const idb_WriteClass& below = *_classes[static_cast<std::size_t>(base)];
        added->levels.insert(added->levels.end(), below.levels.begin(), below.levels.end());
        added->fields = below.fields;
        for (idb_WriteClass::Field& field : added->fields) {
            ++field.level;
        }
    }
    for (const std::string& name : ownFields) {
        added->fields.push_back({name, 0});
    }
    added->ownFields = std::move(ownFields);
    _classes.push_back(std::move(added));
    return static_cast<int>(_classes.back()->index);
}

// Objects.

void idb_WriteStore::WriteBody(const cls_ObjectRef& object) {
    if (_frames.size() >= idb_cbor::kMaxDepth) {
        Fail("objects and lists lie in each other more than " +
             std::to_string(idb_cbor::kMaxDepth) + " deep");
    }
    _frames.push_back({Frame::Kind::Object});
    try {
        object.dbWrite(object.object, idb_MementoWrite(*this, _frames.size() - 1, 0));
        CheckTurn(_frames.size() - 1);
        EndObject();
    } catch (...) {
        // The frames do not fit the visitors any more.
        if (_fault.empty()) {
            _fault = "Memento cannot be written: an object raised an error while it was written";
        }
        throw;
    }
}

void idb_WriteStore::Object(std::size_t frame, unsigned level, const char* name,
                            const cls_ObjectRef& object) {
    idb_cbor::Encoder& to = Value(frame, level, name);
    if (object.object == nullptr) {
        to.Byte(idb_cbor::kNull);
    } else {
        WriteBody(object);
    }
}

std::uint32_t idb_WriteStore::Identify(std::size_t frame, unsigned level, const char* name,
                                       const cls_ObjectRef& object) {
    Value(frame, level, name);
    return _identities.FindOrAdd(object.object, object.typeId);
}

void idb_WriteStore::Shared(std::size_t frame, unsigned level, const char* name,
                            const cls_ObjectRef& object, const cls_HolderRef& holder) {
    if (!holder.isShared && frame != 0) {
        // The only holder of its object, and itself reached only once.
        Object(frame, level, name, object);
        return;
    }
    const std::uint32_t index = Identify(frame, level, name, object);
    switch (_identities[index].keeping) {
        case idb_IdentityMap::Keeping::Shared:
            Repeat(index);
            break;
        case idb_IdentityMap::Keeping::Owned:
            Fail("an object of class " + ClassName(object.typeId) + " is owned, and shared too");
        case idb_IdentityMap::Keeping::Unknown:
            _identities[index].keeping = idb_IdentityMap::Keeping::Shared;
            _identities.Keep(index, holder);
            Define(index, object);
            break;
    }
}

void idb_WriteStore::Owned(std::size_t frame, unsigned level, const char* name,
                           const cls_ObjectRef& object) {
    const std::uint32_t index = Identify(frame, level, name, object);
    if (_identities[index].keeping != idb_IdentityMap::Keeping::Unknown) {
        Fail("an object of class " + ClassName(object.typeId) + " has two owners");
    }
    _identities[index].keeping = idb_IdentityMap::Keeping::Owned;
    Define(index, object);
}

void idb_WriteStore::Reference(std::size_t frame, unsigned level, const char* name,
                               const cls_ObjectRef& object) {
    const std::uint32_t index = Identify(frame, level, name, object);
    _identities[index].isReached = true;
    _marks.push_back({_body.Size(), index, Mark::Refer, 0});
}

void idb_WriteStore::Define(std::uint32_t identity, const cls_ObjectRef& object) {
    _marks.push_back({_body.Size(), identity, Mark::Define, 0});
    _identities[identity].isOpen = true;
    // The height of what is within is found on a parent that has nothing else.
    const int before = std::exchange(_frames.back().height, 0);
    WriteBody(object);
    idb_IdentityMap::Identity& written = _identities[identity];
    written.height = _frames.back().height;
    written.isOpen = false;
    _frames.back().height = std::max(before, written.height);
}

void idb_WriteStore::Repeat(std::uint32_t identity) {
    idb_IdentityMap::Identity& written = _identities[identity];
    if (written.isOpen) {
        Fail("an object of class " + ClassName(written.typeId) + " contains itself");
    }
    if (_frames.size() + static_cast<std::size_t>(written.height) > idb_cbor::kMaxDepth) {
        Fail("objects and lists lie in each other more than " +
             std::to_string(idb_cbor::kMaxDepth) + " deep");
    }
    written.isReached = true;
    _marks.push_back({_body.Size(), identity, Mark::Share, 0});
    _frames.back().height = std::max(_frames.back().height, written.height);
}

// The whole.

std::vector<std::byte> idb_WriteStore::Finish() {
    CheckTurn(0);
    for (const idb_IdentityMap::Identity& identity : _identities) {
        if (identity.keeping == idb_IdentityMap::Keeping::Unknown) {
            Fail("an object of class " + ClassName(identity.typeId) +
                 " is referred to, but nobody who is written owns it");
        }
    }
    std::uint32_t number = 0;
    for (const Mark& mark : _marks) {
        if (mark.kind == Mark::Define && _identities[mark.target].isReached) {
            _identities[mark.target].number = number++;
        }
    }
    for (const Mark& mark : _marks) {
        if (mark.kind == Mark::Refer &&
            _identities[mark.target].keeping == idb_IdentityMap::Keeping::Shared) {
            Fail("an object of class " + ClassName(_identities[mark.target].typeId) +
                 " is referred to, but shared by holders, not owned");
        }
    }

    idb_cbor::Encoder head;
    head.Head(idb_cbor::kTag, idb_cbor::kTagSelfDescribed);
    head.Head(idb_cbor::kMap, 2);
    head.Text("format");
    head.Text(idb_cbor::kFormatName);
    head.Text("version");
    head.Int(idb_cbor::kFormatVersion);
    head.Head(idb_cbor::kArray, _classes.size());
    for (const auto& entry : _classes) {
        head.Head(idb_cbor::kArray, 4);
        head.Text(entry->name);
        head.Int(entry->version);
        if (entry->base < 0) {
            head.Byte(idb_cbor::kNull);
        } else {
            head.Int(entry->base);
        }
        head.Head(idb_cbor::kArray, entry->ownFields.size());
        for (const std::string& field : entry->ownFields) {
            head.Text(field);
        }
    }
    head.Head(idb_cbor::kMap, _roots.size());

    // A mark adds at most two heads.
    constexpr std::size_t kMostOfMark = 18;
    std::vector<std::byte> bytes(head.Size() + _body.Size() + _marks.size() * kMostOfMark +
                                 idb_cbor::kTrailerSize);
    auto* const start = reinterpret_cast<std::uint8_t*>(bytes.data());
    std::uint8_t* to = start;
    const auto copy = [&to](const std::uint8_t* from, std::size_t count) {
        if (count != 0) {
            std::memcpy(to, from, count);
            to += count;
        }
    };
    copy(head.Data(), head.Size());
    std::size_t copied = 0;
    for (const Mark& mark : _marks) {
        copy(_body.Data() + copied, mark.offset - copied);
        copied = mark.offset + mark.dropped;
        switch (mark.kind) {
            case Mark::Define:
                if (_identities[mark.target].isReached) {
                    to = PutHead(to, idb_cbor::kTag, idb_cbor::kTagShareable);
                }
                break;
            case Mark::Share:
                to = PutHead(to, idb_cbor::kTag, idb_cbor::kTagSharedRef);
                to = PutHead(to, idb_cbor::kUnsigned, _identities[mark.target].number);
                break;
            case Mark::Refer:
                to = PutHead(to, idb_cbor::kTag, idb_cbor::kTagIdentifier);
                to = PutHead(to, idb_cbor::kUnsigned, _identities[mark.target].number);
                break;
            case Mark::Head:
                to = PutHead(to, idb_cbor::kArray, _classes[mark.target]->Length());
                to = PutHead(to, idb_cbor::kUnsigned, mark.target);
                break;
        }
    }
    copy(_body.Data() + copied, _body.Size() - copied);
    const std::uint32_t checksum = idb_Crc32c(start, static_cast<std::size_t>(to - start));
    to = PutHead(to, idb_cbor::kBytes, 4);
    idb_cbor::StoreBig(to, checksum, 4);
    bytes.resize(static_cast<std::size_t>(to + 4 - start));
    _isFinished = true;
    return bytes;
}
