#pragma once

#include "omu_PrimVisitor.h"
#include "omu_Primitive.h"

#include <functional>
#include <string>
#include <string_view>

class omu_InterfaceHandle;

/// Writes values as Python text that makes exactly the same values again, given
/// `from caehost import *`: every double bit for bit, strings with all their characters, arrays
/// with their type and shape.
class host_PythonText : private omu_PrimVisitor {
public:
    /// What application objects are called in the text; empty for one without a name.
    using NameOf = std::function<std::string(const omu_InterfaceHandle&)>;

    explicit host_PythonText(NameOf nameOf) : _nameOf(std::move(nameOf)) {}

    void Append(std::string_view code) { _text += code; }
    void Append(const omu_Primitive& value) { value.Accept(this); }
    /// Appends a string in quotes.
    void AppendQuoted(std::string_view text);

    [[nodiscard]] const std::string& Text() const noexcept { return _text; }
    /// The first value that cannot be written, in words ("a function object"); empty when all were.
    /// In the text it shows as "<function>".
    [[nodiscard]] const std::string& Obstacle() const noexcept { return _obstacle; }

private:
    using omu_PrimVisitor::Visit;
    void Visit(const omu_PrimNone& value) override;
    void Visit(const omu_PrimBoolean& value) override;
    void Visit(const omu_PrimNumber& value) override;
    void Visit(const omu_PrimComplex& value) override;
    void Visit(const omu_PrimString& value) override;
    void Visit(const omu_PrimEnumBase& value) override;
    void Visit(const omu_PrimTuple& value) override;
    void Visit(const omu_PrimList& value) override;
    void Visit(const omu_PrimArray& value) override;
    void Visit(const omu_PrimDictionary<int>& value) override;
    void Visit(const omu_PrimDictionary<cow_String>& value) override;
    void Visit(const omu_PrimWrapper& value) override;
    void VisitOther(const omu_Primitive& value) override;

    void AppendDouble(double value);
    void AppendElements(const omu_PrimTuple& sequence);
    void Omit(std::string_view shown, std::string obstacle);

    std::string _text;
    std::string _obstacle;
    NameOf _nameOf;
};
