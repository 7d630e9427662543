#include "host_Step.h"

#include "mdl_Repository.h"
#include "omu_RangeChecker.h"

#include <cmath>

template class host_MemberOf<host_Step, host_StepContent>;

host_Step::host_Step(cow_String name, host_StepContent content)
    : host_MemberOf(std::move(name), std::move(content)) {
    CheckPeriod(Get().period);
}

host_Step::host_Step(const cls_ReadVisitor& visitor) : host_MemberOf(visitor) {
    CheckPeriod(Get().period);
}

void host_Step::CheckPeriod(double period) {
    omu_RangeChecker().Above(0).Check("period", period);
    if (!std::isfinite(period)) {
        omu_ValueErrorException("period is not finite").Throw("host/model/host_Step", __LINE__);
    }
}

int host_Step::Index() const { return Owner()->IndexOf(Name()); }

cow_String host_Step::Beside(int offset) const {
    const auto& steps = Owner()->Members();
    const int index = Index() + offset;
    return index >= 0 && index < Owner()->Length() ? steps[static_cast<std::size_t>(index)]->Name()
                                                   : cow_String();
}

void host_Step::SetPeriod(double period) {
    CheckPeriod(period);
    Edit().period = period;
}

const omu_InterfaceType& host_Step::StaticType() {
    static const omu_InterfaceType type =
        omu_InterfaceType("Step", &host_Member::StaticType())
            .Help("A step of the analysis. Commands take it, or its name.")
            .Attribute("index", &host_Step::Index)
            .Help("its place among the steps, from 0")
            .Attribute("previous", &host_Step::Previous)
            .Help("name of the step before it; empty for the first one")
            .Attribute("next", &host_Step::Next)
            .Help("name of the step behind it; empty for the last one")
            .Attribute("procedure", &host_Step::Procedure)
            .Help("what it computes: STATIC, MODAL, TRANSIENT or HEAT")
            .Attribute("period", &host_Step::Period, &host_Step::SetPeriod)
            .Help("how long it lasts, above 0")
            .Attribute("description", &host_Step::Description, &host_Step::SetDescription)
            .Help("what it is for, any text");
    return type;
}
