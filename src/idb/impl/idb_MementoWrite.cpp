#include "idb_MementoWrite.h"

#include "idb_WriteStore.h"

#include <algorithm>
#include <array>

idb_MementoWrite::idb_MementoWrite()
    : _own(std::make_unique<idb_WriteStore>()), _store(_own.get()) {}

idb_MementoWrite::idb_MementoWrite(idb_WriteStore& store, std::size_t frame,
                                   unsigned level) noexcept
    : _store(&store), _frame(frame), _level(level) {}

idb_MementoWrite::~idb_MementoWrite() {
    if (_isList) {
        _store->CloseList(_frame);
    }
}

std::vector<std::byte> idb_MementoWrite::Finish() { return _store->Finish(); }

bool idb_MementoWrite::StartWrite(unsigned typeId, const cls_Uid& uid) const {
    _store->Start(_frame, _level, typeId, uid);
    return true;
}

std::unique_ptr<cls_WriteVisitor> idb_MementoWrite::Base(unsigned typeId) const {
    _store->CheckBase(_frame, _level, typeId);
    return std::unique_ptr<cls_WriteVisitor>(new idb_MementoWrite(*_store, _frame, _level + 1));
}

void idb_MementoWrite::Write(const char* name, char value) const {
    // One character: a text of one byte, or a byte string of one beyond ASCII.
    _store->Value(_frame, _level, name).Text({&value, 1});
}

void idb_MementoWrite::Write(const char* name, bool value) const {
    _store->Value(_frame, _level, name).Byte(value ? idb_cbor::kTrue : idb_cbor::kFalse);
}

void idb_MementoWrite::Write(const char* name, int value) const {
    _store->Value(_frame, _level, name).Int(value);
}

void idb_MementoWrite::Write(const char* name, unsigned int value) const {
    _store->Value(_frame, _level, name).Int(value);
}

void idb_MementoWrite::Write(const char* name, float value) const {
    _store->Value(_frame, _level, name).Float(value);
}

void idb_MementoWrite::Write(const char* name, double value) const {
    _store->Value(_frame, _level, name).Double(value);
}

void idb_MementoWrite::Write(const char* name, const cow_String& value) const {
    _store->Value(_frame, _level, name).Text(value.View());
}

void idb_MementoWrite::Write(const char* name, const atr_String& value) const {
    _store->Value(_frame, _level, name).Text(value.View());
}

namespace {

template <class N>
void PutNumbers(idb_cbor::Encoder& to, std::uint64_t tag, std::span<const N> values) {
    to.Head(idb_cbor::kTag, tag);
    to.Head(idb_cbor::kBytes, values.size_bytes());
    if constexpr (std::endian::native == std::endian::little) {
        to.Raw(values.data(), values.size_bytes());
    } else {
        for (const N value : values) {
            auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(N)>>(value);
            std::reverse(bytes.begin(), bytes.end());
            to.Raw(bytes.data(), bytes.size());
        }
    }
}

}  // namespace

void idb_MementoWrite::Write(const char* name, std::span<const int> values) const {
    PutNumbers(_store->Value(_frame, _level, name), idb_cbor::kTagInts, values);
}

void idb_MementoWrite::Write(const char* name, std::span<const float> values) const {
    PutNumbers(_store->Value(_frame, _level, name), idb_cbor::kTagFloats, values);
}

void idb_MementoWrite::Write(const char* name, std::span<const double> values) const {
    PutNumbers(_store->Value(_frame, _level, name), idb_cbor::kTagDoubles, values);
}

std::unique_ptr<cls_WriteVisitor> idb_MementoWrite::List(const char* name, int count) const {
    std::unique_ptr<idb_MementoWrite> list(new idb_MementoWrite(*_store, 0, 0));
    list->_frame = _store->OpenList(_frame, _level, name, count);
    list->_isList = true;
    return list;
}

void idb_MementoWrite::WriteObject(const char* name, const cls_ObjectRef& object) const {
    _store->Object(_frame, _level, name, object);
}

void idb_MementoWrite::WriteShared(const char* name, const cls_ObjectRef& object,
                                   const cls_HolderRef& holder) const {
    if (object.object == nullptr) {
        WriteObject(name, object);
    } else {
        _store->Shared(_frame, _level, name, object, holder);
    }
}

void idb_MementoWrite::WriteOwned(const char* name, const cls_ObjectRef& object) const {
    if (object.object == nullptr) {
        WriteObject(name, object);
    } else {
        _store->Owned(_frame, _level, name, object);
    }
}

void idb_MementoWrite::WriteReference(const char* name, const cls_ObjectRef& object) const {
    if (object.object == nullptr) {
        WriteObject(name, object);
    } else {
        _store->Reference(_frame, _level, name, object);
    }
}
