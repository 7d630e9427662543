#include "omu_InterfaceObj.h"

#include "UTI_CaeUtils.h"
#include "cls_MemoryStore.h"
#include "nex_TextException.h"
#include "omu_Arguments.h"
#include "omu_DictPyObjectWrapper.h"
#include "omu_ErrorExceptions.h"
#include "omu_ListPyObjectWrapper.h"
#include "omu_PrimBool.h"
#include "omu_PrimException.h"
#include "omu_PrimWrapper.h"
#include "omu_PyObjectWrapper.h"
#include "omu_StandardTraits.h"
#include "omu_TextRepr.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

/// A named model object.
class Feature : public omu_InterfaceObj {
public:
    explicit Feature(cow_String name) : _name(std::move(name)) {}

    static const omu_InterfaceType& StaticType() {
        static const omu_InterfaceType type =
            omu_InterfaceType("Feature", &omu_InterfaceObj::StaticType())
                .Attribute("name", &Feature::Name)
                .Method("greet", &Feature::Greet);
        return type;
    }
    const omu_InterfaceType& Type() const override { return StaticType(); }

    const cow_String& Name() const { return _name; }
    omu_Primitive* Greet(omu_Arguments& args) {
        cow_String greeting;
        args.Begin();
        args.Get(greeting, "greeting");
        args.End();
        return new omu_PrimString(greeting + " " + _name.View());
    }

private:
    cow_String _name;
};

class Part : public Feature {
public:
    using Feature::Feature;

    static const omu_InterfaceType& StaticType() {
        static const omu_InterfaceType type =
            omu_InterfaceType("Part", &Feature::StaticType())
                .Attribute("thickness", &Part::Thickness, &Part::SetThickness)
                .Attribute("name", &Part::UpperName);
        return type;
    }
    const omu_InterfaceType& Type() const override { return StaticType(); }

    double Thickness() const { return _thickness; }
    void SetThickness(double thickness) { _thickness = thickness; }
    cow_String UpperName() const { return "PART " + Name().Std(); }

private:
    double _thickness = 1.0;
};

std::string Joined(const cow_List<cow_String>& names) {
    std::string text;
    for (const cow_String& name : names) {
        text += name.Std() + " ";
    }
    return text;
}

std::string AttributeText(const omu_InterfaceObj& object, const char* name) {
    return std::unique_ptr<omu_Primitive>(object.GetAttribute(name))->AsRepr().Std();
}

TEST(omu_InterfaceObj, ShowsItsAttributesAndThoseOfItsBases) {
    Part part("plate");
    EXPECT_EQ(Joined(part.AttributeNames()), "name thickness ");
    EXPECT_EQ(Joined(part.MethodNames()), "greet ");
    EXPECT_EQ(AttributeText(part, "name"), "'PART plate'");  // the derived type's own goes first
    EXPECT_EQ(AttributeText(Feature("bolt"), "name"), "'bolt'");
    part.SetAttribute("thickness", omu_PrimNumber(3));
    EXPECT_EQ(AttributeText(part, "thickness"), "3.0");
}

TEST(omu_InterfaceObj, RefusesWhatItDoesNotHaveOrTake) {
    Part part("plate");
    const omu_PrimString text("thick");
    omu_Arguments none;
    const auto unknown = "'Part' object has no attribute 'colour'";
    EXPECT_EQ(test_Message<omu_AttributeErrorException>([&] { AttributeText(part, "colour"); }),
              unknown);
    EXPECT_EQ(test_Message<omu_AttributeErrorException>([&] { part.SetAttribute("colour", text); }),
              unknown);
    EXPECT_EQ(test_Message<omu_AttributeErrorException>(
                  [&] { static_cast<void>(part.CallMethod("colour", none)); }),
              unknown);
    EXPECT_EQ(test_Message<omu_AttributeErrorException>([&] { part.SetAttribute("name", text); }),
              "name is read-only");
    EXPECT_EQ(
        test_Message<omu_KeywordTypeErrorException>([&] { part.SetAttribute("thickness", text); }),
        omu_KeywordTypeErrorException("thickness", "float", "string", "").AsString().View());
    EXPECT_EQ(part.Thickness(), 1.0);
}

TEST(omu_InterfaceObj, CallsMethodsWithArguments) {
    Part part("plate");
    omu_Arguments args;
    args.Put("hello", "greeting");
    const std::unique_ptr<omu_Primitive> answer(part.CallMethod("greet", args));
    EXPECT_EQ(answer->AsRepr(), "'hello plate'");
    omu_Arguments empty;
    EXPECT_EQ(test_Message<omu_ArgNumberErrorException>(
                  [&] { static_cast<void>(part.CallMethod("greet", empty)); }),
              "not all required arguments specified; expected 1, got 0");
}

