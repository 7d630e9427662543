#pragma once

#include "cow_COW.h"
#include "cow_Direct.h"
#include "omu_PrimLevel.h"
#include "omu_PrimNumber.h"
#include "omu_PrimSequence.h"

#include <concepts>
#include <cstddef>
#include <memory>
#include <span>
#include <variant>
#include <vector>

/// Element types of numeric arrays.
template <class T>
concept omu_ArrayElement =
    std::same_as<T, int> || std::same_as<T, float> || std::same_as<T, double>;

/// A numeric array of any shape: int, float or double elements in one block, rows first.
///
/// Copies share the elements and cost one count; EditInts() and its kin copy a shared block first,
/// reading never does. An array and its copies stay in one thread; DeepCopy() gives one to hand to
/// another. As a sequence, the array is that of its numbers (one dimension) or of its rows.
class CAE_API omu_PrimArray : public omu_PrimLevel<omu_PrimArray, omu_PrimSequence> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimArray", 0x130021, 0x130020, 800};

    /// No elements: one dimension, double.
    omu_PrimArray() noexcept;
    /// One dimension, or the shape \p dims: at least one dimension, none negative, whose product is
    /// the number of values; else nex_TextException. Vectors are taken over without a copy.
    template <omu_ArrayElement T>
    explicit omu_PrimArray(std::vector<T> values);
    template <omu_ArrayElement T>
    omu_PrimArray(std::vector<T> values, std::vector<int> dims);
    template <omu_ArrayElement T>
    explicit omu_PrimArray(std::span<const T> values)
        : omu_PrimArray(std::vector<T>(values.begin(), values.end())) {}
    template <omu_ArrayElement T>
    omu_PrimArray(std::span<const T> values, std::vector<int> dims)
        : omu_PrimArray(std::vector<T>(values.begin(), values.end()), std::move(dims)) {}
    explicit omu_PrimArray(const cls_ReadVisitor& visitor);
    omu_PrimArray(const omu_PrimArray&) = default;
    omu_PrimArray& operator=(const omu_PrimArray&) = default;
    /// The source is empty afterwards.
    omu_PrimArray(omu_PrimArray&&) noexcept = default;
    omu_PrimArray& operator=(omu_PrimArray&&) noexcept = default;
    ~omu_PrimArray() override;

    /// "array of int", "array of float" or "array of double".
    [[nodiscard]] cow_String TypeString() const override;
    /// Rows in nested brackets: "[[1.0, 2.0], [3.0, 4.0]]". In each bracket, what lies beyond
    /// omu_TextRepr's MaxElementsInSequence shows as "...".
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether the other is an array of the same shape and equal elements, compared as doubles.
    bool operator==(const omu_Primitive& other) const override;

    /// The first dimension.
    [[nodiscard]] int Length() const override;
    /// Number or row \p index, in [0, Length()); else nex_TextException. It is made on the call and
    /// kept in the array until the next call, an assignment or the array's end.
    [[nodiscard]] const omu_Primitive* Index(int index) const override;
    /// The three share the rules of tuples and return arrays. A second part of another element
    /// type makes a double array; one that does not fit raises nex_TextException.
    [[nodiscard]] omu_PrimSequence* Slice(int begin, int end) const override;
    [[nodiscard]] omu_PrimSequence* Repeat(int count) const override;
    [[nodiscard]] omu_PrimSequence* Concat(omu_PrimSequence* other) const override;

    /// Number of dimensions, at least 1.
    [[nodiscard]] int Dimensions() const noexcept { return static_cast<int>(Dims().size()); }
    /// The shape, from the outermost dimension on.
    [[nodiscard]] const std::vector<int>& Dims() const noexcept { return Read().dims; }
    /// Number of elements: the product of the dimensions.
    [[nodiscard]] std::size_t Count() const noexcept;
    /// INT, FLOAT or DOUBLE.
    [[nodiscard]] omu_PrimNumber::DataTypeEnm ElementType() const noexcept;

    /// All elements, valid until the array changes; empty when they are of another type.
    [[nodiscard]] std::span<const int> Ints() const noexcept { return Elements<int>(); }
    [[nodiscard]] std::span<const float> Floats() const noexcept { return Elements<float>(); }
    [[nodiscard]] std::span<const double> Doubles() const noexcept { return Elements<double>(); }
    /// The same for writing; a shared block is copied first.
    [[nodiscard]] std::span<int> EditInts() { return EditElements<int>(); }
    [[nodiscard]] std::span<float> EditFloats() { return EditElements<float>(); }
    [[nodiscard]] std::span<double> EditDoubles() { return EditElements<double>(); }
    template <omu_ArrayElement T>
    [[nodiscard]] std::span<const T> Elements() const noexcept {
        const auto* values = std::get_if<std::vector<T>>(&Read().values);
        return values != nullptr ? std::span<const T>(*values) : std::span<const T>();
    }
    template <omu_ArrayElement T>
    [[nodiscard]] std::span<T> EditElements() {
        return Elements<T>().empty() ? std::span<T>()
                                     : std::span<T>(std::get<std::vector<T>>(_body.Get().values));
    }
    /// Calls \p visit with the span of the elements, of whatever type, and returns its result.
    template <class Visit>
    decltype(auto) VisitElements(Visit&& visit) const {
        return std::visit(
            [&]<class T>(const std::vector<T>& v) { return visit(std::span<const T>(v)); },
            Read().values);
    }
    /// The elements, converted.
    [[nodiscard]] std::vector<double> AsDoubles() const;

    /// A copy of row \p index, in [0, Length()), of an array of two dimensions or more.
    [[nodiscard]] omu_PrimArray Row(int index) const;
    /// An equal array that shares nothing with this one.
    [[nodiscard]] omu_PrimArray DeepCopy() const;

