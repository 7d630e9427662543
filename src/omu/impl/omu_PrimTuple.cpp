#include "omu_PrimTuple.h"

#include "cls_Shared.h"
#include "nex_TextException.h"
#include "omu_DictPyObjectWrapper.h"
#include "omu_ErrorExceptions.h"
#include "omu_ListPyObjectWrapper.h"
#include "omu_QuotedText.h"
#include "omu_SequenceCopies.h"
#include "omu_StandardTraits.h"
#include "utl_Catenator.h"

#include <algorithm>
#include <string>

namespace {

constexpr const char* kSource = "generated/omu/impl/omu_PrimTuple";

/// The elements of the tuple that a container crosses as.
template <class Container>
std::unique_ptr<omu_PrimTuple> AsTuple(const Container& values) {
    return std::unique_ptr<omu_PrimTuple>(
        static_cast<omu_PrimTuple*>(omu_ValueTraits<Container>::Make(values)));
}

}  // namespace

omu_PrimTuple::omu_PrimTuple(int size, char code)
    : omu_PrimLevel(code), _size(std::max(size, 0)), _elements(_size) {}

omu_PrimTuple::omu_PrimTuple(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor), _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimTuple>(*this, visitor);
    // What is read is not trusted: sizes are those of the elements, and counting stays in range.
    constexpr int kMost = 1 << 30;
    _size = std::clamp(_size, 0, _elements.Length());
    for (int* count : {&_cursor, &_required, &_requested, &_errorArg, &_numGets}) {
        *count = std::clamp(*count, 0, kMost);
    }
}

omu_PrimTuple::omu_PrimTuple(omu_PrimTuple&& other) noexcept : omu_PrimLevel(other) {
    SwapState(other);
}

omu_PrimTuple& omu_PrimTuple::operator=(const omu_PrimTuple& other) {
    // The elements replaced may hold the other one: it is copied first.
    return *this = omu_PrimTuple(other);
}

omu_PrimTuple& omu_PrimTuple::operator=(omu_PrimTuple&& other) noexcept {
    omu_PrimTuple taken(std::move(other));
    omu_PrimLevel::operator=(taken);
    SwapState(taken);
    return *this;
}

void omu_PrimTuple::SwapState(omu_PrimTuple& other) noexcept {
    std::swap(_size, other._size);
    std::swap(_cursor, other._cursor);
    std::swap(_required, other._required);
    std::swap(_requested, other._requested);
    std::swap(_isOptional, other._isOptional);
    std::swap(_errorArg, other._errorArg);
    std::swap(_found, other._found);
    std::swap(_expected, other._expected);
    std::swap(_numGets, other._numGets);
    _elements.Swap(other._elements);
    std::swap(_nesting, other._nesting);
    std::swap(_uid, other._uid);
}

omu_PrimTuple::omu_PrimTuple(const int* values, int count, char code) : omu_PrimTuple(count, code) {
    std::for_each_n(values, count, [this](int value) { PutMade(value); });
}

omu_PrimTuple::omu_PrimTuple(const float* values, int count, char code)
    : omu_PrimTuple(count, code) {
    std::for_each_n(values, count, [this](float value) { PutMade(value); });
}

omu_PrimTuple::omu_PrimTuple(const omu_PrimArray& values, char code)
    : omu_PrimTuple(values.Length(), code) {
    AppendCopies(values, 0, values.Length(), __LINE__);
}

// clang-format off
omu_PrimTuple::omu_PrimTuple(const cow_1DArrayList<double>& values, char code) : omu_PrimTuple(code) { Adopt(*AsTuple(values)); }
omu_PrimTuple::omu_PrimTuple(const cow_1DArrayList<float>& values, char code) : omu_PrimTuple(code) { Adopt(*AsTuple(values)); }
omu_PrimTuple::omu_PrimTuple(const cow_1DArrayList<int>& values, char code) : omu_PrimTuple(code) { Adopt(*AsTuple(values)); }
omu_PrimTuple::omu_PrimTuple(const cow_1DArrayList<cow_String>& values, char code) : omu_PrimTuple(code) { Adopt(*AsTuple(values)); }
omu_PrimTuple::omu_PrimTuple(const cow_2DArray<double>& values, char code) : omu_PrimTuple(code) { Adopt(*AsTuple(values)); }
omu_PrimTuple::omu_PrimTuple(const cow_2DArray<cow_String>& values, char code) : omu_PrimTuple(code) { Adopt(*AsTuple(values)); }
omu_PrimTuple::omu_PrimTuple(const cow_List<omu_PrimEnumBase>& values, char code) : omu_PrimTuple(code) { Adopt(*AsTuple(values)); }
omu_PrimTuple::omu_PrimTuple(const cow_Map<cow_String, float>& values, char code) : omu_PrimTuple(code) { Adopt(*AsTuple(values)); }
// clang-format on

