#pragma once

#include "uti_CommandException.h"

/// \file
/// The errors of script input. The interpreter bridge turns each into the command-language
/// exception PythonType() with the message JournalMessage(). Constructors take the persisted
/// fields in their stored order; objects do not change after construction, and copies share their
/// texts. Texts are copied into messages as they are, never used as formats.

/// What an attribute error complains of.
enum class omu_AttributeErrorEnm : int {
    AllReadOnly = 0,  ///< the object's attributes cannot be set at all
    ReadOnly = 1,     ///< the named attribute cannot be set
    FreeText = 2,     ///< the attribute field is the whole message
};

/// The rule that an object name breaks.
enum class omu_TvxNameErrorEnm : int {
    InvalidName = 0,
    EmptyName = 1,
    InvalidJobName = 2,
    InvalidModelName = 3,
};

/// The kind of number that a range error asks for; any other value names none.
enum class omu_KeywordTypeEnm : int { Any = 0, Integer = 1, Float = 2 };

/// How a limit of a range error bounds the value.
enum class omu_LimitQualifierEnm : int { None = 0, Inclusive = 1, Exclusive = 2 };

/// A value of the wrong type, or in the wrong number: base of the more exact type errors.
class CAE_API omu_TypeErrorException : public uti_CommandException<omu_TypeErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_TypeErrorException", 0x130001,
                                          nex_CommandException::TypeId(), 800};
    static constexpr const char* kPythonType = "TypeError";

protected:
    using uti_CommandException::uti_CommandException;
};

/// The object behind the value is gone.
class CAE_API omu_AccessErrorException final : public uti_ValueException<omu_AccessErrorException> {
public:
    static constexpr uti_ValueErrorInfo kError{0x130010, "omu_AccessErrorException", "AccessError",
                                               "%s no longer exists"};
    using uti_ValueException::uti_ValueException;
};

/// An unknown font name.
class CAE_API omu_FontErrorException final : public uti_ValueException<omu_FontErrorException> {
public:
    static constexpr uti_ValueErrorInfo kError{0x13000F, "omu_FontErrorException", "FontError",
                                               "%s is not a valid font."};
    using uti_ValueException::uti_ValueException;
};

/// Something of the user interface that cannot be used now.
class CAE_API omu_GuiAccessErrorException final
    : public uti_ValueException<omu_GuiAccessErrorException> {
public:
    static constexpr uti_ValueErrorInfo kError{0x130028, "omu_GuiAccessErrorException",
                                               "GuiAccessError"};
    using uti_ValueException::uti_ValueException;
};

/// A key that a dictionary or repository lacks.
class CAE_API omu_KeyErrorException final : public uti_ValueException<omu_KeyErrorException> {
public:
    static constexpr uti_ValueErrorInfo kError{0x130007, "omu_KeyErrorException", "KeyError", "%s"};
    using uti_ValueException::uti_ValueException;
};

/// A name that means nothing.
class CAE_API omu_NameErrorException final : public uti_ValueException<omu_NameErrorException> {
public:
    static constexpr uti_ValueErrorInfo kError{0x13000C, "omu_NameErrorException", "NameError"};
    using uti_ValueException::uti_ValueException;
};

/// A number too large for its place.
class CAE_API omu_OverflowErrorException final
    : public uti_ValueException<omu_OverflowErrorException> {
public:
    static constexpr uti_ValueErrorInfo kError{0x13000B, "omu_OverflowErrorException",
                                               "OverflowError"};
    using uti_ValueException::uti_ValueException;
};

/// A value of the right type that is not acceptable.
class CAE_API omu_ValueErrorException final : public uti_ValueException<omu_ValueErrorException> {
public:
    static constexpr uti_ValueErrorInfo kError{0x13000A, "omu_ValueErrorException", "ValueError"};
    using uti_ValueException::uti_ValueException;
};

/// A division by zero.
class CAE_API omu_ZeroDivisionErrorException final
    : public uti_ValueException<omu_ZeroDivisionErrorException> {
public:
    static constexpr uti_ValueErrorInfo kError{0x13000D, "omu_ZeroDivisionErrorException",
                                               "ZeroDivisionError"};
    using uti_ValueException::uti_ValueException;
};

