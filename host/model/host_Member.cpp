#include "host_Member.h"

#include "host_Model.h"
#include "host_ModelRules.h"

const omu_InterfaceType& host_Member::StaticType() {
    static const omu_InterfaceType type =
        omu_InterfaceType("ModelObject", &omu_InterfaceObj::StaticType())
            .Attribute("name", &host_Member::NameText, &host_Member::SetNameText)
            .Help("its name, a legal one; setting it renames the object");
    return type;
}

cow_String host_Member::AsString(int /*depth*/) const {
    return std::string(ExposedTypeName()) + " '" + Name().Std() + "'";
}

void host_Member::SetNameText(const cow_String& name) { host_RenameMember(*this, name); }
