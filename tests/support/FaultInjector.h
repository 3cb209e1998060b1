#pragma once

#include "support/Interposed.h"

#include <functional>
#include <optional>
#include <string>

namespace vh::test {

/// How many file calls (opening, reading, writing, flushing, renaming, removing, …) this thread makes in `work`.
/// What `work` throws passes through.
size_t countFileCalls(const std::function<void()>& work);

/// Runs the work with its file call number `call` (from 0) failing with the errno `code`; true when it was met.
bool runWithFault(size_t call, int code, const std::function<void()>& work);

/// The same with every read after it failing too, as from a medium that is bad from there on.
bool runWithBadMedium(size_t call, const std::function<void()>& work);

/// One planned fault and what became of the work.
struct FaultPoint {
    size_t call = 0; ///< from 0
    FileCall what{};
    FaultKind kind = FaultKind::none;
    int code = 0;                      ///< errno of a failing call
    std::optional<std::string> thrown; ///< what() of the exception the work ended with
    std::string text() const;          ///< "call 4 (fsync) failing with Input/output error"
};

/// Runs `work` once for every file call it makes and every way in which that call may fail (no right, no room, device
/// error, only half written), each time after a fresh `setUp`, and then `check`. Reports a test failure when the work
/// makes no file calls at all or a planned fault is never met. Failures inside `check` name the fault.
void forEachFault(const std::function<void()>& setUp, const std::function<void()>& work,
                  const std::function<void(const FaultPoint&)>& check);

/// The same with a child process that is killed before every file call, and within every write. `check` runs in this
/// process after the child is gone.
void forEachKill(const std::function<void()>& setUp, const std::function<void()>& work,
                 const std::function<void(const FaultPoint&)>& check);

/// Runs the work once for every file call it makes, with `meddle` done just before that call as if by another program:
/// a race that is lost on purpose at every place where it can be. What the work throws stands in the point.
void forEachMeddling(const std::function<void()>& setUp, const std::function<void()>& meddle,
                     const std::function<void()>& work, const std::function<void(const FaultPoint&)>& check);

} // namespace vh::test
