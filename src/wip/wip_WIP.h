#pragma once

#include "thr_ThreadSingleton.h"
#include "wip_WIPBase.h"

/// The calling thread's progress front, reached as thr_ThreadSingleton<wip_WIP>::Instance().
///
///     thr_ThreadSingleton<wip_WIP>::Instance().Milestone("Meshing");
///
/// Each thread has its own, with its own reporter, made on first use and destroyed when the thread
/// ends; no other thread may use it. The reporter is never deleted.
class CAE_API wip_WIP : public wip_WIPBase, public thr_ThreadSingletonBase<wip_WIP> {
public:
    /// Called by thr_ThreadSingleton alone.
    wip_WIP();
    ~wip_WIP() override;
};