private:
    friend struct cls_Access;

    using Values = std::variant<std::vector<int>, std::vector<float>, std::vector<double>>;
    struct Body {
        std::vector<int> dims;
        Values values;
    };
    using Holder = cow_COW<Body, cow_Direct<Body>>;

    /// The element last shown by Index(); copies of the array do not take it along.
    struct Shown {
        Shown() = default;
        Shown(const Shown&) noexcept {}
        Shown& operator=(const Shown&) noexcept {
            element.reset();
            return *this;
        }
        std::unique_ptr<omu_Primitive> element;
    };

    // The body is stored in several fields.
    struct DimsField : cls_FieldTraits<std::vector<int>> {
        static void Write(const cls_WriteVisitor& visitor, const char* name, const Holder& body);
        static void Read(const cls_ReadVisitor& visitor, const char* name, Holder& body);
    };
    struct PyTypeField : cls_FieldTraits<char> {  // kind code of the elements: 'i' or 'f'
        static void Write(const cls_WriteVisitor& visitor, const char* name, const Holder& body);
        static void Read(const cls_ReadVisitor& visitor, const char* name, Holder& body);
    };
    struct TypeCodeField : cls_FieldTraits<char> {  // 'i', 'f' or 'd'
        static void Write(const cls_WriteVisitor& visitor, const char* name, const Holder& body);
        static void Read(const cls_ReadVisitor& visitor, const char* name, Holder& body);
    };
    template <class T>
    struct CAE_API DataField : cls_FieldTraits<std::vector<T>> {  // empty for all types but one
        static void Write(const cls_WriteVisitor& visitor, const char* name, const Holder& body);
        static void Read(const cls_ReadVisitor& visitor, const char* name, Holder& body);
    };
    static constexpr auto Fields() {
        using A = omu_PrimArray;
        return std::tuple{cls_Field<A, Holder, DimsField>{"dims", &A::_body},
                          cls_Field<A, Holder, PyTypeField>{"pyType", &A::_body},
                          cls_Field<A, Holder, TypeCodeField>{"typeCode", &A::_body},
                          cls_Field<A, Holder, DataField<int>>{"intData", &A::_body},
                          cls_Field<A, Holder, DataField<float>>{"floatData", &A::_body},
                          cls_Field<A, Holder, DataField<double>>{"doubleData", &A::_body}};
    }

    explicit omu_PrimArray(Body body);
    [[nodiscard]] static const Body& Read(const Holder& body) noexcept;
    [[nodiscard]] const Body& Read() const noexcept { return Read(_body); }
    /// Raises nex_TextException when dimensions and number of values disagree.
    static void CheckShape(const Body& body);
    /// Number of elements of one row.
    [[nodiscard]] std::size_t RowSize() const noexcept;
    /// The rows [begin, end), which exist.
    [[nodiscard]] Body Rows(int begin, int end) const;
    /// The numbers of a sequence that is not an array: int elements if all are, else double.
    static Body Numbers(const omu_PrimSequence& sequence);

    Holder _body;  // null: no elements
    mutable Shown _shown;
    cls_Uid _uid;
};

extern template CAE_API omu_PrimArray::omu_PrimArray(std::vector<int>);
extern template CAE_API omu_PrimArray::omu_PrimArray(std::vector<float>);
extern template CAE_API omu_PrimArray::omu_PrimArray(std::vector<double>);
extern template CAE_API omu_PrimArray::omu_PrimArray(std::vector<int>, std::vector<int>);
extern template CAE_API omu_PrimArray::omu_PrimArray(std::vector<float>, std::vector<int>);
extern template CAE_API omu_PrimArray::omu_PrimArray(std::vector<double>, std::vector<int>);
