#pragma once

#include <QQuickItem>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// Tells assistive technology what the eye sees by itself: that another card stands open, where the
/// last one went. Main thread.
///
/// What is said goes out as an announcement where Qt has them (from 6.8); before, the item shows
/// itself anew as a notification, which is what screen readers on Linux speak: give it
/// `Accessible.role: Accessible.Notification` and `Accessible.name: words`.
class Announcer : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// What was said last.
    Q_PROPERTY(QString words READ words NOTIFY wordsChanged FINAL)

public:
    explicit Announcer(QQuickItem *parent = nullptr);

    QString words() const { return m_words; }
    /// Says it once what goes on now has settled, so that the card that comes next does not cut it
    /// short. Of several in a row the last is said.
    Q_INVOKABLE void say(const QString &words);
    /// The item is where one is now, and what is chosen, though the keyboard rests elsewhere.
    Q_INVOKABLE void pointAt(QQuickItem *item);

Q_SIGNALS:
    void wordsChanged();
    void pointedAt(QQuickItem *item);

private:
    void speak();

    QString m_next;
    QString m_words;
    QTimer m_soon;
    QTimer m_said; // what was said a while ago is not come upon
};

} // namespace vorle
