#pragma once

#include "app/models/BadgeLook.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vorle {

// What the charts of the report are drawn from: values, with the words beside them.

/// A figure of the head: "41", "gardés".
struct FigureCount {
    Q_GADGET
    QML_VALUE_TYPE(figureCount)
    Q_PROPERTY(QString value MEMBER value FINAL)
    Q_PROPERTY(QString label MEMBER label FINAL)

public:
    QString value;
    QString label;

    bool operator==(const FigureCount &) const = default;
};

/// A day, a week or a month of the period.
struct FigurePart {
    Q_GADGET
    QML_VALUE_TYPE(figurePart)
    Q_PROPERTY(QString label MEMBER label FINAL)
    Q_PROPERTY(int found MEMBER found FINAL)
    Q_PROPERTY(int kept MEMBER kept FINAL)
    Q_PROPERTY(int done MEMBER done FINAL)
    Q_PROPERTY(int minutes MEMBER minutes FINAL)
    Q_PROPERTY(QString timeText MEMBER timeText FINAL)

public:
    QString label;
    int found = 0;
    int kept = 0;
    int done = 0;
    int minutes = 0;  ///< of what was done
    QString timeText; ///< "2 h 30"

    bool operator==(const FigurePart &) const = default;
};

/// The topics of one score.
struct FigureScore {
    Q_GADGET
    QML_VALUE_TYPE(figureScore)
    Q_PROPERTY(int kept MEMBER kept FINAL)
    Q_PROPERTY(int later MEMBER later FINAL)
    Q_PROPERTY(int dismissed MEMBER dismissed FINAL)
    Q_PROPERTY(vorle::BadgeLook badge MEMBER badge FINAL)

public:
    int kept = 0;
    int later = 0;
    int dismissed = 0;
    BadgeLook badge;

    bool operator==(const FigureScore &) const = default;
};

/// Where topics came from.
struct FigureSource {
    Q_GADGET
    QML_VALUE_TYPE(figureSource)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(int found MEMBER found FINAL)
    Q_PROPERTY(int kept MEMBER kept FINAL)

public:
    QString name;
    int found = 0;
    int kept = 0;

    bool operator==(const FigureSource &) const = default;
};

} // namespace vorle