omu_PrimTuple::~omu_PrimTuple() = default;

void omu_PrimTuple::Adopt(omu_PrimTuple& other) {
    _size = other._size;
    _cursor = other._cursor;
    _elements.Swap(other._elements);
}

// Text.

void omu_PrimTuple::AppendText(std::string& text, const omu_Primitive& value, bool asRepr) {
    // Numbers and strings are most of what is printed: they are written in place.
    if (const auto* number = omu_PrimCast<omu_PrimNumber>(value)) {
        char buffer[omu_PrimNumber::kTextRoom];
        text.append(buffer, number->Format(buffer));
    } else if (const auto* string = omu_PrimCast<omu_PrimString>(value)) {
        omu_AppendQuotedText(text, string->Text());
    } else {
        text += (asRepr ? value.AsRepr() : value.AsString(0)).View();
    }
}

cow_String omu_PrimTuple::Text(bool asRepr) const {
    std::string text = "(";
    // Getters may have moved the cursor past the last slot.
    const int count = std::min(_cursor, _elements.Length());
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            text += ", ";
        }
        AppendText(text, Element(i), asRepr);
    }
    if (count == 1) {
        text += ',';
    }
    text += ')';
    return text;
}

cow_String omu_PrimTuple::AsString(int) const { return Text(false); }

cow_String omu_PrimTuple::AsRepr() const { return Text(true); }

bool omu_PrimTuple::operator==(const omu_Primitive& other) const {
    const auto* tuple = dynamic_cast<const omu_PrimTuple*>(&other);
    if (tuple == nullptr || _size != tuple->_size) {
        return false;
    }
    for (int i = 0; i < _size; ++i) {
        if (Element(i) != tuple->Element(i)) {
            return false;
        }
    }
    return true;
}

// Elements.

const omu_Primitive& omu_PrimTuple::Element(int index) const {
    static const omu_PrimNone none;
    const omu_Primitive* element = Index(index);
    return element != nullptr ? *element : none;
}

const omu_Primitive* omu_PrimTuple::Index(int index) const {
    if (index < 0 || index >= _elements.Length()) {
        return nullptr;
    }
    const omu_PrimHolder& holder = _elements.ConstGet(index);
    return holder.IsNull() ? nullptr : &holder.ConstGet();
}

omu_PrimHolder& omu_PrimTuple::operator[](int index) {
    if (index < 0 || index >= _size) {
        nex_TextException(atr_String::Format("tuple index %d is not in [0, %d)", index, _size))
            .Throw(kSource, __LINE__);
    }
    return _elements.Get(index);
}

void omu_PrimTuple::AppendCopies(const omu_PrimSequence& from, int begin, int end, int line) {
    for (int i = begin; i < end; ++i) {
        const omu_Primitive* element = from.Index(i);
        omu_Primitive* copy = element != nullptr ? element->Copy() : nullptr;
        if (copy == nullptr) {
            nex_TextException("Tuple Index returned NULL").Throw(kSource, line);
        }
        AppendOwned(copy);
    }
}

omu_PrimSequence* omu_PrimTuple::Slice(int begin, int end) const {
    return omu_SequenceCopies<omu_PrimTuple>::Slice(*this, begin, end);
}

omu_PrimSequence* omu_PrimTuple::Repeat(int count) const {
    return omu_SequenceCopies<omu_PrimTuple>::Repeat(*this, count);
}

omu_PrimSequence* omu_PrimTuple::Concat(omu_PrimSequence* other) const {
    return omu_SequenceCopies<omu_PrimTuple>::Concat(*this, other);
}

// Filling.

void omu_PrimTuple::Store(omu_Primitive* value) {
    omu_PrimHolder holder(value);
    _elements.Get(_cursor) = std::move(holder);
    ++_cursor;
}

void omu_PrimTuple::PutOwned(omu_Primitive* value) { Store(value); }

void omu_PrimTuple::AppendOwned(omu_Primitive* value) {
    Store(value);
    _size = std::max(_size, _cursor);
}

