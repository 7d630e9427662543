#include "omu_ErrorExceptions.h"

#include "atr_translate.h"
#include "omu_QuotedText.h"
#include "utl_Catenator.h"

#include <array>

namespace {

atr_String Joined(const auto&... parts) {
    utl_Catenator text;
    (text << ... << parts);
    return text.View();
}

/// "arg2" or "keyword" at the top, "arg1[3]" or "arg1['keyword']" in a nested sequence.
atr_String WrongType(const atr_String& designator, const atr_String& found,
                     const atr_String& expecting) {
    return Joined(designator, atr_String::Format("; found %s, expecting %s", found, expecting));
}

/// One less, wrapping at the lowest int.
int Before(int number) { return static_cast<int>(static_cast<unsigned>(number) - 1U); }

// The words of a range error, by qualifier.
using Words = std::array<const char*, 3>;
constexpr Words kBetween = {" ", " <= ", " < "};
constexpr Words kAtMost = {" ", "<= ", "< "};
constexpr Words kAtLeast = {" ", ">= ", "> "};

constexpr std::array kNameErrors = {"invalid name", "name is empty", "invalid job name",
                                    "invalid model name"};

}  // namespace

omu_KeywordTypeErrorException::omu_KeywordTypeErrorException(uti_ErrorText keyword,
                                                             uti_ErrorText expecting,
                                                             uti_ErrorText found,
                                                             uti_ErrorText nestingStr) noexcept
    : _keyword(std::move(keyword.text)),
      _expecting(std::move(expecting.text)),
      _found(std::move(found.text)),
      _nestingStr(std::move(nestingStr.text)) {}

omu_KeywordTypeErrorException::omu_KeywordTypeErrorException(const cls_ReadVisitor& visitor)
    : uti_RaisableException(visitor) {
    ReadLevel(*this, visitor);
}

atr_String omu_KeywordTypeErrorException::JournalMessage() const {
    const bool nested = !_nestingStr.IsEmpty();
    return WrongType(
        nested ? Joined(_nestingStr, '[', omu_QuotedText(_keyword.View()), ']') : _keyword, _found,
        _expecting);
}

omu_ArgTypeErrorException::omu_ArgTypeErrorException(int argNum, uti_ErrorText expecting,
                                                     uti_ErrorText found,
                                                     uti_ErrorText nestingStr) noexcept
    : _argNum(argNum),
      _expecting(std::move(expecting.text)),
      _found(std::move(found.text)),
      _nestingStr(std::move(nestingStr.text)) {}

omu_ArgTypeErrorException::omu_ArgTypeErrorException(const cls_ReadVisitor& visitor)
    : uti_RaisableException(visitor) {
    ReadLevel(*this, visitor);
}

atr_String omu_ArgTypeErrorException::JournalMessage() const {
    const bool nested = !_nestingStr.IsEmpty();
    return WrongType(nested ? Joined(_nestingStr, '[', Before(_argNum), ']')
                            : atr_String::Format("arg%d", _argNum),
                     _found, _expecting);
}

omu_ArgNumberErrorException::omu_ArgNumberErrorException(int expecting, int found,
                                                         uti_ErrorText nestingStr) noexcept
    : _expecting(expecting), _found(found), _nestingStr(std::move(nestingStr.text)) {}

omu_ArgNumberErrorException::omu_ArgNumberErrorException(const cls_ReadVisitor& visitor)
    : uti_RaisableException(visitor) {
    ReadLevel(*this, visitor);
}

atr_String omu_ArgNumberErrorException::JournalMessage() const {
    // Equal counts, too, read as missing arguments; scripts depend on it.
    const char* what =
        _expecting >= _found ? "not all required arguments specified" : "too many arguments";
    return Joined(_nestingStr.IsEmpty() ? atr_String() : atr_String::Format("%s; ", _nestingStr),
                  atr_translate(what),
                  atr_String::Format("; expected %d, got %d", _expecting, _found));
}

omu_KeywordErrorException::omu_KeywordErrorException(uti_ErrorText keyword,
                                                     uti_ErrorText nestingStr) noexcept
    : _keyword(std::move(keyword.text)), _nestingStr(std::move(nestingStr.text)) {}