/// A keyword argument of the wrong type. The nesting text is where the keyword's dictionary
/// stands, empty for the call itself.
class CAE_API omu_KeywordTypeErrorException final
    : public uti_RaisableException<omu_KeywordTypeErrorException, omu_TypeErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_KeywordTypeErrorException", 0x130002,
                                          omu_TypeErrorException::kClass.typeId, 800};

    omu_KeywordTypeErrorException(uti_ErrorText keyword, uti_ErrorText expecting,
                                  uti_ErrorText found, uti_ErrorText nestingStr) noexcept;
    explicit omu_KeywordTypeErrorException(const cls_ReadVisitor& visitor);

    [[nodiscard]] const atr_String& Keyword() const noexcept { return _keyword; }
    [[nodiscard]] const atr_String& Expecting() const noexcept { return _expecting; }
    [[nodiscard]] const atr_String& Found() const noexcept { return _found; }
    [[nodiscard]] const atr_String& NestingStr() const noexcept { return _nestingStr; }
    [[nodiscard]] atr_String JournalMessage() const override;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        using Self = omu_KeywordTypeErrorException;
        return std::tuple(cls_StringField("m_Keyword", &Self::_keyword),
                          cls_StringField("m_Expecting", &Self::_expecting),
                          cls_StringField("m_Found", &Self::_found),
                          cls_StringField("m_NestingStr", &Self::_nestingStr));
    }

    atr_String _keyword;
    atr_String _expecting;
    atr_String _found;
    atr_String _nestingStr;
};

/// A positional argument of the wrong type. Arguments count from 1; in a nested sequence, whose
/// place the nesting text gives, the message shows the index from 0.
class CAE_API omu_ArgTypeErrorException final
    : public uti_RaisableException<omu_ArgTypeErrorException, omu_TypeErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_ArgTypeErrorException", 0x130003,
                                          omu_TypeErrorException::kClass.typeId, 800};

    omu_ArgTypeErrorException(int argNum, uti_ErrorText expecting, uti_ErrorText found,
                              uti_ErrorText nestingStr) noexcept;
    explicit omu_ArgTypeErrorException(const cls_ReadVisitor& visitor);

    [[nodiscard]] int ArgNum() const noexcept { return _argNum; }
    [[nodiscard]] const atr_String& Expecting() const noexcept { return _expecting; }
    [[nodiscard]] const atr_String& Found() const noexcept { return _found; }
    [[nodiscard]] const atr_String& NestingStr() const noexcept { return _nestingStr; }
    [[nodiscard]] atr_String JournalMessage() const override;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        using Self = omu_ArgTypeErrorException;
        return std::tuple(cls_Field("m_ArgNum", &Self::_argNum),
                          cls_StringField("m_Expecting", &Self::_expecting),
                          cls_StringField("m_Found", &Self::_found),
                          cls_StringField("m_NestingStr", &Self::_nestingStr));
    }

    int _argNum = 0;
    atr_String _expecting;
    atr_String _found;
    atr_String _nestingStr;
};

/// Too few or too many arguments.
class CAE_API omu_ArgNumberErrorException final
    : public uti_RaisableException<omu_ArgNumberErrorException, omu_TypeErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_ArgNumberErrorException", 0x130004,
                                          omu_TypeErrorException::kClass.typeId, 800};

    omu_ArgNumberErrorException(int expecting, int found, uti_ErrorText nestingStr) noexcept;
    explicit omu_ArgNumberErrorException(const cls_ReadVisitor& visitor);

    [[nodiscard]] int Expecting() const noexcept { return _expecting; }
    [[nodiscard]] int Found() const noexcept { return _found; }
    [[nodiscard]] const atr_String& NestingStr() const noexcept { return _nestingStr; }
    [[nodiscard]] atr_String JournalMessage() const override;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        using Self = omu_ArgNumberErrorException;
        return std::tuple(cls_Field("m_Expecting", &Self::_expecting),
                          cls_Field("m_Found", &Self::_found),
                          cls_StringField("m_NestingStr", &Self::_nestingStr));
    }

    int _expecting = 0;
    int _found = 0;
    atr_String _nestingStr;
};

/// A keyword that the command does not know, or that came twice.
class CAE_API omu_KeywordErrorException final
    : public uti_RaisableException<omu_KeywordErrorException, omu_TypeErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_KeywordErrorException", 0x130005,
                                          omu_TypeErrorException::kClass.typeId, 800};

    omu_KeywordErrorException(uti_ErrorText keyword, uti_ErrorText nestingStr) noexcept;
    explicit omu_KeywordErrorException(const cls_ReadVisitor& visitor);

    [[nodiscard]] const atr_String& Keyword() const noexcept { return _keyword; }
    [[nodiscard]] const atr_String& NestingStr() const noexcept { return _nestingStr; }
    [[nodiscard]] atr_String JournalMessage() const override;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        using Self = omu_KeywordErrorException;
        return std::tuple(cls_StringField("m_Keyword", &Self::_keyword),
                          cls_StringField("m_NestingStr", &Self::_nestingStr));
    }

    atr_String _keyword;
    atr_String _nestingStr;
};

/// An argument type that a built-in operation cannot take.
class CAE_API omu_GenericTypeErrorException final
    : public uti_RaisableException<omu_GenericTypeErrorException, omu_TypeErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_GenericTypeErrorException", 0x130024,
                                          omu_TypeErrorException::kClass.typeId, 800};

    omu_GenericTypeErrorException() = default;
    explicit omu_GenericTypeErrorException(const cls_ReadVisitor& visitor);

    [[nodiscard]] atr_String JournalMessage() const override;
};

