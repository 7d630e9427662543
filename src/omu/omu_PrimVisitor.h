#pragma once

#include "CaeUtilsExport.h"

class cow_String;
class omu_PrimArray;
class omu_PrimBoolean;
class omu_PrimComplex;
class omu_PrimEnumBase;
class omu_PrimException;
class omu_PrimExpr;
class omu_PrimList;
class omu_PrimNone;
class omu_PrimNumber;
class omu_PrimPath;
class omu_PrimString;
class omu_PrimTranslatedString;
class omu_PrimTuple;
class omu_PrimType;
class omu_PrimWrapper;
class omu_Primitive;
class omu_PyObjectWrapper;
template <int N>
class omu_PrimBool;
template <class Key>
class omu_PrimDictionary;

/// Double dispatch over the concrete classes of values: one operation per class.
///
/// Every operation falls back on a more general one: a list on the tuple's, an ON/OFF constant on
/// the constant's, all others on VisitOther, which does nothing.
class CAE_API omu_PrimVisitor {
public:
    virtual ~omu_PrimVisitor();

    virtual void Visit(const omu_PrimNone& value);
    virtual void Visit(const omu_PrimBoolean& value);
    virtual void Visit(const omu_PrimNumber& value);
    virtual void Visit(const omu_PrimComplex& value);
    virtual void Visit(const omu_PrimString& value);
    virtual void Visit(const omu_PrimTranslatedString& value);
    virtual void Visit(const omu_PrimPath& value);
    virtual void Visit(const omu_PrimExpr& value);
    virtual void Visit(const omu_PrimException& value);
    virtual void Visit(const omu_PrimWrapper& value);
    virtual void Visit(const omu_PrimType& value);
    virtual void Visit(const omu_PrimEnumBase& value);
    virtual void Visit(const omu_PrimBool<2>& value);
    virtual void Visit(const omu_PrimTuple& value);
    virtual void Visit(const omu_PrimList& value);
    virtual void Visit(const omu_PrimArray& value);
    virtual void Visit(const omu_PrimDictionary<int>& value);
    virtual void Visit(const omu_PrimDictionary<cow_String>& value);
    virtual void Visit(const omu_PyObjectWrapper& value);
    /// Any value whose own operation is not overridden.
    virtual void VisitOther(const omu_Primitive& value);
};
