#include "omu_PrimVisitor.h"

#include "omu_PrimArray.h"
#include "omu_PrimBool.h"
#include "omu_PrimBoolean.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimException.h"
#include "omu_PrimExpr.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimPath.h"
#include "omu_PrimString.h"
#include "omu_PrimTranslatedString.h"
#include "omu_PrimTuple.h"
#include "omu_PrimType.h"
#include "omu_PrimWrapper.h"
#include "omu_PyObjectWrapper.h"

omu_PrimVisitor::~omu_PrimVisitor() = default;

// clang-format off
void omu_PrimVisitor::Visit(const omu_PrimNone& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimBoolean& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimNumber& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimComplex& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimString& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimTranslatedString& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimPath& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimExpr& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimException& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimWrapper& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimType& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimEnumBase& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimBool<2>& value) { Visit(static_cast<const omu_PrimEnumBase&>(value)); }
void omu_PrimVisitor::Visit(const omu_PrimTuple& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimList& value) { Visit(static_cast<const omu_PrimTuple&>(value)); }
void omu_PrimVisitor::Visit(const omu_PrimArray& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimDictionary<int>& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PrimDictionary<cow_String>& value) { VisitOther(value); }
void omu_PrimVisitor::Visit(const omu_PyObjectWrapper& value) { VisitOther(value); }
// clang-format on

void omu_PrimVisitor::VisitOther(const omu_Primitive&) {}