// clang-format off
void omu_PrimTuple::Put(const cow_Map<cow_String, float>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_2DArray<cow_String>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_2DArray<double>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_1DArray<int>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_1DArrayList<cow_String>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_1DArrayList<int>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_1DArrayList<float>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_1DArrayList<double>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_List<omu_PrimEnumBase>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_List<atr_String>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_List<cow_String>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_List<float>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_List<bool>& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_List<int>& value) { PutMade(value); }
void omu_PrimTuple::Put(omu_ListPyObjectWrapper& value) { PutOwned(value.Copy()); }
void omu_PrimTuple::Put(omu_DictPyObjectWrapper<int>& value) { PutOwned(value.Copy()); }
void omu_PrimTuple::Put(omu_DictPyObjectWrapper<cow_String>& value) { PutOwned(value.Copy()); }
void omu_PrimTuple::Put(const omu_PrimType& value) { PutMade(value); }
void omu_PrimTuple::Put(const omu_PrimNone& value) { PutMade(value); }
void omu_PrimTuple::Put(const omu_PrimEnumBase& value) { PutMade(value); }
void omu_PrimTuple::Put(omu_Primitive* value) { PutMade(value); }
void omu_PrimTuple::Put(omu_PyObjectWrapper* value) { PutMade(value); }
void omu_PrimTuple::Put(omu_InterfaceObj* value) { PutMade(value); }
void omu_PrimTuple::Put(const omu_PrimDictionary<cow_String>& value) { PutMade(value); }
void omu_PrimTuple::Put(const omu_PrimDictionary<int>& value) { PutMade(value); }
void omu_PrimTuple::Put(const omu_PrimArray& value) { PutMade(value); }
void omu_PrimTuple::Put(const omu_PrimTuple& value) { PutMade(value); }
void omu_PrimTuple::Put(const omu_PrimPath& value) { PutMade(value); }
void omu_PrimTuple::Put(const omu_PrimExpr& value) { PutMade(value); }
void omu_PrimTuple::Put(double value) { PutMade(value); }
void omu_PrimTuple::Put(const utl_FilePath& value) { PutMade(value); }
void omu_PrimTuple::Put(const omi_complex& value) { PutMade(value); }
void omu_PrimTuple::Put(const atr_String& value) { PutMade(value); }
void omu_PrimTuple::Put(const cow_String& value) { PutMade(value); }
void omu_PrimTuple::Put(const char* value) { PutMade(value); }
void omu_PrimTuple::Put(unsigned int value) { PutMade(value); }
void omu_PrimTuple::Put(bool value) { PutMade(value); }
void omu_PrimTuple::Put(int value) { PutMade(value); }
void omu_PrimTuple::Put(short value) { PutMade(value); }
// clang-format on

// Reading.

cow_String omu_PrimTuple::Found(const omu_Primitive& value) {
    return value.IsType('c') ? value.AsString(0) : value.TypeString();
}

void omu_PrimTuple::SetTypeError(cow_String expected) {
    _errorArg = _cursor + 1;
    _expected = std::move(expected);
    _found = Found(Element(_cursor));
}

void omu_PrimTuple::CountGet() noexcept {
    ++_cursor;
    ++_numGets;
    ++_requested;
    if (!_isOptional) {
        ++_required;
    }
}

cow_String omu_PrimTuple::Designator(int index) const {
    utl_Catenator text;
    if (_nesting.IsEmpty()) {
        text << "arg" << index + 1;
    } else {
        text << _nesting << '[' << index << ']';
    }
    return std::move(text).AsString();
}

template <class T>
void omu_PrimTuple::Take(T& target) {
    if (CanRead() && !omu_ValueTraits<T>::Convert(Element(_cursor), target)) {
        SetTypeError(omu_ValueTraits<T>::Expected(target, omu_GetterKind::Positional));
    }
    CountGet();
}

