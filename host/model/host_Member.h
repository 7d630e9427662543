#pragma once

#include "cow_COW.h"
#include "cow_Virtual.h"
#include "host_Changes.h"
#include "mdl_Extension.h"
#include "omu_InterfaceObj.h"
#include "omu_StandardTraits.h"

/// The kinds of members, in the order in which they are stored.
enum class host_MemberKind { Part, Material, Step, Load };
inline constexpr std::size_t host_kMemberKinds = 4;

/// A named object of the model, which scripts see as an object with attributes: a part, a material,
/// a step, a load. host_Model owns it; while it is not in the model, its handles find nothing.
class host_Member : public mdl_Extension, public omu_InterfaceObj {
public:
    /// Numbers of the host's classes in memento files.
    static constexpr unsigned short kModule = 0x61;
    [[nodiscard]] static constexpr unsigned TypeIdOf(host_MemberKind kind) noexcept {
        return kModule << 16 | (static_cast<unsigned>(kind) + 1);
    }

    /// "Part", with the attribute "name".
    static const omu_InterfaceType& StaticType();
    [[nodiscard]] const omu_InterfaceType& Type() const override { return StaticType(); }
    /// "Part 'plate'".
    [[nodiscard]] cow_String AsString(int depth) const override;

    [[nodiscard]] cow_String NameText() const { return Name(); }
    /// Renames the object wherever the model names it, as one change.
    void SetNameText(const cow_String& name);

protected:
    using mdl_Extension::mdl_Extension;
    host_Member(const host_Member&) = default;
};

/// A member of class \p Self whose content is a \p Content, a plain struct that lists its fields
/// (`static constexpr auto Fields()`) and compares equal; written to through Edit alone.
///
/// Self gives `static constexpr host_MemberKind kKind`, `static constexpr cls_ClassInfo kClass`
/// with TypeIdOf(kKind) and the base mdl_Extension, and `static const omu_InterfaceType&
/// StaticType()`.
template <class Self, class Content>
class host_MemberOf : public host_Member {
public:
    static constexpr unsigned TypeId() noexcept { return Self::kClass.typeId; }

    explicit host_MemberOf(cow_String name, Content content = {})
        : host_Member(std::move(name)), _content(Holder::Make(std::move(content))) {}
    explicit host_MemberOf(const cls_ReadVisitor& visitor)
        : host_Member(*visitor.Base(mdl_Extension::TypeId())), _content(Holder::Make()) {
        ForEachField(*this, [&](const auto& field, auto& object) {
            if (visitor.Has(field.name)) {
                std::remove_cvref_t<decltype(field)>::Traits::Read(visitor, field.name,
                                                                   object.*field.member);
            }
        });
    }

    [[nodiscard]] unsigned DynTypeId() const override { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const override {
        if (!visitor.StartWrite(TypeId(), GetUid())) {
            return;
        }
        mdl_Extension::DBWrite(*visitor.Base(mdl_Extension::TypeId()));
        ForEachField(*this, [&](const auto& field, const auto& object) {
            std::remove_cvref_t<decltype(field)>::Traits::Write(visitor, field.name,
                                                                object.*field.member);
        });
    }
    [[nodiscard]] mdl_Extension* Copy() const override {
        return new Self(static_cast<const Self&>(*this));
    }
    static void InitializeMetadata(cls_ClassRegistrar& registrar) {
        static_assert(Self::kClass.typeId == TypeIdOf(Self::kKind));
        cls_RegisterClass<Self, cow_COW<mdl_Extension, cow_Virtual<mdl_Extension>>>(registrar);
    }
    [[nodiscard]] const omu_InterfaceType& Type() const override { return Self::StaticType(); }

    [[nodiscard]] const Content& Get() const noexcept { return *_content; }
    /// The content for writing, as a change that can be taken back.
    [[nodiscard]] Content& Edit() {
        host_Changes::Instance().Save(_content);
        return _content.Get();
    }

protected:
    host_MemberOf(const host_MemberOf&) = default;

    friend struct cls_Access;
    using Base = mdl_Extension;
    static constexpr auto Fields() {
        return std::tuple_cat(std::tuple(mdl_Extension::NameField()), Content::Fields());
    }

private:
    using Holder = cow_COW<Content, cow_Direct<Content>>;

    /// Calls \p visit with each field and the object that has it: this one, or its content.
    template <class Object, class Visit>
    static void ForEachField(Object& self, const Visit& visit) {
        using Own = std::conditional_t<std::is_const_v<Object>, const mdl_Extension, mdl_Extension>;
        cls_Access::ForEachField<host_MemberOf>([&](const auto& field) {
            if constexpr (requires { static_cast<Own&>(self).*field.member; }) {
                visit(field, static_cast<Own&>(self));
            } else if constexpr (std::is_const_v<Object>) {
                visit(field, *self._content);
            } else {
                visit(field, self._content.Get());
            }
        });
    }

    Holder _content;
};