/// An attribute that is not there or cannot be set.
class CAE_API omu_AttributeErrorException final
    : public uti_RaisableException<omu_AttributeErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_AttributeErrorException", 0x130006,
                                          nex_CommandException::TypeId(), 800};
    static constexpr const char* kPythonType = "AttributeError";

    omu_AttributeErrorException(omu_AttributeErrorEnm errorType, uti_ErrorText attribute) noexcept;
    explicit omu_AttributeErrorException(const cls_ReadVisitor& visitor);

    [[nodiscard]] omu_AttributeErrorEnm ErrorType() const noexcept { return _errorType; }
    [[nodiscard]] const atr_String& Attribute() const noexcept { return _attribute; }
    [[nodiscard]] atr_String JournalMessage() const override;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        using Self = omu_AttributeErrorException;
        return std::tuple(cls_Field("m_ErrorType", &Self::_errorType),
                          cls_StringField("m_Attribute", &Self::_attribute));
    }

    omu_AttributeErrorEnm _errorType{};
    atr_String _attribute;
};

/// An index outside its sequence.
class CAE_API omu_IndexErrorException final
    : public uti_RaisableException<omu_IndexErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_IndexErrorException", 0x130008,
                                          nex_CommandException::TypeId(), 800};
    static constexpr const char* kPythonType = "IndexError";

    explicit omu_IndexErrorException(int value) noexcept : _value(value) {}
    explicit omu_IndexErrorException(const cls_ReadVisitor& visitor);

    [[nodiscard]] int Value() const noexcept { return _value; }
    [[nodiscard]] atr_String JournalMessage() const override;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple(cls_Field("m_Value", &omu_IndexErrorException::_value));
    }

    int _value = 0;
};

/// A number outside its limits. A qualifier outside the enumeration's values drops both limits
/// from the message.
class CAE_API omu_RangeErrorException final
    : public uti_RaisableException<omu_RangeErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_RangeErrorException", 0x130009,
                                          nex_CommandException::TypeId(), 800};
    static constexpr const char* kPythonType = "RangeError";

    omu_RangeErrorException(uti_ErrorText keyword, omu_KeywordTypeEnm keywordType,
                            uti_ErrorText lowerLimit, omu_LimitQualifierEnm lowerQualifier,
                            uti_ErrorText higherLimit,
                            omu_LimitQualifierEnm higherQualifier) noexcept;
    explicit omu_RangeErrorException(const cls_ReadVisitor& visitor);

    [[nodiscard]] const atr_String& Keyword() const noexcept { return _keyword; }
    [[nodiscard]] omu_KeywordTypeEnm KeywordType() const noexcept { return _keywordType; }
    [[nodiscard]] const atr_String& LowerLimitAsString() const noexcept { return _lowerLimit; }
    [[nodiscard]] omu_LimitQualifierEnm LowerLimitQualifier() const noexcept {
        return _lowerQualifier;
    }
    [[nodiscard]] const atr_String& HigherLimitAsString() const noexcept { return _higherLimit; }
    [[nodiscard]] omu_LimitQualifierEnm HigherLimitQualifier() const noexcept {
        return _higherQualifier;
    }
    [[nodiscard]] atr_String JournalMessage() const override;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        using Self = omu_RangeErrorException;
        return std::tuple(cls_StringField("m_Keyword", &Self::_keyword),
                          cls_Field("m_KeywordType", &Self::_keywordType),
                          cls_StringField("m_LowerLimitAsString", &Self::_lowerLimit),
                          cls_Field("m_LowerLimitQualifier", &Self::_lowerQualifier),
                          cls_StringField("m_HigherLimitAsString", &Self::_higherLimit),
                          cls_Field("m_HigherLimitQualifier", &Self::_higherQualifier));
    }

    atr_String _keyword;
    omu_KeywordTypeEnm _keywordType{};
    atr_String _lowerLimit;
    omu_LimitQualifierEnm _lowerQualifier{};
    atr_String _higherLimit;
    omu_LimitQualifierEnm _higherQualifier{};
};

/// An object name that breaks a rule of its kind.
class CAE_API omu_TvxNameErrorException final
    : public uti_RaisableException<omu_TvxNameErrorException> {
public:
    static constexpr cls_ClassInfo kClass{"omu_TvxNameErrorException", 0x130023,
                                          nex_CommandException::TypeId(), 800};
    static constexpr const char* kPythonType = "TarvexNameError";

    explicit omu_TvxNameErrorException(omu_TvxNameErrorEnm error) noexcept : _error(error) {}
    explicit omu_TvxNameErrorException(const cls_ReadVisitor& visitor);

    [[nodiscard]] omu_TvxNameErrorEnm Error() const noexcept { return _error; }
    [[nodiscard]] atr_String JournalMessage() const override;

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple(cls_Field("m_Error", &omu_TvxNameErrorException::_error));
    }

    omu_TvxNameErrorEnm _error{};
};