// clang-format off
void omu_PrimTuple::Get(bool& target) { Take(target); }
void omu_PrimTuple::Get(signed char& target) { Take(target); }
void omu_PrimTuple::Get(short& target) { Take(target); }
void omu_PrimTuple::Get(int& target) { Take(target); }
void omu_PrimTuple::Get(unsigned int& target) { Take(target); }
void omu_PrimTuple::Get(double& target) { Take(target); }
void omu_PrimTuple::Get(cow_String& target) { Take(target); }
void omu_PrimTuple::Get(atr_String& target) { Take(target); }
void omu_PrimTuple::Get(cow_List<int>& target) { Take(target); }
void omu_PrimTuple::Get(cow_List<bool>& target) { Take(target); }
void omu_PrimTuple::Get(cow_List<float>& target) { Take(target); }
void omu_PrimTuple::Get(cow_1DArrayList<float>& target) { Take(target); }
void omu_PrimTuple::Get(cow_List<cow_String>& target) { Take(target); }
void omu_PrimTuple::Get(cow_1DArrayList<cow_String>& target) { Take(target); }
void omu_PrimTuple::Get(cow_List<atr_String>& target) { Take(target); }
void omu_PrimTuple::Get(cow_1DArrayList<double>& target) { Take(target); }
void omu_PrimTuple::Get(cow_1DArrayList<int>& target) { Take(target); }
void omu_PrimTuple::Get(cow_1DArray<int>& target) { Take(target); }
void omu_PrimTuple::Get(cow_2DArray<double>& target) { Take(target); }
void omu_PrimTuple::Get(cow_2DArray<cow_String>& target) { Take(target); }
void omu_PrimTuple::Get(cow_Map<cow_String, float>& target) { Take(target); }
void omu_PrimTuple::Get(omu_PrimArray& target) { Take(target); }
void omu_PrimTuple::Get(omu_PrimPath& target) { Take(target); }
void omu_PrimTuple::Get(omu_PrimDictionary<int>& target) { Take(target); }
void omu_PrimTuple::Get(omu_PrimDictionary<cow_String>& target) { Take(target); }
void omu_PrimTuple::Get(omu_PrimEnumBase& target) { Take(target); }
void omu_PrimTuple::Get(omu_PrimNone& target) { Take(target); }
void omu_PrimTuple::Get(omu_PrimType& target) { Take(target); }
void omu_PrimTuple::Get(utl_FilePath& target) { Take(target); }
void omu_PrimTuple::Get(omi_complex& target) { Take(target); }
void omu_PrimTuple::Get(omu_TarvexName& target) { Take(target); }
void omu_PrimTuple::Get(omu_PrimHolder& target) { Take(target); }
// clang-format on

void omu_PrimTuple::Get(omu_PrimTuple& target) {
    const int index = _cursor;
    const bool reads = CanRead();
    Take(target);
    if (reads && _errorArg == 0) {
        target.SetNestedErrorStr(Designator(index));
    }
}

const omu_InterfaceObj* omu_PrimTuple::Get(const char* typeName, const omu_InterfaceObj* fallback) {
    const omu_InterfaceObj* object = nullptr;
    if (CanRead()) {
        object = omu_ValueTraits<omu_InterfaceObj*>::Find(Element(_cursor), typeName);
        if (object == nullptr) {
            SetTypeError(typeName);
        }
    }
    CountGet();
    return object != nullptr ? object : fallback;
}

const omu_PyObjectWrapper* omu_PrimTuple::Get(const omu_PyObjectWrapper* fallback) {
    const omu_PyObjectWrapper* object = nullptr;
    if (CanRead()) {
        object = omu_PrimCast<omu_PyObjectWrapper>(Element(_cursor));
        if (object == nullptr) {
            SetTypeError("PyObjectWrapper");
        }
    }
    CountGet();
    return object != nullptr ? object : fallback;
}

void omu_PrimTuple::Begin() {
    _cursor = 0;
    _required = 0;
    _requested = 0;
    _isOptional = false;
    _errorArg = 0;
    _numGets = 0;
    _found = cow_String();
    _expected = cow_String();
}

bool omu_PrimTuple::Alternative() {
    if (_errorArg == 0 || _errorArg != _cursor) {
        return false;
    }
    --_cursor;
    if (!_isOptional) {
        --_required;
    }
    _errorArg = 0;
    _found = cow_String();
    _expected = cow_String();
    --_requested;
    --_numGets;
    return true;
}

void omu_PrimTuple::End(cow_String nesting) {
    const cow_String place = nesting.IsEmpty() ? _nesting : std::move(nesting);
    if (_errorArg != 0) {
        omu_ArgTypeErrorException(_errorArg, _expected, _found, place).Throw(kSource, 1977);
    }
    // The required count is named also where there are too many values: unlike a command's
    // arguments, a tuple says what it cannot do without.
    if (CountError()) {
        omu_ArgNumberErrorException(_required, _size, place).Throw(kSource, 1981);
    }
}

// Persistence.

void cls_FieldTraits<cow_1DArray<omu_PrimHolder>>::Write(
    const cls_WriteVisitor& visitor, const char* name, const cow_1DArray<omu_PrimHolder>& values) {
    const auto list = visitor.List(name, values.Length());
    for (const omu_PrimHolder& value : values) {
        cls_WriteShared(*list, "", value);
    }
}

void cls_FieldTraits<cow_1DArray<omu_PrimHolder>>::Read(const cls_ReadVisitor& visitor,
                                                        const char* name,
                                                        cow_1DArray<omu_PrimHolder>& values) {
    const auto list = visitor.List(name);
    cow_1DArray<omu_PrimHolder> read;
    for (int left = list->Count(); left > 0; --left) {
        omu_PrimHolder value;
        cls_ReadShared(*list, "", omu_Primitive::TypeId(), value);
        read.Append(std::move(value));
    }
    values = std::move(read);
}
