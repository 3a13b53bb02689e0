#pragma once

#include <QHash>
#include <QObject>

class QKeyEvent;
class QWindow;

namespace vorle {

/// Marks as repeats the presses by which a held key repeats itself. X11 sends a release and a press
/// for each, both of one moment; Qt knows them as such only where the press has arrived by the time
/// it reads the release, which under load it has not. Main thread.
///
/// Keys without a time or without a place on a keyboard are left as they are: a program posted them
/// (Qt does while a screen reader listens), and each press is one.
class KeyRepeatFilter final : public QObject {
    Q_OBJECT
public:
    /// Watches what `window` is sent, and is its child.
    explicit KeyRepeatFilter(QWindow &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isRepeat(const QKeyEvent &press) const;

    struct Press {
        quint64 down = 0;
        quint64 up = 0;
    };
    QHash<quint32, Press> m_presses; // the last one of each key, by its place on the keyboard
};

} // namespace vorle
