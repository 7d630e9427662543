#pragma once

class host_Step;

/// Marks in the view where loads act in a step, with a caption, in place of earlier such marks.
/// Returns how many are marked. A region that its part no longer has raises
/// omu_ValueErrorException.
int host_MarkLoads(const host_Step& step);