TEST(omu_InterfaceObj, NamesItsTypeAndIsAllItsBases) {
    const Part part("plate");
    EXPECT_STREQ(part.ExposedTypeName(), "Part");
    EXPECT_TRUE(part.IsA("Part"));
    EXPECT_TRUE(part.IsA("Feature"));
    EXPECT_FALSE(Feature("bolt").IsA("Part"));
    EXPECT_FALSE(part.IsA("part"));
    EXPECT_FALSE(part.IsA(nullptr));
    EXPECT_EQ(part.AsString(1), "Part object");
    EXPECT_EQ(part.AsString(2), "'Part object'");  // deeper than MaxRecursion
}

TEST(omu_InterfaceHandle, GivesTheObjectUntilItIsDeleted) {
    auto part = std::make_unique<Part>("plate");
    const omu_InterfaceHandle handle(part.get());
    const omu_InterfaceHandle again = handle;
    EXPECT_EQ(&again.Require(), part.get());

    const Part copied(*part);  // an object of its own
    *part = Part("other");
    EXPECT_EQ(handle.Get(), part.get());
    part.reset();
    EXPECT_EQ(again.Get(), nullptr);
    EXPECT_TRUE(again == handle);
    EXPECT_EQ(test_Message<omu_AccessErrorException>([&] { static_cast<void>(again.Require()); }),
              "Part object no longer exists");
    EXPECT_EQ(test_Message<omu_AccessErrorException>(
                  [] { static_cast<void>(omu_InterfaceHandle().Require()); }),
              "Object no longer exists");
}

class omu_PrimWrapperStore : public testing::Test {
protected:
    void SetUp() override { UTI_CaeUtils_initialize(_count); }
    void TearDown() override { UTI_CaeUtils_finalize(_count); }

    template <class T>
    static std::unique_ptr<T> ThroughTheStore(const T& value) {
        cls_MemoryStore store;
        store.Write(value);
        return std::unique_ptr<T>(static_cast<T*>(store.Construct()));
    }
    int _count = 0;
};

TEST(omu_PrimWrapper, WrapsWithoutOwningOrEqualling) {
    auto part = std::make_unique<Part>("plate");
    const omu_PrimWrapper wrapper(part.get());
    omu_PrimWrapper copy(wrapper);
    copy.EditMembers().Put("id", 7);
    EXPECT_EQ(copy.Object(), part.get());
    EXPECT_EQ(wrapper.Members().Length(), 0);
    EXPECT_EQ(wrapper.AsRepr(), "Wrapper");
    EXPECT_FALSE(wrapper == wrapper);
    part.reset();
    EXPECT_EQ(copy.Object(), nullptr);
    EXPECT_EQ(copy.ObjectType(), "Part");

    const auto payload = std::make_shared<int>(5);
    const omu_PrimWrapper opaque(payload, "Five");
    EXPECT_EQ(opaque.Payload(), payload);
    EXPECT_EQ(opaque.Object(), nullptr);
    EXPECT_EQ(wrapper.Payload(), nullptr);
    EXPECT_FALSE(opaque.Handle());
}

TEST_F(omu_PrimWrapperStore, KeepsTypeAndMembersButNotTheLiveObject) {
    Part part("plate");
    omu_PrimWrapper wrapper(&part);
    wrapper.EditMembers().Put("id", 7);
    const auto read = ThroughTheStore(wrapper);
    EXPECT_EQ(read->ObjectType(), "Part");
    EXPECT_EQ(read->Object(), nullptr);
    EXPECT_EQ(read->Members().AsRepr(), "{'id': 7}");
}

TEST_F(omu_PrimWrapperStore, KeepsCarriedExceptions) {
    const omu_PrimException carried(omu_KeyErrorException("a"), "while reading");
    const auto read = ThroughTheStore(carried);
    EXPECT_TRUE(*read == carried);
    EXPECT_THROW(read->Propagate(), omu_KeyErrorException);
    EXPECT_TRUE(*ThroughTheStore(omu_PrimException()) == omu_PrimException());
}

TEST(omu_PrimException, EqualsCarriersOfTheSameClassAndTexts) {
    const omu_PrimException carried(omu_KeyErrorException("a"), "m");
    const std::unique_ptr<omu_Primitive> copy(carried.Copy());
    EXPECT_TRUE(*copy == carried);
    EXPECT_FALSE(omu_PrimException(omu_KeyErrorException("b"), "m") == carried);
    EXPECT_FALSE(omu_PrimException(omu_ValueErrorException("a"), "m") == carried);
    EXPECT_FALSE(omu_PrimException(omu_KeyErrorException("a"), "n") == carried);
    EXPECT_FALSE(omu_PrimException() == carried);
    EXPECT_FALSE(carried == omu_PrimNumber('E', 1.0, omu_PrimNumber::INT));
    EXPECT_EQ(test_Message<nex_TextException>([] { omu_PrimException().Propagate(); }), "");
}

/// An interpreter's object, with a count of the references held on it.
struct Object {
    std::string text;
    int references = 1;
};

