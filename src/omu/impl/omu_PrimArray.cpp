#include "omu_PrimArray.h"

#include "nex_TextException.h"
#include "omi_Singleton.h"
#include "omu_TextRepr.h"
#include "utl_Catenator.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <functional>
#include <numeric>
#include <string>
#include <utility>

namespace {

constexpr const char* kSource = "generated/omu/impl/omu_PrimArray";

[[noreturn]] void Raise(const cow_String& message, int line) {
    nex_TextException(atr_String(message.View())).Throw(kSource, line);
}

/// What arrays hold, in the order of the variant's alternatives.
struct ElementKind {
    omu_PrimNumber::DataTypeEnm type;
    char kind;  // kind code of the element as a value
    char code;  // stored
    const char* typeString;
};
constexpr ElementKind kElementKinds[] = {{omu_PrimNumber::INT, 'i', 'i', "array of int"},
                                         {omu_PrimNumber::FLOAT, 'f', 'f', "array of float"},
                                         {omu_PrimNumber::DOUBLE, 'f', 'd', "array of double"}};

cow_String ShapeText(const std::vector<int>& dims) {
    utl_Catenator text;
    for (const int dim : dims) {
        text << (text.View().empty() ? "" : " x ") << dim;
    }
    return std::move(text).AsString();
}

/// The sum of two lengths, or the product of two; either must be a length.
int CheckedLength(long long length, int line) {
    if (length > INT_MAX) {
        Raise("PrimArray would be too long", line);
    }
    return static_cast<int>(length);
}

void AppendNumber(std::string& text, int value) {
    char buffer[omu_PrimNumber::kTextRoom];
    text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

void AppendNumber(std::string& text, double value) {
    char buffer[omu_PrimNumber::kTextRoom];
    text.append(buffer, omu_PrimNumber::FormatDouble(value, buffer));
}

/// Appends the elements in nested brackets, at most \p limit in each. Does not recurse: a shape may
/// have any number of dimensions.
template <class T>
void AppendNested(std::string& text, std::span<const T> values, const std::vector<int>& dims,
                  int limit) {
    const std::size_t last = dims.size() - 1;
    std::vector<std::size_t> step(dims.size(), 1);  // elements from one place to the next
    for (std::size_t level = last; level > 0; --level) {
        step[level - 1] = step[level] * static_cast<std::size_t>(dims[level]);
    }
    std::vector<int> place(dims.size(), 0);
    std::size_t offset = 0;
    std::size_t level = 0;
    text += '[';
    for (;;) {
        int& at = place[level];
        if (at == dims[level]) {
            text += ']';
            at = 0;
            if (level == 0) {
                return;
            }
            ++place[--level];
            continue;
        }
        if (at != 0) {
            text += ", ";
        }
        if (at >= limit) {
            text += "...";
            offset += step[level] * static_cast<std::size_t>(dims[level] - at);
            at = dims[level];
        } else if (level == last) {
            AppendNumber(text, values[offset++]);
            ++at;
        } else {
            text += '[';
            ++level;
        }
    }
}

}  // namespace

omu_PrimArray::omu_PrimArray() noexcept : omu_PrimLevel(kCode) {}

omu_PrimArray::omu_PrimArray(Body body)
    : omu_PrimLevel(kCode), _body(Holder::Make(std::move(body))) {
    CheckShape(Read());
}

template <omu_ArrayElement T>
omu_PrimArray::omu_PrimArray(std::vector<T> values) : omu_PrimLevel(kCode) {
    const int length = CheckedLength(static_cast<long long>(values.size()), __LINE__);
    _body = Holder::Make(Body{{length}, std::move(values)});
}

template <omu_ArrayElement T>
omu_PrimArray::omu_PrimArray(std::vector<T> values, std::vector<int> dims)
    : omu_PrimArray(Body{std::move(dims), std::move(values)}) {}

template CAE_API omu_PrimArray::omu_PrimArray(std::vector<int>);
template CAE_API omu_PrimArray::omu_PrimArray(std::vector<float>);
template CAE_API omu_PrimArray::omu_PrimArray(std::vector<double>);
template CAE_API omu_PrimArray::omu_PrimArray(std::vector<int>, std::vector<int>);
template CAE_API omu_PrimArray::omu_PrimArray(std::vector<float>, std::vector<int>);
template CAE_API omu_PrimArray::omu_PrimArray(std::vector<double>, std::vector<int>);

omu_PrimArray::omu_PrimArray(const cls_ReadVisitor& visitor)
    : omu_PrimLevel(visitor),
      _body(Holder::Make(Body{{0}, std::vector<double>()})),
      _uid(visitor.GetUid()) {
    cls_ReadFields<omu_PrimArray>(*this, visitor);
    CheckShape(Read());
}

omu_PrimArray::~omu_PrimArray() = default;

const omu_PrimArray::Body& omu_PrimArray::Read(const Holder& body) noexcept {
    static const Body none{{0}, std::vector<double>()};
    return body.IsNull() ? none : *body;
}

void omu_PrimArray::CheckShape(const Body& body) {
    if (body.dims.empty()) {
        Raise("PrimArray needs at least one dimension", __LINE__);
    }
    const std::size_t count = std::visit([](const auto& v) { return v.size(); }, body.values);
    // A product that overflows cannot be the number of values in memory.
    std::size_t product = 1;
    bool overflows = false;
    for (const int dim : body.dims) {
        if (dim < 0) {
            Raise("PrimArray cannot have the shape " + ShapeText(body.dims).Std(), __LINE__);
        }
        overflows |= __builtin_mul_overflow(product, static_cast<std::size_t>(dim), &product);
    }
    const bool isEmpty = std::find(body.dims.begin(), body.dims.end(), 0) != body.dims.end();
    if (isEmpty ? count != 0 : overflows || count != product) {
        Raise("PrimArray of " + std::to_string(count) + " elements cannot have the shape " +
                  ShapeText(body.dims).Std(),
              __LINE__);
    }
}

cow_String omu_PrimArray::TypeString() const {
    return kElementKinds[Read().values.index()].typeString;
}

cow_String omu_PrimArray::AsString(int) const {
    const int limit = omi_Singleton<omu_TextRepr>::Instance().GetMaxElementsInSequence();
    std::string text;
    VisitElements([&](auto values) { AppendNested(text, values, Dims(), limit); });
    return text;
}

bool omu_PrimArray::operator==(const omu_Primitive& other) const {
    const auto* array = omu_PrimCast<omu_PrimArray>(other);
    return array != nullptr && Dims() == array->Dims() && VisitElements([&](auto mine) {
               return array->VisitElements([&](auto theirs) {
                   return std::equal(mine.begin(), mine.end(), theirs.begin(), [](auto a, auto b) {
                       return static_cast<double>(a) == static_cast<double>(b);
                   });
               });
           });
}

std::size_t omu_PrimArray::Count() const noexcept {
    return VisitElements([](auto values) { return values.size(); });
}

omu_PrimNumber::DataTypeEnm omu_PrimArray::ElementType() const noexcept {
    return kElementKinds[Read().values.index()].type;
}

std::vector<double> omu_PrimArray::AsDoubles() const {
    return VisitElements([](auto v) { return std::vector<double>(v.begin(), v.end()); });
}

std::size_t omu_PrimArray::RowSize() const noexcept {
    const auto length = static_cast<std::size_t>(Length());
    return length == 0 ? 0 : Count() / length;
}

omu_PrimArray::Body omu_PrimArray::Rows(int begin, int end) const {
    const auto first = static_cast<std::ptrdiff_t>(RowSize()) * begin;
    const auto behind = static_cast<std::ptrdiff_t>(RowSize()) * end;
    Body rows{Dims(), {}};
    rows.dims.front() = end - begin;
    VisitElements([&]<class T>(std::span<const T> v) {
        rows.values = std::vector<T>(v.begin() + first, v.begin() + behind);
    });
    return rows;
}

omu_PrimArray omu_PrimArray::Row(int index) const {
    if (index < 0 || index >= Length()) {
        Raise("PrimArray index out of bounds", __LINE__);
    }
    if (Dimensions() == 1) {
        Raise("PrimArray of one dimension has no rows", __LINE__);
    }
    Body row = Rows(index, index + 1);
    row.dims.erase(row.dims.begin());
    return omu_PrimArray(std::move(row));
}

omu_PrimArray omu_PrimArray::DeepCopy() const {
    omu_PrimArray copy(*this);
    copy._body = _body.DeepCopy();
    return copy;
}

int omu_PrimArray::Length() const { return Dims().front(); }

const omu_Primitive* omu_PrimArray::Index(int index) const {
    if (index < 0 || index >= Length()) {
        Raise("PrimArray index out of bounds", __LINE__);
    }
    if (Dimensions() > 1) {
        _shown.element = std::make_unique<omu_PrimArray>(Row(index));
        return _shown.element.get();
    }
    const omu_PrimNumber number = VisitElements([index]<class T>(std::span<const T> values) {
        using Value = std::conditional_t<std::is_same_v<T, int>, int, double>;
        return omu_PrimNumber(static_cast<Value>(values[static_cast<std::size_t>(index)]));
    });
    if (_shown.element == nullptr) {
        _shown.element = std::make_unique<omu_PrimNumber>(number);
    } else {
        // The shape changes by assignment alone, which forgets the element: this is a number.
        static_cast<omu_PrimNumber&>(*_shown.element) = number;
    }
    return _shown.element.get();
}

omu_PrimSequence* omu_PrimArray::Slice(int begin, int end) const {
    const int length = Length();
    end = std::min(end, length);
    if (end < 0) {
        end += length;
    }
    if (begin < 0) {
        begin += length;
    }
    if (begin >= end) {
        return new omu_PrimArray(Rows(0, 0));
    }
    if (begin < 0) {
        Raise("PrimArray index out of bounds", __LINE__);
    }
    return new omu_PrimArray(Rows(begin, end));
}

omu_PrimSequence* omu_PrimArray::Repeat(int count) const {
    count = std::max(count, 0);
    Body body{Dims(), {}};
    body.dims.front() = CheckedLength(static_cast<long long>(count) * Length(), __LINE__);
    VisitElements([&]<class T>(std::span<const T> v) {
        std::vector<T> repeated;
        repeated.reserve(v.size() * static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            repeated.insert(repeated.end(), v.begin(), v.end());
        }
        body.values = std::move(repeated);
    });
    return new omu_PrimArray(std::move(body));
}

omu_PrimArray::Body omu_PrimArray::Numbers(const omu_PrimSequence& sequence) {
    const int length = sequence.Length();
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(length));
    bool areInts = true;
    for (int i = 0; i < length; ++i) {
        const omu_Primitive* element = sequence.Index(i);
        const auto* number = element != nullptr ? omu_PrimCast<omu_PrimNumber>(*element) : nullptr;
        if (number == nullptr) {
            Raise("PrimArray cannot be joined with a " + sequence.TypeString().Std() +
                      " that holds other things than numbers",
                  __LINE__);
        }
        values.push_back(number->Value());
        areInts &= number->IsType('i') && number->Value() == number->AsInt();
    }
    if (areInts) {
        std::vector<int> ints(values.size());
        std::transform(values.begin(), values.end(), ints.begin(),
                       [](double value) { return static_cast<int>(value); });
        return {{length}, std::move(ints)};
    }
    return {{length}, std::move(values)};
}

