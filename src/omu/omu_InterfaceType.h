#pragma once

#include "CaeUtilsExport.h"
#include "cow_List.h"
#include "cow_String.h"
#include "omu_Primitive.h"
#include "omu_ValueTraits.h"

#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

class omu_Arguments;
class omu_InterfaceObj;

/// What scripts see of one class of application objects: its exposed type name, its attributes and
/// methods, and those of the class it is based on. See omu_InterfaceObj for how one is made.
///
/// Built once, in one expression, and never changed afterwards: any thread may read it.
class CAE_API omu_InterfaceType {
public:
    using Getter = std::function<omu_Primitive*(const omu_InterfaceObj&)>;
    using Setter = std::function<void(omu_InterfaceObj&, const omu_Primitive&)>;
    using Call = std::function<omu_Primitive*(omu_InterfaceObj&, omu_Arguments&)>;

    struct AttributeEntry {
        std::string name;
        Getter get;
        Setter set;  ///< empty for a read-only attribute
        std::string help = {};
    };
    struct MethodEntry {
        std::string name;
        Call call;
        std::string help = {};
    };

    /// \p base, if any, must outlive this type.
    explicit omu_InterfaceType(std::string name, const omu_InterfaceType* base = nullptr);
    ~omu_InterfaceType();
    omu_InterfaceType(omu_InterfaceType&&) noexcept;

    /// A read-only attribute: `T Class::Name() const`, T with value traits.
    template <class Class, class T>
    omu_InterfaceType Attribute(std::string name, T (Class::*get)() const) && {
        return std::move(*this).Add(AttributeEntry{std::move(name), Reader(get), {}});
    }
    /// An attribute with a setter `void Class::SetName(T)` or `(const T&)`. A value that T's traits
    /// do not accept raises omu_KeywordTypeErrorException with the attribute's name.
    template <class Class, class T, class Given>
    omu_InterfaceType Attribute(std::string name, T (Class::*get)() const,
                                void (Class::*set)(Given)) && {
        using Value = std::remove_cvref_t<Given>;
        static_assert(std::is_same_v<std::remove_cvref_t<T>, Value>,
                      "The getter and the setter of an attribute take the same type.");
        static_assert(omu_Gettable<Value>, "The attribute's type needs omu_ValueTraits.");
        auto convert = [name, get, set](omu_InterfaceObj& object, const omu_Primitive& given) {
            auto& self = static_cast<Class&>(object);
            Value value = (self.*get)();
            if (!omu_ValueTraits<Value>::Convert(given, value)) {
                RaiseWrongType(
                    name, omu_ValueTraits<Value>::Expected(value, omu_GetterKind::Keyword), given);
            }
            (self.*set)(std::move(value));
        };
        return std::move(*this).Add(
            AttributeEntry{std::move(name), Reader(get), std::move(convert)});
    }
    /// A method `omu_Primitive* Class::Name(omu_Arguments&)`, const or not. It reads its arguments
    /// from Begin() to End() and returns a new value; null stands for None.
    template <class Class, class Function>
    omu_InterfaceType Method(std::string name, Function Class::*function) && {
        static_assert(
            std::is_invocable_r_v<omu_Primitive*, Function Class::*, Class&, omu_Arguments&>,
            "A method takes omu_Arguments& and returns a new omu_Primitive*.");
        return std::move(*this).Add(
            MethodEntry{std::move(name), [function](omu_InterfaceObj& self, omu_Arguments& args) {
                            return (static_cast<Class&>(self).*function)(args);
                        }});
    }

    /// Says what the attribute or method declared last is; ahead of all, what the type is.
    omu_InterfaceType Help(std::string text) &&;

    [[nodiscard]] const std::string& Name() const noexcept { return _name; }
    /// What Help said of the type; may be empty, as may that of its entries.
    [[nodiscard]] const std::string& HelpText() const noexcept { return _help; }
    /// Whether \p typeName is this type's name or a base's.
    [[nodiscard]] bool IsA(std::string_view typeName) const noexcept;
    /// The entry of that name, of this type or else of its bases; null when there is none.
    [[nodiscard]] const AttributeEntry* FindAttribute(std::string_view name) const noexcept;
    [[nodiscard]] const MethodEntry* FindMethod(std::string_view name) const noexcept;
    /// Names in order of declaration, the bases' first; a redeclared one once.
    [[nodiscard]] cow_List<cow_String> AttributeNames() const;
    [[nodiscard]] cow_List<cow_String> MethodNames() const;

private:
    template <class Class, class T>
    static Getter Reader(T (Class::*get)() const) {
        using Value = std::remove_cvref_t<T>;
        static_assert(omu_Puttable<Value>, "The attribute's type needs omu_ValueTraits.");
        return [get](const omu_InterfaceObj& object) {
            return omu_ValueTraits<Value>::Make((static_cast<const Class&>(object).*get)());
        };
    }
    [[noreturn]] static void RaiseWrongType(const std::string& name, const cow_String& expected,
                                            const omu_Primitive& given);

    omu_InterfaceType Add(AttributeEntry entry) &&;
    omu_InterfaceType Add(MethodEntry entry) &&;

    std::string _name;
    const omu_InterfaceType* _base;
    std::string _help;
    std::vector<AttributeEntry> _attributes;
    std::vector<MethodEntry> _methods;
    bool _isMethodLast = false;
};
