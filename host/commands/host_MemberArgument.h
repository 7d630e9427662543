#pragma once

#include "host_CommandTools.h"
#include "host_Model.h"
#include "omu_PrimWrapper.h"

/// The name of a member that a command is given next, as an object of the type or as its name. An
/// object that is gone raises omu_AccessErrorException.
template <class T>
[[nodiscard]] cow_String host_GetName(omu_Arguments& args, const char* keyword) {
    const omu_Primitive* given = host_Given(args, args.Cursor(), keyword);
    const auto* wrapper = given != nullptr ? omu_PrimCast<omu_PrimWrapper>(*given) : nullptr;
    cow_String name;
    if (wrapper == nullptr) {
        args.Get(name, keyword);
        return name;
    }
    if (wrapper->Handle() != omu_InterfaceHandle()) {
        (void)wrapper->Handle().Require();
    }
    const char* const type = T::StaticType().Name().c_str();
    if (const omu_InterfaceObj* object = args.Get(type, keyword, nullptr)) {
        name = static_cast<const T&>(*object).Name();
    }
    return name;
}

/// The parameter that a command reads with host_GetName.
template <class T>
[[nodiscard]] host_Parameter host_MemberParameter(const char* name, std::string help,
                                                  std::string defaultText = {}) {
    return {
        name, T::StaticType().Name() + " or its name", std::move(help), std::move(defaultText), {}};
}

/// The only parameter of a command.
template <class T>
[[nodiscard]] T& host_GetOnlyMember(omu_Arguments& args, const char* keyword) {
    args.Begin();
    const cow_String name = host_GetName<T>(args, keyword);
    args.End();
    return host_Model::Instance().Find<T>(name);
}