omu_PrimSequence* omu_PrimArray::Concat(omu_PrimSequence* other) const {
    if (other == nullptr) {
        Raise("PrimArray cannot be joined with nothing", __LINE__);
    }
    const auto* array = omu_PrimCast<omu_PrimArray>(*other);
    const omu_PrimArray second = array != nullptr ? *array : omu_PrimArray(Numbers(*other));

    Body body{Dims(), {}};
    body.dims.front() = second.Length();
    if (body.dims != second.Dims()) {
        Raise("PrimArray of the shape " + ShapeText(Dims()).Std() +
                  " cannot be joined with one of the shape " + ShapeText(second.Dims()).Std(),
              __LINE__);
    }
    body.dims.front() = CheckedLength(static_cast<long long>(Length()) + second.Length(), __LINE__);
    VisitElements([&]<class T>(std::span<const T> mine) {
        second.VisitElements([&]<class U>(std::span<const U> theirs) {
            std::vector<std::conditional_t<std::is_same_v<T, U>, T, double>> joined;
            joined.reserve(mine.size() + theirs.size());
            joined.insert(joined.end(), mine.begin(), mine.end());
            joined.insert(joined.end(), theirs.begin(), theirs.end());
            body.values = std::move(joined);
        });
    });
    return new omu_PrimArray(std::move(body));
}

