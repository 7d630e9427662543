#include "omu_initialize.h"

#include "omu_BackwardCompat.h"
#include "omu_ChangeHistory.h"
#include "omu_CmdHistory.h"
#include "omu_ErrorExceptions.h"
#include "omu_PrimArray.h"
#include "omu_PrimBool.h"
#include "omu_PrimBoolean.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimEnumBase.h"
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
#include "omu_QueryPathMsg.h"
#include "omu_SymbolicConstantTable.h"
#include "omu_TextRepr.h"
#include "omu_TypeRegistryCache.h"
#include "uti_Module.h"

namespace {

constexpr unsigned short kModule = 19;

/// The identity of this module's class \p index.
constexpr unsigned Own(unsigned index) { return kModule * 65536U + index; }

constexpr unsigned kCommandError = nex_CommandException::TypeId();
constexpr unsigned kTypeError = Own(1);
constexpr unsigned kPrimitive = Own(17);
constexpr unsigned kDictionary = Own(18);
constexpr unsigned kEnum = Own(27);
constexpr unsigned kSequence = Own(32);

constexpr typ_Entry kTypes[] = {
    {typ_Entry::Unused, 1, nullptr},
    {typ_Entry::Exception, kCommandError, "omu_TypeErrorException"},
    {typ_Entry::Exception, kTypeError, "omu_KeywordTypeErrorException"},
    {typ_Entry::Exception, kTypeError, "omu_ArgTypeErrorException"},
    {typ_Entry::Exception, kTypeError, "omu_ArgNumberErrorException"},
    {typ_Entry::Exception, kTypeError, "omu_KeywordErrorException"},  // 5
    {typ_Entry::Exception, kCommandError, "omu_AttributeErrorException"},
    {typ_Entry::Exception, kCommandError, "omu_KeyErrorException"},
    {typ_Entry::Exception, kCommandError, "omu_IndexErrorException"},
    {typ_Entry::Exception, kCommandError, "omu_RangeErrorException"},
    {typ_Entry::Exception, kCommandError, "omu_ValueErrorException"},  // 10
    {typ_Entry::Exception, kCommandError, "omu_OverflowErrorException"},
    {typ_Entry::Exception, kCommandError, "omu_NameErrorException"},
    {typ_Entry::Exception, kCommandError, "omu_ZeroDivisionErrorException"},
    {typ_Entry::Unused, 1, nullptr},
    {typ_Entry::Exception, kCommandError, "omu_FontErrorException"},  // 15
    {typ_Entry::Exception, kCommandError, "omu_AccessErrorException"},
    {typ_Entry::Persistent, 1, "omu_Primitive"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimDictionaryBase"},
    {typ_Entry::Persistent, kDictionary, "omu_PrimIntDictionary"},
    {typ_Entry::Persistent, kDictionary, "omu_PrimStrDictionary"},  // 20
    {typ_Entry::Persistent, Own(25), "omu_PrimList"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimNumber"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimPath"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimString"},
    {typ_Entry::Persistent, kSequence, "omu_PrimTuple"},  // 25
    {typ_Entry::Persistent, kPrimitive, "omu_PrimExpr"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimEnumBase"},
    {typ_Entry::Persistent, 1, "omu_QueryPathMsg"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimNone"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimWrapper"},  // 30
    {typ_Entry::Persistent, kPrimitive, "omu_PrimType"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimSequence"},
    {typ_Entry::Persistent, kSequence, "omu_PrimArray"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimComplex"},
    {typ_Entry::Exception, kCommandError, "omu_TvxNameErrorException"},  // 35
    {typ_Entry::Exception, kTypeError, "omu_GenericTypeErrorException"},
    {typ_Entry::Persistent, kEnum, "omu_OnOffConst"},
    {typ_Entry::Persistent, kEnum, "omu_TrueFalseConst"},
    {typ_Entry::Persistent, kEnum, "omu_YesNoConst"},
    {typ_Entry::Exception, kCommandError, "omu_GuiAccessErrorException"},  // 40
    {typ_Entry::Persistent, kPrimitive, "omu_PyObjectWrapper"},
    {typ_Entry::Persistent, Own(45), "omu_DictPyObjectWrapper"},
    {typ_Entry::Persistent, Own(19), "omu_DictIntPyObjectWrapper"},
    {typ_Entry::Persistent, Own(20), "omu_DictStrPyObjectWrapper"},
    {typ_Entry::Persistent, kDictionary, "omu_PrimDictionary"},  // 45
    {typ_Entry::Persistent, Own(21), "omu_ListPyObjectWrapper"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimException"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimTranslatedString"},
    {typ_Entry::Persistent, kPrimitive, "omu_PrimBoolean"},
};
static_assert(std::size(kTypes) == 50);

// In registration order; five errors come before their base.
constexpr uti_Registration kClasses[] = {
    {&omu_ArgNumberErrorException::InitializeMetadata, 2},
    {&omu_ArgTypeErrorException::InitializeMetadata, 2},
    {&omu_GenericTypeErrorException::InitializeMetadata, 2},
    {&omu_KeywordErrorException::InitializeMetadata, 2},
    {&omu_KeywordTypeErrorException::InitializeMetadata, 2},
    {&omu_TypeErrorException::InitializeMetadata, 2},
    {&omu_TvxNameErrorException::InitializeMetadata, 2},
    {&omu_AttributeErrorException::InitializeMetadata, 2},
    {&omu_RangeErrorException::InitializeMetadata, 2},
    {&omu_AccessErrorException::InitializeMetadata, 2},
    {&omu_FontErrorException::InitializeMetadata, 2},
    {&omu_GuiAccessErrorException::InitializeMetadata, 2},
    {&omu_IndexErrorException::InitializeMetadata, 2},
    {&omu_KeyErrorException::InitializeMetadata, 2},
    {&omu_NameErrorException::InitializeMetadata, 2},
    {&omu_OverflowErrorException::InitializeMetadata, 2},
    {&omu_ValueErrorException::InitializeMetadata, 2},
    {&omu_ZeroDivisionErrorException::InitializeMetadata, 2},
    {&omu_Primitive::InitializeMetadata, 7},
    {&omu_PrimNumber::InitializeMetadata, 3},
    {&omu_PrimString::InitializeMetadata, 3},
    {&omu_PrimEnumBase::InitializeMetadata, 7},
    {&omu_PrimDictionaryBase::InitializeMetadata, 3},
    {&omu_PrimDictionary<cow_String>::InitializeMetadata, 3},
    {&omu_PrimBoolean::InitializeMetadata, 2},
    {&omu_PrimType::InitializeMetadata, 2},
    {&omu_PrimNone::InitializeMetadata, 2},
    {&omu_PrimPath::InitializeMetadata, 2},
    {&omu_PrimComplex::InitializeMetadata, 2},
    {&omu_PrimExpr::InitializeMetadata, 2},
    {&omu_PrimTranslatedString::InitializeMetadata, 2},
    {&omu_PrimSequence::InitializeMetadata, 2},
    {&omu_PrimTuple::InitializeMetadata, 2},
    {&omu_PrimList::InitializeMetadata, 2},
    {&omu_PrimArray::InitializeMetadata, 2},
    {&omu_PrimDictionary<int>::InitializeMetadata, 2},
    {&omu_PrimWrapper::InitializeMetadata, 2},
    {&omu_PrimException::InitializeMetadata, 2},
    {&omu_PrimBool<2>::InitializeMetadata, 2},
    {&omu_QueryPathMsg::InitializeMetadata, 2},
};
static_assert(std::size(kClasses) == 40);

constinit uti_Module theModule(kModule, kTypes, kClasses);

}  // namespace

void omu_initialize(int& count) {
    if (!theModule.Initialize(count)) {
        return;
    }
    // Whoever used these before the start saw other classes, perhaps another environment.
    omi_SingletonBase<omu_TypeRegistryCache>::Finalize();
    omi_SingletonBase<omu_BackwardCompat>::Finalize();
    static_cast<void>(omi_Singleton<omu_BackwardCompat>::Instance());
}

void omu_finalize(int& count) {
    if (!theModule.Finalize(count)) {
        return;
    }
    omi_SingletonBase<omu_TextRepr>::Finalize();
    omi_SingletonBase<omu_TypeRegistryCache>::Finalize();
    omi_SingletonBase<omu_SymbolicConstantTable>::Finalize();
    omi_SingletonBase<omu_BackwardCompat>::Finalize();
    thr_ThreadSingletonBase<omu_CmdHistory>::Destroy();
    thr_ThreadSingletonBase<omu_ChangeHistory>::Destroy();
}
