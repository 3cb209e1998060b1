#pragma once

#include "Core/Date.h"
#include "Core/RunFiles.h"

namespace vh {

/// What became of a step at which a run was killed. `step` is the row that it would have left; the run began at
/// `runStart`. Looks at the item's place and into the Trash.
RunFileRow afterInterruption(RunFileRow step, Date runStart);

} // namespace vh