class omu_PyObjects : public testing::Test {
protected:
    void SetUp() override {
        _before = omu_PyObjectWrapper::SetHooks(
            {.increment = [](void* object) { ++static_cast<Object*>(object)->references; },
             .decrement = [](void* object) noexcept { --static_cast<Object*>(object)->references; },
             .text = [](void* object) -> cow_String { return static_cast<Object*>(object)->text; },
             .repr = [](void* object) -> cow_String {
                 return "<" + static_cast<Object*>(object)->text + ">";
             },
             .typeName = [](void*) -> cow_String { return "Thing"; },
             .equal =
                 [](void* a, void* b) {
                     return static_cast<Object*>(a)->text == static_cast<Object*>(b)->text;
                 }});
    }
    void TearDown() override { omu_PyObjectWrapper::SetHooks(_before); }

    Object _a{"a"};
    Object _b{"b"};
    omu_PyObjectHooks _before;
};

TEST_F(omu_PyObjects, AreCountedByEveryWrapper) {
    {
        omu_PyObjectWrapper wrapper(&_a);
        const std::unique_ptr<omu_Primitive> copy(wrapper.Copy());
        EXPECT_EQ(_a.references, 3);
        const omu_PyObjectWrapper other(&_b);
        wrapper = other;
        EXPECT_EQ(_a.references, 2);
        EXPECT_EQ(_b.references, 3);
        const omu_PyObjectWrapper& self = wrapper;
        wrapper = self;
        EXPECT_EQ(_b.references, 3);

        omu_ListPyObjectWrapper list;
        list.AppendObject(&_a);
        list.Append(new omu_PrimNone);
        omu_DictPyObjectWrapper<cow_String> dict;
        dict.PutObject("a", &_a);
        dict.PutObject("a", &_b);
        const std::unique_ptr<omu_Primitive> copies[] = {
            std::unique_ptr<omu_Primitive>(list.Copy()),
            std::unique_ptr<omu_Primitive>(dict.Copy())};
        EXPECT_EQ(copies[0]->DynTypeId(), 0x13002EU);
        EXPECT_EQ(copies[1]->DynTypeId(), 0x13002CU);
        EXPECT_EQ(copies[1]->AsRepr(), "{'a': <b>}");
        EXPECT_EQ(list.Object(0), &_a);
        EXPECT_EQ(list.Object(1), nullptr);
        EXPECT_EQ(dict.Object("a"), &_b);
        EXPECT_EQ(dict.Object("c"), nullptr);
        EXPECT_EQ(_a.references, 3);
    }
    EXPECT_EQ(_a.references, 1);
    EXPECT_EQ(_b.references, 1);
}

TEST_F(omu_PyObjects, ShowAndCompareByTheInterpreter) {
    Object twin{"a"};
    const omu_PyObjectWrapper a(&_a);
    EXPECT_EQ(a.AsString(0), "a");
    EXPECT_EQ(a.AsRepr(), "<a>");
    EXPECT_EQ(a.TypeString(), "Thing");
    EXPECT_TRUE(a == omu_PyObjectWrapper(&twin));
    EXPECT_FALSE(a == omu_PyObjectWrapper(&_b));
    EXPECT_FALSE(a == omu_PyObjectWrapper(nullptr));
    EXPECT_FALSE(a == omu_PrimNumber('o', 1.0, omu_PrimNumber::INT));
    EXPECT_EQ(omu_PyObjectWrapper(nullptr).AsRepr(), "<object>");
}

TEST_F(omu_PyObjects, AreLeftAloneWithoutHooks) {
    const omu_PyObjectHooks installed = omu_PyObjectWrapper::SetHooks({});
    {
        const omu_PyObjectWrapper a(&_a);
        const omu_PyObjectWrapper copy(a);  // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_TRUE(a == copy);
        EXPECT_FALSE(a == omu_PyObjectWrapper(&_b));
        EXPECT_EQ(a.AsString(0), "<object>");
        EXPECT_EQ(a.TypeString(), "object");
        EXPECT_EQ(_a.references, 1);
    }
    omu_PyObjectWrapper::SetHooks(installed);
    EXPECT_EQ(_a.references, 1);
}

TEST_F(omu_PyObjects, CannotBePersisted) {
    const auto message = [](const omu_Primitive& value) {
        return test_Message<nex_TextException>([&] {
            cls_MemoryStore store;
            store.Write(value);
        });
    };
    EXPECT_EQ(message(omu_PyObjectWrapper(&_a)),
              "An interpreter object of type 'Thing' cannot be persisted");
    EXPECT_EQ(message(omu_ListPyObjectWrapper()),
              "An interpreter object of type 'list' cannot be persisted");
    EXPECT_EQ(message(omu_DictPyObjectWrapper<int>()),
              "An interpreter object of type 'dictionary with integer keys' cannot be persisted");
}

}  // namespace