omu_KeywordErrorException::omu_KeywordErrorException(const cls_ReadVisitor& visitor)
    : uti_RaisableException(visitor) {
    ReadLevel(*this, visitor);
}

atr_String omu_KeywordErrorException::JournalMessage() const {
    return atr_String::Format("%skeyword error on %s", _nestingStr, _keyword);
}

omu_GenericTypeErrorException::omu_GenericTypeErrorException(const cls_ReadVisitor& visitor)
    : uti_RaisableException(visitor) {
    ReadLevel(*this, visitor);
}

atr_String omu_GenericTypeErrorException::JournalMessage() const {
    return atr_translate("illegal argument type for built-in operation");
}

omu_AttributeErrorException::omu_AttributeErrorException(omu_AttributeErrorEnm errorType,
                                                         uti_ErrorText attribute) noexcept
    : _errorType(errorType), _attribute(std::move(attribute.text)) {}

omu_AttributeErrorException::omu_AttributeErrorException(const cls_ReadVisitor& visitor)
    : uti_RaisableException(visitor) {
    ReadLevel(*this, visitor);
}

atr_String omu_AttributeErrorException::JournalMessage() const {
    switch (_errorType) {
        case omu_AttributeErrorEnm::AllReadOnly:
            return atr_translate("read-only attributes");
        case omu_AttributeErrorEnm::ReadOnly:
            return atr_String::Format("%s is read-only", _attribute);
        case omu_AttributeErrorEnm::FreeText:
            return _attribute;
    }
    return atr_translate("Error message not implemented yet");
}

omu_IndexErrorException::omu_IndexErrorException(const cls_ReadVisitor& visitor)
    : uti_RaisableException(visitor) {
    ReadLevel(*this, visitor);
}

atr_String omu_IndexErrorException::JournalMessage() const {
    return atr_StringBase::FromInt(_value);
}

omu_RangeErrorException::omu_RangeErrorException(uti_ErrorText keyword,
                                                 omu_KeywordTypeEnm keywordType,
                                                 uti_ErrorText lowerLimit,
                                                 omu_LimitQualifierEnm lowerQualifier,
                                                 uti_ErrorText higherLimit,
                                                 omu_LimitQualifierEnm higherQualifier) noexcept
    : _keyword(std::move(keyword.text)),
      _keywordType(keywordType),
      _lowerLimit(std::move(lowerLimit.text)),
      _lowerQualifier(lowerQualifier),
      _higherLimit(std::move(higherLimit.text)),
      _higherQualifier(higherQualifier) {}

omu_RangeErrorException::omu_RangeErrorException(const cls_ReadVisitor& visitor)
    : uti_RaisableException(visitor) {
    ReadLevel(*this, visitor);
}

atr_String omu_RangeErrorException::JournalMessage() const {
    const char* format = "%s must be ";
    if (_keywordType == omu_KeywordTypeEnm::Integer) {
        format = "%s must be an Integer ";
    } else if (_keywordType == omu_KeywordTypeEnm::Float) {
        format = "%s must be a Float ";
    }
    atr_String start = atr_String::Format(format, _keyword);

    const auto lower = static_cast<unsigned>(_lowerQualifier);
    const auto higher = static_cast<unsigned>(_higherQualifier);
    if (lower >= kBetween.size() || higher >= kBetween.size() || (lower == 0 && higher == 0)) {
        return start;
    }
    if (lower != 0 && higher != 0) {
        return Joined(start,
                      atr_String::Format("in the range: %s%s%s%s%s", _lowerLimit, kBetween[lower],
                                         _keyword, kBetween[higher], _higherLimit));
    }
    return lower == 0 ? Joined(start, kAtMost[higher], _higherLimit)
                      : Joined(start, kAtLeast[lower], _lowerLimit);
}

omu_TvxNameErrorException::omu_TvxNameErrorException(const cls_ReadVisitor& visitor)
    : uti_RaisableException(visitor) {
    ReadLevel(*this, visitor);
}

atr_String omu_TvxNameErrorException::JournalMessage() const {
    const auto error = static_cast<unsigned>(_error);
    return error < kNameErrors.size() ? atr_translate(kNameErrors[error]) : atr_String();
}
