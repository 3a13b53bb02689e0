#pragma once

#include <functional>

namespace vorle::test {

/// Runs the event loop until `idle()` holds and nothing that was handed to the thread pool is under
/// way or still to be taken up: what tests end with, so that no coroutine is left waiting. Fails
/// the test past the deadline; throws nothing.
void settle(const std::function<bool()> &idle = [] { return true; });

/// Runs the event loop until whoever asked the disk has an answer: what test programs end with. A
/// watched file asks it for nobody who waits.
void letDiskAnswer();

} // namespace vorle::test
