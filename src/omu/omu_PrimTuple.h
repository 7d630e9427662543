#pragma once

#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_2DArray.h"
#include "cow_List.h"
#include "cow_Map.h"
#include "omi_complex.h"
#include "omu_PrimLevel.h"
#include "omu_PrimSequence.h"
#include "omu_ValueTraits.h"
#include "utl_FilePath.h"

#include <string>

class omu_InterfaceObj;
class omu_ListPyObjectWrapper;
class omu_PrimArray;
class omu_PrimExpr;
class omu_PyObjectWrapper;
class omu_TarvexName;
template <class Key>
class omu_DictPyObjectWrapper;

/// The command language's tuple, and the reader that takes typed values out of it.
///
/// A cursor names the next slot to fill (Put) or to read (Get). A getter converts the element
/// under the cursor; the first mismatch is recorded, never thrown, and End() raises it:
///
///     tuple.Begin();
///     tuple.Get(count);
///     tuple.Optional();
///     tuple.Get(scale);   // keeps its value where the tuple ends before
///     tuple.End();
///
/// Copies share elements under copy-on-write, and keep the cursor. One thread at a time.
class CAE_API omu_PrimTuple : public omu_PrimLevel<omu_PrimTuple, omu_PrimSequence> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimTuple", 0x130019, 0x130020, 800};

    /// \p size empty slots.
    omu_PrimTuple(int size, char code);
    explicit omu_PrimTuple(char code) : omu_PrimTuple(0, code) {}
    omu_PrimTuple(const omu_PrimTuple&) = default;
    /// The other may be an element of this tuple.
    omu_PrimTuple& operator=(const omu_PrimTuple& other);
    /// The source is left without slots.
    omu_PrimTuple(omu_PrimTuple&& other) noexcept;
    omu_PrimTuple& operator=(omu_PrimTuple&& other) noexcept;
    explicit omu_PrimTuple(const cls_ReadVisitor& visitor);
    /// Tuples of the values of arrays and containers, put in order.
    omu_PrimTuple(const int* values, int count, char code);
    omu_PrimTuple(const float* values, int count, char code);
    omu_PrimTuple(const omu_PrimArray& values, char code);
    omu_PrimTuple(const cow_1DArrayList<double>& values, char code);
    omu_PrimTuple(const cow_1DArrayList<float>& values, char code);
    omu_PrimTuple(const cow_1DArrayList<int>& values, char code);
    omu_PrimTuple(const cow_1DArrayList<cow_String>& values, char code);
    omu_PrimTuple(const cow_2DArray<double>& values, char code);
    omu_PrimTuple(const cow_2DArray<cow_String>& values, char code);
    omu_PrimTuple(const cow_List<omu_PrimEnumBase>& values, char code);
    omu_PrimTuple(const cow_Map<cow_String, float>& values, char code);
    ~omu_PrimTuple() override;

    [[nodiscard]] cow_String TypeString() const override { return "tuple"; }
    /// "(a, b)", "(a,)", "()": the elements up to the cursor, each by AsString(0).
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// The same with each element's AsRepr.
    [[nodiscard]] cow_String AsRepr() const override;
    /// Whether the other is a tuple or list of the same length with equal elements.
    bool operator==(const omu_Primitive& other) const override;

    /// Number of slots.
    [[nodiscard]] int Length() const override { return _size; }
    [[nodiscard]] const omu_Primitive* Index(int index) const override;
    [[nodiscard]] omu_PrimSequence* Slice(int begin, int end) const override;
    [[nodiscard]] omu_PrimSequence* Repeat(int count) const override;
    [[nodiscard]] omu_PrimSequence* Concat(omu_PrimSequence* other) const override;

    // Filling. Each Put stores the value that corresponds to its argument in the slot under the
    // cursor and moves on; the number of slots does not change. Containers become nested tuples,
    // values are copied; only an omu_Primitive* is taken over.
    virtual void Put(const cow_Map<cow_String, float>& value);
    virtual void Put(const cow_2DArray<cow_String>& value);
    virtual void Put(const cow_2DArray<double>& value);
    virtual void Put(const cow_1DArray<int>& value);
    virtual void Put(const cow_1DArrayList<cow_String>& value);
    virtual void Put(const cow_1DArrayList<int>& value);
    virtual void Put(const cow_1DArrayList<float>& value);
    virtual void Put(const cow_1DArrayList<double>& value);
    virtual void Put(const cow_List<omu_PrimEnumBase>& value);
    virtual void Put(const cow_List<atr_String>& value);
    virtual void Put(const cow_List<cow_String>& value);
    virtual void Put(const cow_List<float>& value);
    virtual void Put(const cow_List<bool>& value);
    virtual void Put(const cow_List<int>& value);
    virtual void Put(omu_ListPyObjectWrapper& value);
    virtual void Put(omu_DictPyObjectWrapper<int>& value);
    virtual void Put(omu_DictPyObjectWrapper<cow_String>& value);
    virtual void Put(const omu_PrimType& value);
    virtual void Put(const omu_PrimNone& value);
    virtual void Put(const omu_PrimEnumBase& value);
    virtual void Put(omu_Primitive* value);
    virtual void Put(omu_PyObjectWrapper* value);
    virtual void Put(omu_InterfaceObj* value);
    virtual void Put(const omu_PrimDictionary<cow_String>& value);
    virtual void Put(const omu_PrimDictionary<int>& value);
    virtual void Put(const omu_PrimArray& value);
    virtual void Put(const omu_PrimTuple& value);
    virtual void Put(const omu_PrimPath& value);
    virtual void Put(const omu_PrimExpr& value);
    virtual void Put(double value);
    virtual void Put(const utl_FilePath& value);
    virtual void Put(const omi_complex& value);
    virtual void Put(const atr_String& value);
    virtual void Put(const cow_String& value);
    virtual void Put(const char* value);
    virtual void Put(unsigned int value);
    virtual void Put(bool value);
    virtual void Put(int value);
    virtual void Put(short value);
    // A pointer to what is not handed over would cross as the truth value of the pointer.
    void Put(const omu_Primitive* value) = delete;
    void Put(const omu_InterfaceObj* value) = delete;

    // Reading. Each Get converts the element under the cursor into its target, or records what was
    // found and expected; the target keeps its value then, and where the tuple has ended.
    virtual void Get(bool& target);
    virtual void Get(signed char& target);
    virtual void Get(short& target);
    virtual void Get(int& target);
    virtual void Get(unsigned int& target);
    virtual void Get(double& target);
    virtual void Get(cow_String& target);
    virtual void Get(atr_String& target);
    virtual void Get(cow_List<int>& target);
    virtual void Get(cow_List<bool>& target);
    virtual void Get(cow_List<float>& target);
    virtual void Get(cow_1DArrayList<float>& target);
    virtual void Get(cow_List<cow_String>& target);
    virtual void Get(cow_1DArrayList<cow_String>& target);
    virtual void Get(cow_List<atr_String>& target);
    virtual void Get(cow_1DArrayList<double>& target);
    virtual void Get(cow_1DArrayList<int>& target);
    virtual void Get(cow_1DArray<int>& target);
    virtual void Get(cow_2DArray<double>& target);
    virtual void Get(cow_2DArray<cow_String>& target);
    virtual void Get(cow_Map<cow_String, float>& target);
    /// The nested tuple also receives its place, for the messages of its own errors.
    virtual void Get(omu_PrimTuple& target);
    virtual void Get(omu_PrimArray& target);
    virtual void Get(omu_PrimPath& target);
    virtual void Get(omu_PrimDictionary<int>& target);
    virtual void Get(omu_PrimDictionary<cow_String>& target);
    virtual void Get(omu_PrimEnumBase& target);
    virtual void Get(omu_PrimNone& target);
    virtual void Get(omu_PrimType& target);
    virtual void Get(utl_FilePath& target);
    virtual void Get(omi_complex& target);
    virtual void Get(omu_TarvexName& target);
    /// Any value; the holder shares nothing with the tuple.
    virtual void Get(omu_PrimHolder& target);
    /// The object under the cursor when it is of the type \p typeName, else \p fallback. The
    /// application owns it.
    [[nodiscard]] virtual const omu_InterfaceObj* Get(const char* typeName,
                                                      const omu_InterfaceObj* fallback);
    /// The wrapped interpreter object under the cursor, owned by the tuple, else \p fallback.
    [[nodiscard]] virtual const omu_PyObjectWrapper* Get(const omu_PyObjectWrapper* fallback);
    /// Rewinds for filling or reading and forgets a recorded error.
    virtual void Begin();
    /// Raises the recorded error as omu_ArgTypeErrorException, or omu_ArgNumberErrorException when
    /// the number of slots does not fit the getters called. \p nesting names this tuple in the
    /// message; empty stands for its own nesting text.
    virtual void End(cow_String nesting = {});

    /// From here on, getters read optional elements.
    void Optional() noexcept { _isOptional = true; }
    /// Undoes the last getter if it failed, so that another form can be tried; else false.
    bool Alternative();
    /// Whether the number of slots does not fit the getters called so far.
    [[nodiscard]] bool CountError() const noexcept {
        return _size < _required || _size > _requested;
    }
    [[nodiscard]] bool Error() const noexcept { return CountError() || HasFailed(); }
    /// Whether a getter has found a value that does not fit; those after it read nothing.
    [[nodiscard]] bool HasFailed() const noexcept { return _errorArg != 0; }

    /// Slot \p index for writing. Outside [0, Length()): nex_TextException.
    [[nodiscard]] omu_PrimHolder& operator[](int index);

    /// What this tuple is called in error messages: its place inside an outer argument.
    void SetNestedErrorStr(cow_String nesting) { _nesting = std::move(nesting); }
    [[nodiscard]] const cow_String& ConstGetNestedErrorStr() const noexcept { return _nesting; }

    [[nodiscard]] int Cursor() const noexcept { return _cursor; }

