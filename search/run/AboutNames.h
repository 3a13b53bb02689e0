#pragma once

#include <QString>
#include <QStringList>

namespace vorle {

/// Which of the territory's `names` a candidate's `about` stands for, each as it is spelled there.
///
/// One that is the whole of it counts alone, whatever the case, the accents and hyphens for blanks;
/// of two that differ in accents alone ("pêche", "péché") the one spelled alike counts. Else those
/// that stand in it as whole words, and in no longer name that does: "React Native 0.80" stands for
/// "React Native" and not for "React", "C++ 26" not for "C", "Django" not for "Go". Names that
/// stand beside each other all count, in the order they stand in. Pure, any thread.
QStringList namesIn(const QString &about, const QStringList &names);

/// Whether two names are one, in the same sense.
bool isSameName(const QString &one, const QString &other);

} // namespace vorle
