#include "mdl_Model.h"

#include "omu_Arguments.h"
#include "omu_ErrorExceptions.h"
#include "omu_RangeChecker.h"
#include "omu_TarvexName.h"

template class omu_PrimEnum<mdl_Model::FormulationEnm, 1>;
template class omu_PrimEnum<mdl_Model::RestartIncEnm, 1>;

void mdl_Model::SetFormulation(const Formulation& formulation) noexcept {
    _formulation = formulation;
}

void mdl_Model::SetRestart(cow_String job, cow_String step) {
    static_cast<void>(omu_TarvexName(job, JOB_NAME));
    static_cast<void>(omu_TarvexName(step, GENERAL_NAME));
    _restartJob = std::move(job);
    _restartStep = std::move(step);
    _restartInc = STEP_END;
    _restartIncrement = 0;
}

void mdl_Model::SetRestart(cow_String job, cow_String step, int increment) {
    omu_RangeChecker().AtLeast(1).Check("restartIncrement", increment);
    SetRestart(std::move(job), std::move(step));
    _restartInc = INCREMENT;
    _restartIncrement = increment;
}

void mdl_Model::ClearRestart() noexcept {
    _restartJob = cow_String();
    _restartStep = cow_String();
    _restartInc = STEP_END;
    _restartIncrement = 0;
}

void mdl_Model::Set(omu_Arguments& arguments) {
    mdl_Model given(*this);
    Formulation formulation(given._formulation);
    RestartInc inc(given._restartInc);
    arguments.Begin();
    arguments.Optional();
    arguments.Get(given._description, "description");
    arguments.Get(formulation, "formulation");
    arguments.Get(given._restartJob, "restartJob");
    arguments.Get(given._restartStep, "restartStep");
    // A number, or failing that the constant.
    const bool hadFailed = arguments.HasFailed();
    arguments.Get(given._restartIncrement, "restartIncrement");
    if (!arguments.ErrorOnPrevious()) {
        inc = RestartInc(INCREMENT);
    } else if (!hadFailed && arguments.HasFailed() && arguments.Alternative()) {
        arguments.Get(inc, "restartIncrement");
    }
    arguments.End();

    given._formulation = formulation;
    if (!given.IsRestart()) {
        if (given._restartStep != _restartStep || given._restartIncrement != _restartIncrement) {
            omu_ValueErrorException("restartStep and restartIncrement need a restartJob")
                .Throw("generated/mdl/impl/mdl_Model", __LINE__);
        }
        given.ClearRestart();
    } else if (inc == STEP_END) {
        given.SetRestart(given._restartJob, given._restartStep);
    } else {
        given.SetRestart(given._restartJob, given._restartStep, given._restartIncrement);
    }
    *this = given;
}