protected:
    /// Stores \p value, taken over, in the slot under the cursor; every Put ends here.
    virtual void PutOwned(omu_Primitive* value);
    /// Stores \p value and adds a slot where the cursor stood behind the last one.
    void AppendOwned(omu_Primitive* value);
    /// Records that the element under the cursor is not what was expected.
    virtual void SetTypeError(cow_String expected);
    /// Element \p index; None for an empty slot.
    [[nodiscard]] const omu_Primitive& Element(int index) const;
    [[nodiscard]] bool CanRead() const noexcept { return _cursor < _size && _errorArg == 0; }
    void CountGet() noexcept;
    /// The designator of an element inside this tuple: "arg1", or "points[0]" when nested.
    [[nodiscard]] cow_String Designator(int index) const;
    /// Text of a value as an element: by AsRepr, or by AsString(0).
    static void AppendText(std::string& text, const omu_Primitive& value, bool asRepr);
    /// What an error message says was found: a constant's text, else the type name.
    [[nodiscard]] static cow_String Found(const omu_Primitive& value);

    template <class T>
    void Take(T& target);
    template <class T>
    void PutMade(const T& value) {
        PutOwned(omu_ValueTraits<T>::Make(value));
    }
    /// Copies of elements [begin, end) appended, and the cursor behind them.
    void AppendCopies(const omu_PrimSequence& from, int begin, int end, int line);

    // The reading state, which argument lists extend.
    int _size = 0;
    int _cursor = 0;
    int _required = 0;   // getters called in required mode
    int _requested = 0;  // getters called in all
    bool _isOptional = false;
    int _errorArg = 0;  // 1-based place of the first failure, 0 while there is none
    cow_String _found;
    cow_String _expected;
    int _numGets = 0;

