#include "omu_StandardTraits.h"

#include "omu_InterfaceObj.h"
#include "omu_PrimWrapper.h"

#include <string_view>

namespace {

struct SwitchWord {
    std::string_view name;
    bool value;
};
constexpr SwitchWord kSwitchWords[] = {{"ON", true},     {"OFF", false}, {"TRUE", true},
                                       {"FALSE", false}, {"YES", true},  {"NO", false}};

template <class T>
T FromText(const cow_String& text) {
    if constexpr (std::is_same_v<T, omu_TarvexName>) {
        return omu_TarvexName(text, GENERAL_NAME);
    } else {
        return T(text);
    }
}

const cow_String& AsText(const cow_String& text) { return text; }

const cow_String& AsText(const utl_FilePath& path) { return path.AsString(); }

cow_String AsText(const omu_TarvexName& name) { return name.AsString(); }

}  // namespace

bool omu_ValueTraits<bool>::Convert(const omu_Primitive& value, bool& target) {
    if (const auto* boolean = omu_PrimCast<omu_PrimBoolean>(value)) {
        target = boolean->Value();
        return true;
    }
    int number = 0;
    if (omu_ValueTraits<int>::Convert(value, number)) {
        if (number != 0 && number != 1) {
            return false;
        }
        target = number == 1;
        return true;
    }
    if (const omu_PrimEnumBase* constant = omu_AsConstant(value)) {
        for (const SwitchWord& word : kSwitchWords) {
            if (word.name == constant->GetString()) {
                target = word.value;
                return true;
            }
        }
    }
    return false;
}

cow_String omu_ValueTraits<bool>::Expected(bool, omu_GetterKind kind) {
    return kind == omu_GetterKind::Keyword ? "False, True, 0 or 1" : "Boolean";
}

template <class T>
omu_Primitive* omu_TextTraits<T>::Make(const T& value) {
    return new omu_PrimString(AsText(value));
}

template <class T>
bool omu_TextTraits<T>::Convert(const omu_Primitive& value, T& target) {
    const auto* string = omu_PrimCast<omu_PrimString>(value);
    if (string == nullptr) {
        return false;
    }
    target = FromText<T>(string->Text());
    return true;
}

template struct omu_TextTraits<cow_String>;
template struct omu_TextTraits<utl_FilePath>;
template struct omu_TextTraits<omu_TarvexName>;

omu_Primitive* omu_ValueTraits<atr_String>::Make(const atr_String& value) {
    return new omu_PrimTranslatedString(value);
}

bool omu_ValueTraits<atr_String>::Convert(const omu_Primitive& value, atr_String& target) {
    const auto* string = omu_PrimCast<omu_PrimTranslatedString>(value);
    if (string == nullptr) {
        return false;
    }
    target = string->AsTranslatedString();
    return true;
}

bool omu_ValueTraits<omi_complex>::Convert(const omu_Primitive& value, omi_complex& target) {
    const auto* complex = omu_PrimCast<omu_PrimComplex>(value);
    if (complex == nullptr) {
        return false;
    }
    target = complex->Value();
    return true;
}

bool omu_ValueTraits<omu_PrimEnumBase>::Convert(const omu_Primitive& value,
                                                omu_PrimEnumBase& target) {
    const omu_PrimEnumBase* constant = omu_AsConstant(value);
    return constant != nullptr && target.SetValue(constant->GetString());
}

bool omu_ValueTraits<omu_PrimTuple>::Convert(const omu_Primitive& value, omu_PrimTuple& target) {
    if (!value.IsType(omu_PrimSequence::kCode)) {
        return false;
    }
    if (const auto* tuple = dynamic_cast<const omu_PrimTuple*>(&value)) {
        target = *tuple;
        return true;
    }
    if (const auto* array = omu_PrimCast<omu_PrimArray>(value)) {
        target = omu_PrimTuple(*array, omu_PrimSequence::kCode);
        return true;
    }
    return false;
}

bool omu_ValueTraits<omu_PrimHolder>::Convert(const omu_Primitive& value, omu_PrimHolder& target) {
    target = omu_PrimHolder(value.Copy());
    return true;
}

omu_Primitive* omu_ValueTraits<omu_InterfaceObj*>::Make(omu_InterfaceObj* value) {
    return value != nullptr ? static_cast<omu_Primitive*>(new omu_PrimWrapper(value))
                            : new omu_PrimNone;
}

const omu_InterfaceObj* omu_ValueTraits<omu_InterfaceObj*>::Find(const omu_Primitive& value,
                                                                 const char* typeName) {
    const auto* wrapper = omu_PrimCast<omu_PrimWrapper>(value);
    const omu_InterfaceObj* object = wrapper != nullptr ? wrapper->Object() : nullptr;
    return object != nullptr && object->IsA(typeName) ? object : nullptr;
}

omu_Primitive* omu_ValueTraits<omu_PyObjectWrapper*>::Make(const omu_PyObjectWrapper* value) {
    return value != nullptr ? value->Copy() : new omu_PrimNone;
}

omu_SequenceView::omu_SequenceView(const omu_Primitive& value)
    : _sequence(value.IsType(omu_PrimSequence::kCode)
                    ? dynamic_cast<const omu_PrimSequence*>(&value)
                    : nullptr) {}

const omu_Primitive& omu_SequenceView::operator[](int index) const {
    static const omu_PrimNone none;
    const omu_Primitive* element = _sequence->Index(index);
    return element != nullptr ? *element : none;
}

const omu_PrimArray* omu_SequenceView::AsFlatArray() const noexcept {
    const auto* array = omu_PrimCast<omu_PrimArray>(*_sequence);
    return array != nullptr && array->Dimensions() == 1 ? array : nullptr;
}
