#pragma once

/// How a program that updates itself lies in its folder; read by the program and, without Qt, by
/// the launcher.
///
///     vorle                      the launcher: what people start. No update touches it.
///     versions/1.4.0/bin/vorle   one folder a version, never changed once it has its name
///     current  -> versions/1.4.0     what the launcher starts
///     previous -> versions/1.3.0     what it goes back to
///     next     -> versions/1.5.0     what takes the place of `current` when the program ends
///     starts                     a byte for each start of a version on trial, locked (flock) by
///                                the launcher that tries it
///     answers                    the version on trial runs, and waits for something; written by it
///     refused                    the version that did not start
///     unplaced                   the version that could not be put in its place
///     .staging/                  a download on its way
///
/// `next` is there: that version is ready. `previous` leads elsewhere than `current`: `current` is
/// on trial, until it says that it works. Neither: nothing is under way. Each step from one to the
/// next is a single rename or unlink of a link, so that `current` is a whole version at every
/// moment.
namespace vorle::layout {

constexpr const char *launcher = "vorle";
constexpr const char *versions = "versions";
constexpr const char *current = "current";
constexpr const char *previous = "previous";
constexpr const char *next = "next";
constexpr const char *starts = "starts";
constexpr const char *answers = "answers";
constexpr const char *refused = "refused";
constexpr const char *unplaced = "unplaced";
constexpr const char *staging = ".staging";
constexpr const char *program = "bin/vorle";   ///< inside a version
constexpr const char *versionFile = "version"; ///< inside a version: its number, on one line

/// After that many starts that never came to say that they work, the version before comes back.
constexpr int maxStarts = 3;

} // namespace vorle::layout