private:
    friend struct cls_Access;
    using Elements = cow_1DArray<omu_PrimHolder>;

    static constexpr auto Fields() {
        using T = omu_PrimTuple;
        return std::tuple{
            cls_Field{"primVector", &T::_elements},   cls_Field{"size", &T::_size},
            cls_Field{"cursor", &T::_cursor},         cls_Field{"reqcount", &T::_required},
            cls_Field{"argcount", &T::_requested},    cls_Field{"isOptional", &T::_isOptional},
            cls_Field{"errorArg", &T::_errorArg},     cls_Field{"typeFound", &T::_found},
            cls_Field{"typeExpected", &T::_expected}, cls_Field{"numGets", &T::_numGets}};
    }

    template <class Result>
    friend struct omu_SequenceCopies;

    void Store(omu_Primitive* value);
    [[nodiscard]] cow_String Text(bool asRepr) const;
    /// Takes the elements of \p other over.
    void Adopt(omu_PrimTuple& other);
    /// Exchanges all that this class level holds.
    void SwapState(omu_PrimTuple& other) noexcept;

    Elements _elements;
    cow_String _nesting;
    cls_Uid _uid;
};

/// Holders of values are stored as a collection of objects; empty slots as null.
template <>
struct CAE_API cls_FieldTraits<cow_1DArray<omu_PrimHolder>> {
    static constexpr cls_AttributeType kType = cls_AttributeType::Object;
    static constexpr unsigned kClassId = omu_Primitive::TypeId();
    static constexpr cls_CollectionType kCollection = cls_CollectionType::List;

    static void Write(const cls_WriteVisitor& visitor, const char* name,
                      const cow_1DArray<omu_PrimHolder>& values);
    static void Read(const cls_ReadVisitor& visitor, const char* name,
                     cow_1DArray<omu_PrimHolder>& values);
};
