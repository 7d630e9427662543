#include "omu_Arguments.h"

#include "omi_Singleton.h"
#include "omu_BackwardCompat.h"
#include "omu_ErrorExceptions.h"
#include "omu_QuotedText.h"
#include "utl_Catenator.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

constexpr const char* kSource = "generated/omu/impl/omu_Arguments";
/// Found and expected text of a keyword that was not given.
constexpr const char* kUndetermined = "Undetermined";

}  // namespace

omu_Arguments::omu_Arguments() : omu_Arguments(0) {}

omu_Arguments::omu_Arguments(int positionalCount)
    : omu_PrimTuple(positionalCount, kCode), _keywords() {}

omu_Arguments::~omu_Arguments() = default;

omu_Primitive* omu_Arguments::Copy() const { return new omu_Arguments(*this); }

cow_String omu_Arguments::AsString(int) const { return AsRepr(); }

cow_String omu_Arguments::AsRepr() const {
    std::string text = "(";
    std::string_view separator;
    for (int i = 0; i < _size; ++i) {
        text += separator;
        AppendText(text, Element(i), true);
        separator = ", ";
    }
    for (const auto& entry : _keywords) {
        text.append(separator).append(entry.Key().View()) += '=';
        AppendText(text, entry.Value().ConstGet(), true);
        separator = ", ";
    }
    text += ')';
    return text;
}

bool omu_Arguments::operator==(const omu_Primitive& other) const {
    const auto* arguments = dynamic_cast<const omu_Arguments*>(&other);
    return omu_PrimTuple::operator==(other) &&
           (arguments != nullptr ? _keywords == arguments->_keywords : _keywords.Length() == 0);
}

// Filling.

void omu_Arguments::Put(omu_PyObjectWrapper* value) {
    std::printf("Put omu_PyObjectWrapper val:%p \n", static_cast<void*>(value));
    omu_PrimTuple::Put(value);
}

void omu_Arguments::PutOwned(omu_Primitive* value) { AppendOwned(value); }

void omu_Arguments::SetTypeError(cow_String expected) {
    omu_PrimTuple::SetTypeError(std::move(expected));
    _errorKeyword = cow_String();  // an optional miss before may have left one
}

void omu_Arguments::PutKeyword(omu_Primitive* value, const cow_String& keyword) {
    _keywords.Put(keyword, value);
    if (_keywordOrder.empty()) {
        _keywordOrder.reserve(8);
    }
    _keywordOrder.push_back(keyword);
}

// Reading by keyword.

omu_Arguments::Place omu_Arguments::FindUnconsumed(const cow_String& keyword) noexcept {
    return std::find(_unconsumed.begin(), _unconsumed.end(), keyword);
}

void omu_Arguments::CountKeyword(Place keyword) {
    ++_numGets;
    ++_requested;
    if (!_isOptional) {
        ++_required;
    }
    if (keyword != _unconsumed.end()) {
        _unconsumed.erase(keyword);
        if (!_isOptional) {
            ++_requiredKeywords;
        }
    }
}

void omu_Arguments::MissKeyword(const cow_String& keyword) {
    _found = kUndetermined;
    _expected = kUndetermined;
    _errorKeyword = keyword;
    if (_isOptional) {
        _optionalMiss = _numGets + 1;
    } else {
        _errorArg = _requiredMiss = _numGets + 1;
    }
}

void omu_Arguments::SetKeywordTypeError(const cow_String& keyword, cow_String expected,
                                        const omu_Primitive& found) {
    _errorArg = _requiredMiss = _numGets + 1;
    _expected = std::move(expected);
    _found = Found(found);
    _errorKeyword = keyword;
}

template <class Convert, class Expected>
void omu_Arguments::ReadKeyword(const cow_String& keyword, Convert convert, Expected expected) {
    const Place place = FindUnconsumed(keyword);
    if (_errorArg == 0) {
        if (place == _unconsumed.end()) {
            MissKeyword(keyword);
        } else {
            const omu_Primitive& value = *_keywords.Find(keyword);
            if (!convert(value)) {
                SetKeywordTypeError(keyword, expected(), value);
            }
        }
    }
    CountKeyword(place);
}

template <class T>
void omu_Arguments::Read(T& target, const cow_String& keyword) {
    if (_errorArg == 0 && _cursor < _size) {
        omu_PrimTuple::Get(target);
        return;
    }
    ReadKeyword(
        keyword,
        [&](const omu_Primitive& value) { return omu_ValueTraits<T>::Convert(value, target); },
        [&] { return omu_ValueTraits<T>::Expected(target, omu_GetterKind::Keyword); });
}