void omu_PrimArray::DimsField::Write(const cls_WriteVisitor& visitor, const char* name,
                                     const Holder& body) {
    visitor.Write(name, std::span<const int>(omu_PrimArray::Read(body).dims));
}

void omu_PrimArray::DimsField::Read(const cls_ReadVisitor& visitor, const char* name,
                                    Holder& body) {
    visitor.Read(name, body.Get().dims);
}

void omu_PrimArray::PyTypeField::Write(const cls_WriteVisitor& visitor, const char* name,
                                       const Holder& body) {
    visitor.Write(name, kElementKinds[omu_PrimArray::Read(body).values.index()].kind);
}

void omu_PrimArray::PyTypeField::Read(const cls_ReadVisitor&, const char*, Holder&) {
    // Follows from the type code.
}

void omu_PrimArray::TypeCodeField::Write(const cls_WriteVisitor& visitor, const char* name,
                                         const Holder& body) {
    visitor.Write(name, kElementKinds[omu_PrimArray::Read(body).values.index()].code);
}

void omu_PrimArray::TypeCodeField::Read(const cls_ReadVisitor& visitor, const char* name,
                                        Holder& body) {
    char code = 0;
    visitor.Read(name, code);
    Values& values = body.Get().values;
    switch (code) {
        case 'i':
            values = std::vector<int>();
            break;
        case 'f':
            values = std::vector<float>();
            break;
        case 'd':
            values = std::vector<double>();
            break;
        default:
            Raise("PrimArray stored with an unknown type code", __LINE__);
    }
}

template <class T>
void omu_PrimArray::DataField<T>::Write(const cls_WriteVisitor& visitor, const char* name,
                                        const Holder& body) {
    const auto* values = std::get_if<std::vector<T>>(&omu_PrimArray::Read(body).values);
    visitor.Write(name, values != nullptr ? std::span<const T>(*values) : std::span<const T>());
}

template <class T>
void omu_PrimArray::DataField<T>::Read(const cls_ReadVisitor& visitor, const char* name,
                                       Holder& body) {
    if (auto* values = std::get_if<std::vector<T>>(&body.Get().values)) {
        visitor.Read(name, *values);
    }
}

template struct CAE_API omu_PrimArray::DataField<int>;
template struct CAE_API omu_PrimArray::DataField<float>;
template struct CAE_API omu_PrimArray::DataField<double>;
