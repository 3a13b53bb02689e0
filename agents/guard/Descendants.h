#pragma once

#include <sys/types.h>

#include <vector>

namespace vorle::guard {

/// Makes this process the parent of every descendant whose own parent ends, where the system can
/// (Linux): none is out of reach then.
void adoptOrphans();

/// The processes to be ended: this one's children and, where orphans are not adopted, the children
/// of these in turn. Those that ended and were not waited for yet are among them.
std::vector<pid_t> descendants();

} // namespace vorle::guard
