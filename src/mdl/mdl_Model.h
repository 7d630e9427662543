#pragma once

#include "omu_PrimEnum.h"

class omu_Arguments;

/// The settings of one model: what it is for, how its motion is described, and where its analysis
/// goes on from an earlier one. A value: copies share their texts; equal settings compare equal.
class CAE_API mdl_Model {
public:
    /// How strains and stresses refer to the body as it moves.
    enum FormulationEnm : int {
        SMALL_DISPLACEMENT = 0,  ///< to the undeformed body, rotations small
        TOTAL_LAGRANGIAN = 1,    ///< to the undeformed body, motion of any size
        UPDATED_LAGRANGIAN = 2,  ///< to the body as the increment found it
    };
    /// Where in the restart step the analysis goes on.
    enum RestartIncEnm : int {
        STEP_END = 0,   ///< behind the last increment of the step
        INCREMENT = 1,  ///< behind the increment of the given number
    };
    using Formulation = omu_PrimEnum<FormulationEnm, 1>;
    using RestartInc = omu_PrimEnum<RestartIncEnm, 1>;

    /// Small displacements, no description, no restart.
    mdl_Model() = default;

    [[nodiscard]] const cow_String& Description() const noexcept { return _description; }
    void SetDescription(cow_String text) noexcept { _description = std::move(text); }
    [[nodiscard]] FormulationEnm GetFormulation() const noexcept { return _formulation; }
    void SetFormulation(const Formulation& formulation) noexcept;

    /// Whether the analysis goes on from an earlier one; the four below say from where.
    [[nodiscard]] bool IsRestart() const noexcept { return !_restartJob.IsEmpty(); }
    [[nodiscard]] const cow_String& RestartJob() const noexcept { return _restartJob; }
    [[nodiscard]] const cow_String& RestartStep() const noexcept { return _restartStep; }
    [[nodiscard]] RestartIncEnm GetRestartInc() const noexcept { return _restartInc; }
    /// Number of the increment, at least 1; 0 for STEP_END.
    [[nodiscard]] int RestartIncrement() const noexcept { return _restartIncrement; }
    /// Goes on behind the end of a step of a job. omu_TvxNameErrorException for a wrong name;
    /// nothing has changed then.
    void SetRestart(cow_String job, cow_String step);
    /// Goes on behind increment \p increment, at least 1, else omu_RangeErrorException.
    void SetRestart(cow_String job, cow_String step, int increment);
    void ClearRestart() noexcept;

    /// Sets what a command gives, all or, when this raises, nothing: description, formulation,
    /// restartJob, restartStep, restartIncrement (STEP_END or a number). All are optional; an
    /// empty restartJob clears the restart. A step or increment without a job:
    /// omu_ValueErrorException.
    void Set(omu_Arguments& arguments);

    bool operator==(const mdl_Model&) const = default;

private:
    cow_String _description;
    FormulationEnm _formulation = SMALL_DISPLACEMENT;
    cow_String _restartJob;
    cow_String _restartStep;
    RestartIncEnm _restartInc = STEP_END;
    int _restartIncrement = 0;
};

template <>
struct omu_EnumTable<mdl_Model::FormulationEnm, 1> {
    static constexpr omu_EnumEntry<mdl_Model::FormulationEnm> kEntries[] = {
        {"SMALL_DISPLACEMENT", mdl_Model::SMALL_DISPLACEMENT},
        {"TOTAL_LAGRANGIAN", mdl_Model::TOTAL_LAGRANGIAN},
        {"UPDATED_LAGRANGIAN", mdl_Model::UPDATED_LAGRANGIAN},
        {nullptr, mdl_Model::SMALL_DISPLACEMENT}};
};

template <>
struct omu_EnumTable<mdl_Model::RestartIncEnm, 1> {
    static constexpr omu_EnumEntry<mdl_Model::RestartIncEnm> kEntries[] = {
        {"STEP_END", mdl_Model::STEP_END},
        {"INCREMENT", mdl_Model::INCREMENT},
        {nullptr, mdl_Model::STEP_END}};
};

extern template class CAE_API omu_PrimEnum<mdl_Model::FormulationEnm, 1>;
extern template class CAE_API omu_PrimEnum<mdl_Model::RestartIncEnm, 1>;
