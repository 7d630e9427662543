#pragma once

#include "omu_PrimDictionary.h"
#include "omu_PrimTuple.h"
#include "omu_StandardTraits.h"

#include <vector>

/// The arguments of one scripted command call: positional values and keyword values.
///
/// A command reads them back in the order of its signature, one getter a parameter, each naming
/// the parameter's keyword; the list decides for each whether the value comes from the next
/// positional slot or from the keyword. The first mismatch is recorded and End() raises exactly
/// one error:
///
///     args.Begin();
///     args.Get(count, "count");
///     args.Optional();
///     args.Get(size, "size");   // keeps its value when the call does not give it
///     args.End();
///
/// It serves in the other direction too: fill it with Put and hand it to a command of your own.
class CAE_API omu_Arguments : public omu_PrimTuple {
public:
    omu_Arguments();
    /// Room for \p positionalCount positional values.
    explicit omu_Arguments(int positionalCount);
    omu_Arguments(const omu_Arguments&) = default;
    omu_Arguments& operator=(const omu_Arguments& other) { return *this = omu_Arguments(other); }
    omu_Arguments(omu_Arguments&&) noexcept = default;
    omu_Arguments& operator=(omu_Arguments&&) noexcept = default;
    ~omu_Arguments() override;

    [[nodiscard]] omu_Primitive* Copy() const override;
    /// The text form of the call: "(1, 'a', size=2.5)", keywords sorted.
    [[nodiscard]] cow_String AsString(int depth) const override;
    [[nodiscard]] cow_String AsRepr() const override;
    /// Whether positional and keyword values are equal.
    bool operator==(const omu_Primitive& other) const override;

    // Filling. Put(value) appends a positional value.
    using omu_PrimTuple::Put;
    void Put(signed char value) { PutMade(value); }
    void Put(const omu_TarvexName& value) { PutMade(value); }
    /// Traces "Put omu_PyObjectWrapper val:%p \n" with the pointer on standard output.
    void Put(omu_PyObjectWrapper* value) override;

    /// Stores the value of a keyword; one given before is replaced.
    template <omu_Puttable T>
    void Put(const T& value, const cow_String& keyword) {
        PutKeyword(omu_ValueTraits<T>::Make(value), keyword);
    }
    void Put(const char* value, const cow_String& keyword) {
        PutKeyword(omu_ValueTraits<const char*>::Make(value), keyword);
    }
    /// The value is taken over.
    void Put(omu_Primitive* value, const cow_String& keyword) {
        PutKeyword(omu_ValueTraits<omu_Primitive*>::Make(value), keyword);
    }
    /// An object of the application, kept by handle.
    void Put(omu_InterfaceObj* value, const cow_String& keyword) {
        PutKeyword(omu_ValueTraits<omu_InterfaceObj*>::Make(value), keyword);
    }
    /// A constant of whatever enumeration.
    void Put(const omu_PrimEnumBase& value, const cow_String& keyword) {
        PutKeyword(value.Copy(), keyword);
    }
    /// A tuple or list.
    void Put(const omu_PrimTuple& value, const cow_String& keyword) {
        PutKeyword(value.Copy(), keyword);
    }

    // Reading: the next positional value, or else the keyword's.
    using omu_PrimTuple::Get;
    virtual void Get(bool& target, const cow_String& keyword);
    virtual void Get(signed char& target, const cow_String& keyword);
    virtual void Get(short& target, const cow_String& keyword);
    virtual void Get(int& target, const cow_String& keyword);
    virtual void Get(unsigned int& target, const cow_String& keyword);
    virtual void Get(double& target, const cow_String& keyword);
    virtual void Get(cow_String& target, const cow_String& keyword);
    virtual void Get(utl_FilePath& target, const cow_String& keyword);
    virtual void Get(omi_complex& target, const cow_String& keyword);
    /// A keyword value that does not convert is also reported on standard error.
    virtual void Get(atr_String& target, const cow_String& keyword);
    /// The nested tuple also receives its place, for the messages of its own errors.
    virtual void Get(omu_PrimTuple& target, const cow_String& keyword);
    virtual void Get(omu_PrimArray& target, const cow_String& keyword);
    virtual void Get(omu_PrimPath& target, const cow_String& keyword);
    virtual void Get(omu_PrimDictionary<int>& target, const cow_String& keyword);
    virtual void Get(omu_PrimDictionary<cow_String>& target, const cow_String& keyword);
    virtual void Get(omu_PrimEnumBase& target, const cow_String& keyword);
    virtual void Get(omu_PrimNone& target, const cow_String& keyword);
    virtual void Get(omu_PrimType& target, const cow_String& keyword);
    virtual void Get(cow_List<int>& target, const cow_String& keyword);
    virtual void Get(cow_List<bool>& target, const cow_String& keyword);
    virtual void Get(cow_1DArrayList<int>& target, const cow_String& keyword);
    virtual void Get(cow_1DArray<int>& target, const cow_String& keyword);
    virtual void Get(cow_List<float>& target, const cow_String& keyword);
    virtual void Get(cow_1DArrayList<double>& target, const cow_String& keyword);
    virtual void Get(cow_1DArrayList<float>& target, const cow_String& keyword);
    virtual void Get(cow_List<cow_String>& target, const cow_String& keyword);
    virtual void Get(cow_1DArrayList<cow_String>& target, const cow_String& keyword);
    virtual void Get(cow_List<atr_String>& target, const cow_String& keyword);
    virtual void Get(cow_2DArray<double>& target, const cow_String& keyword);
    virtual void Get(cow_2DArray<cow_String>& target, const cow_String& keyword);
    virtual void Get(cow_Map<cow_String, float>& target, const cow_String& keyword);
    /// A string made a plain name, which raises its own name error at once.
    virtual void Get(omu_TarvexName& target, const cow_String& keyword);
    /// Any value; the holder shares nothing with the list.
    virtual void Get(omu_PrimHolder& target, const cow_String& keyword);
    /// The object given, when it is of the type \p typeName, else \p fallback.
    [[nodiscard]] virtual const omu_InterfaceObj* Get(const char* typeName,
                                                      const cow_String& keyword,
                                                      const omu_InterfaceObj* fallback);
    /// The wrapped interpreter object of the keyword, owned by the list, else \p fallback. It alone
    /// never takes a positional value.
    [[nodiscard]] virtual const omu_PyObjectWrapper* Get(const cow_String& keyword,
                                                         const omu_PyObjectWrapper* fallback);