// clang-format off
void omu_Arguments::Get(bool& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(signed char& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(short& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(int& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(unsigned int& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(double& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_String& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(utl_FilePath& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omi_complex& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omu_PrimArray& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omu_PrimPath& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omu_PrimDictionary<int>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omu_PrimDictionary<cow_String>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omu_PrimEnumBase& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omu_PrimNone& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omu_PrimType& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_List<int>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_List<bool>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_1DArrayList<int>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_1DArray<int>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_List<float>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_1DArrayList<double>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_1DArrayList<float>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_List<cow_String>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_1DArrayList<cow_String>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_List<atr_String>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_2DArray<double>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_2DArray<cow_String>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(cow_Map<cow_String, float>& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omu_TarvexName& target, const cow_String& keyword) { Read(target, keyword); }
void omu_Arguments::Get(omu_PrimHolder& target, const cow_String& keyword) { Read(target, keyword); }
// clang-format on

void omu_Arguments::Get(atr_String& target, const cow_String& keyword) {
    const bool byKeyword = _errorArg == 0 && _cursor >= _size;
    Read(target, keyword);
    if (byKeyword && _errorArg != 0 && _errorKeyword == keyword && _found != kUndetermined) {
        std::fprintf(stderr, "error getting %s\n", keyword.AsCharPtr());
        std::fflush(stderr);
    }
}

void omu_Arguments::Get(omu_PrimTuple& target, const cow_String& keyword) {
    const bool hadError = _errorArg != 0;
    const bool positional = _cursor < _size;
    const bool given = positional || FindUnconsumed(keyword) != _unconsumed.end();
    Read(target, keyword);
    if (hadError || _errorArg != 0 || !given) {
        return;
    }
    const cow_String& nesting = ConstGetNestedErrorStr();
    if (!positional) {
        target.SetNestedErrorStr(
            nesting.IsEmpty() ? keyword : nesting + "[" + omu_QuotedText(keyword).View() + "]");
    } else if (nesting.IsEmpty()) {
        target.SetNestedErrorStr(target.ConstGetNestedErrorStr() + "(" + keyword.View() + ")");
    }
}

const omu_InterfaceObj* omu_Arguments::Get(const char* typeName, const cow_String& keyword,
                                           const omu_InterfaceObj* fallback) {
    if (_errorArg == 0 && _cursor < _size) {
        return omu_PrimTuple::Get(typeName, fallback);
    }
    const omu_InterfaceObj* object = nullptr;
    ReadKeyword(
        keyword,
        [&](const omu_Primitive& value) {
            object = omu_ValueTraits<omu_InterfaceObj*>::Find(value, typeName);
            return object != nullptr;
        },
        [&] { return cow_String(typeName); });
    return object != nullptr ? object : fallback;
}

const omu_PyObjectWrapper* omu_Arguments::Get(const cow_String& keyword,
                                              const omu_PyObjectWrapper* fallback) {
    const omu_PyObjectWrapper* object = nullptr;
    ReadKeyword(
        keyword,
        [&](const omu_Primitive& value) {
            object = omu_PrimCast<omu_PyObjectWrapper>(value);
            return object != nullptr;
        },
        [] { return cow_String("PyObjectWrapper"); });
    return object != nullptr ? object : fallback;
}

// Old names of parameters.

bool omu_Arguments::DeprecatedCheck(const char*) const {
    return omi_Singleton<omu_BackwardCompat>::Instance().AcceptDeprecated();
}

bool omu_Arguments::DeprecatedAlternative(const char* note) {
    return DeprecatedCheck(note) && Alternative();
}

const omu_InterfaceObj* omu_Arguments::DeprecatedGet(const char* typeName,
                                                     const cow_String& keyword,
                                                     const omu_InterfaceObj* fallback,
                                                     const char* note) {
    const omu_InterfaceObj* object = fallback;
    ReadDeprecated(keyword, note, [&] { object = Get(typeName, keyword, fallback); });
    return object;
}

void omu_Arguments::NoteDeprecated(const cow_String& keyword) {
    if (!_deprecatedKeywords.IsMember(keyword)) {
        _deprecatedKeywords.Append(keyword);
    }
}

// State.

void omu_Arguments::Begin() {
    _unconsumed.clear();
    _unconsumed.reserve(static_cast<std::size_t>(_keywords.Length()));
    for (const auto& entry : _keywords) {
        _unconsumed.push_back(entry.Key());
    }
    _requiredKeywords = 0;
    _requiredMiss = 0;
    _optionalMiss = 0;
    _errorKeyword = cow_String();
    omu_PrimTuple::Begin();
}

bool omu_Arguments::Alternative() {
    if (_numGets > 0 && (_requiredMiss == _numGets || _optionalMiss == _numGets)) {
        if (!_isOptional) {
            --_required;
        }
        _requiredMiss = 0;
        _optionalMiss = 0;
        _errorArg = 0;
        _found = cow_String();
        _expected = cow_String();
        if (_keywords.Has(_errorKeyword)) {
            if (!_isOptional) {
                --_requiredKeywords;
            }
            _unconsumed.push_back(_errorKeyword);
        }
        _errorKeyword = cow_String();
        --_requested;
        --_numGets;
        return true;
    }
    if (_requiredMiss != 0 || _numGets > _size) {
        return false;
    }
    return omu_PrimTuple::Alternative();
}

bool omu_Arguments::ErrorOnPrevious() const noexcept {
    const bool keywordError =
        _numGets > 0 && (_requiredMiss == _numGets || _optionalMiss == _numGets);
    return keywordError || (_errorArg != 0 && _errorArg == _cursor);
}

bool omu_Arguments::Error() const {
    return !_unconsumed.empty() || _errorArg != 0 || ValuesForRequired() < _required ||
           ValuesGiven() > _requested;
}

void omu_Arguments::End(cow_String nesting) {
    const cow_String& place = nesting.IsEmpty() ? ConstGetNestedErrorStr() : nesting;
    _optionalMiss = 0;
    if (!_unconsumed.empty()) {
        omu_KeywordErrorException(_unconsumed.front(), place).Throw(kSource, __LINE__);
    }
    if (_errorArg != 0) {
        if (_errorKeyword.IsEmpty()) {
            omu_ArgTypeErrorException(_errorArg, _expected, _found, place).Throw(kSource, __LINE__);
        }
        // A required keyword that was not given shows as a wrong number of values below.
        if (_expected != kUndetermined && _found != kUndetermined) {
            omu_KeywordTypeErrorException(_errorKeyword, _expected, _found, place)
                .Throw(kSource, __LINE__);
        }
    }
    if (ValuesForRequired() < _required) {
        omu_ArgNumberErrorException(_required, ValuesForRequired(), place).Throw(kSource, __LINE__);
    }
    if (ValuesGiven() > _requested) {
        omu_ArgNumberErrorException(_requested, ValuesGiven(), place).Throw(kSource, __LINE__);
    }
}
