#pragma once

/// What the program and the guard of a child process say to each other. The guard is a program of
/// its own, small enough to be started for every call:
///
///     vorle-guard DESCRIPTOR PROGRAM ARGUMENTS…
///
/// runs PROGRAM as its child, in the guard's process group, and ends as that child ended: with its
/// status, or by its signal. DESCRIPTOR is one end of a stream socket whose other end this program
/// alone holds.
///
/// From the program: one byte asks for a polite end (SIGTERM to the group, the rest after
/// `guardGrace`); the end of the stream, for the end at once, and it comes by itself when the
/// program is gone, however it ended. To the program: four bytes, an `errno`, when the child could
/// not be started, and nothing otherwise.
///
/// When the child ends, or is to, whatever it started ends too: on Linux every descendant, in
/// whatever session it has put itself; elsewhere those of its group and those that still descend
/// from it by name of parent.
namespace vorle::guard {

inline constexpr char politeEnd = 'T';
inline constexpr int graceMilliseconds = 1'000; ///< between SIGTERM and SIGKILL
inline constexpr int killMilliseconds = 2'000;  ///< how long what will not die is waited for

} // namespace vorle::guard