    /// After a getter that failed: tries \p keyword, the parameter's old name, provided deprecated
    /// arguments are accepted. \p note is for the reader of the code.
    template <class T>
    void DeprecatedGet(T& target, const cow_String& keyword, const char* note) {
        ReadDeprecated(keyword, note, [&] { Get(target, keyword); });
    }
    [[nodiscard]] const omu_InterfaceObj* DeprecatedGet(const char* typeName,
                                                        const cow_String& keyword,
                                                        const omu_InterfaceObj* fallback,
                                                        const char* note);
    /// Alternative(), provided deprecated arguments are accepted.
    bool DeprecatedAlternative(const char* note);
    /// Whether deprecated arguments are accepted.
    [[nodiscard]] bool DeprecatedCheck(const char* note) const;
    /// The old keywords that the call used, each once.
    [[nodiscard]] const cow_1DArrayList<cow_String>& DeprecatedKeywords() const noexcept {
        return _deprecatedKeywords;
    }

    void Begin() override;
    /// Undoes the last getter if it failed, so that another form of the same parameter can be
    /// tried; else false.
    bool Alternative();
    /// Whether the last getter found nothing usable.
    [[nodiscard]] bool ErrorOnPrevious() const noexcept;
    /// Whether End() would raise.
    [[nodiscard]] bool Error() const;
    /// Raises the one error of the call, by this precedence: a keyword that no getter asked for
    /// (omu_KeywordErrorException), a value of the wrong type (omu_ArgTypeErrorException or
    /// omu_KeywordTypeErrorException), too few or too many values (omu_ArgNumberErrorException).
    void End(cow_String nesting = {}) override;

    /// The keyword values given.
    [[nodiscard]] const omu_PrimDictionary<cow_String>& Keywords() const noexcept {
        return _keywords;
    }
    /// The keywords in the order they were put.
    [[nodiscard]] const std::vector<cow_String>& KeywordOrder() const noexcept {
        return _keywordOrder;
    }
    /// The keyword of the parameter that the last error is about; empty for a positional one.
    [[nodiscard]] const cow_String& ErrorKeyword() const noexcept { return _errorKeyword; }

protected:
    void PutOwned(omu_Primitive* value) override;
    void SetTypeError(cow_String expected) override;

private:
    void PutKeyword(omu_Primitive* value, const cow_String& keyword);
    using Place = std::vector<cow_String>::iterator;
    /// The keyword among those not consumed yet, or their end.
    [[nodiscard]] Place FindUnconsumed(const cow_String& keyword) noexcept;
    void CountKeyword(Place keyword);
    void MissKeyword(const cow_String& keyword);
    void SetKeywordTypeError(const cow_String& keyword, cow_String expected,
                             const omu_Primitive& found);
    template <class Convert, class Expected>
    void ReadKeyword(const cow_String& keyword, Convert convert, Expected expected);
    template <class T>
    void Read(T& target, const cow_String& keyword);
    template <class Getter>
    void ReadDeprecated(const cow_String& keyword, const char* note, Getter read);
    void NoteDeprecated(const cow_String& keyword);
    [[nodiscard]] int ValuesForRequired() const noexcept { return _requiredKeywords + _size; }
    [[nodiscard]] int ValuesGiven() const { return _keywords.Length() + _size; }

    omu_PrimDictionary<cow_String> _keywords;
    // A call has a handful of keywords, made and dropped with it: plain vectors serve it best.
    std::vector<cow_String> _unconsumed;
    std::vector<cow_String> _keywordOrder;
    cow_1DArrayList<cow_String> _deprecatedKeywords;
    int _requiredKeywords = 0;  // keywords consumed in required mode
    int _requiredMiss = 0;      // call of the last required keyword error, 0 when none
    cow_String _errorKeyword;
    int _optionalMiss = 0;  // call of the last optional keyword miss, 0 when none
};

template <class Getter>
void omu_Arguments::ReadDeprecated(const cow_String& keyword, const char* note, Getter read) {
    if (DeprecatedAlternative(note)) {
        read();
        if (!ErrorOnPrevious()) {
            NoteDeprecated(keyword);
        }
    }
}
