#pragma once

#include "core/ScoreScale.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace vorle {

/// The disc that shows a score, as QML draws it. Colours are texts that Qt reads, or "accent": the
/// theme's strong accent.
struct BadgeLook {
    Q_GADGET
    QML_VALUE_TYPE(badgeLook)
    Q_PROPERTY(QString digits MEMBER digits FINAL) ///< "" without a score
    Q_PROPERTY(QString name MEMBER name FINAL)     ///< "Note 9 sur 10"
    Q_PROPERTY(bool filled MEMBER filled FINAL)
    Q_PROPERTY(bool gem MEMBER gem FINAL)
    Q_PROPERTY(QString accentLight MEMBER accentLight FINAL)
    Q_PROPERTY(QString accentDark MEMBER accentDark FINAL)
    Q_PROPERTY(QString inkLight MEMBER inkLight FINAL)
    Q_PROPERTY(QString inkDark MEMBER inkDark FINAL)
    Q_PROPERTY(QString fillLight MEMBER fillLight FINAL)
    Q_PROPERTY(QString fillDark MEMBER fillDark FINAL)

public:
    /// @param score  see scoreBadge()
    static BadgeLook of(std::optional<int> score) {
        const ScoreBadge badge = scoreBadge(score);
        return {badge.digits,
                badge.accessibleName,
                badge.filled,
                badge.gem,
                qtColour(badge.accent.light),
                qtColour(badge.accent.dark),
                qtColour(badge.ink.light),
                qtColour(badge.ink.dark),
                qtColour(badge.fill.light),
                qtColour(badge.fill.dark)};
    }

    QString digits;
    QString name;
    bool filled = false;
    bool gem = false;
    QString accentLight;
    QString accentDark;
    QString inkLight;
    QString inkDark;
    QString fillLight;
    QString fillDark;

    bool operator==(const BadgeLook &) const = default;
};

} // namespace vorle
