#pragma once

#include "tests/platform/MessageBus.h"
#include "tests/support/Program.h"

#include <QDBusMessage>
#include <QList>
#include <QObject>

#include <functional>
#include <memory>

namespace vorle::test {

/// One part of a window, as the accessibility bus tells it.
struct Spoken {
    /// Bits of the AT-SPI protocol.
    enum State {
        Checked = 4,
        Enabled = 8,
        Focusable = 11,
        Focused = 12,
        Selected = 23,
        Visible = 30
    };

    QString path; ///< on the bus
    QString role; ///< "push button", "heading"
    QString name;
    QString description;
    quint64 states = 0;
    bool acts = false; ///< it can be pressed, toggled or turned
    QList<Spoken> parts;

    bool is(State state) const { return (states >> state & 1) != 0; }
    /// Qt takes every text for one.
    bool isControl() const { return (acts || is(Focusable)) && role != u"label"; }
    /// "push button « Garder »"
    QString told() const;
    /// It and all that is in it, and the way to it, it being the last; whoever looks gives false to
    /// have nothing of what is inside.
    using Way = QList<const Spoken *>;
    void walk(const std::function<bool(const Way &)> &look) const;
    /// All in it that pass.
    QList<const Spoken *> all(const std::function<bool(const Spoken &)> &wanted) const;
    QList<const Spoken *> all(const char *wantedRole) const;
    /// As lines, each under what it is part of, for a failing test to show.
    std::string lines() const;
};

/// The program itself on a display of its own, with the demonstration's topics, and one who reads
/// it over the accessibility bus that the system's own service starts, as a screen reader does.
/// What goes wrong while it starts is thrown as std::runtime_error.
class ScreenReader : public QObject {
    Q_OBJECT
public:
    ScreenReader();
    ~ScreenReader() override;

    /// The main window now.
    Spoken window();
    /// The same, once that holds of it, or after a few seconds as it then is.
    Spoken windowOnce(const std::function<bool(const Spoken &)> &wanted);
    /// Types keys as xdotool names them, one after the other, each answered before the next.
    void type(std::initializer_list<const char *> keys);

    /// Does what a screen reader does in the place of a press.
    void press(const Spoken &control);

    /// What was told since, one after the other: "here: NAME" where the focus went, "chosen: NAME",
    /// "said: WORDS".
    QStringList heard;
    /// Waits until that was told, which may end with more words; false after a few seconds.
    bool hears(const QString &beginning);

public Q_SLOTS:
    void take(const QDBusMessage &event);

private:
    struct Place {
        QString service;
        QString path;
    };
    void startDisplay();
    void startBus();
    void startProgram();
    void listen();
    QDBusConnection bus() { return QDBusConnection(QStringLiteral("reader")); }
    QDBusMessage ask(const Place &place, const char *interface, const char *method,
                     const QVariantList &arguments = {});
    QString property(const Place &place, const char *name);
    QList<Place> partsOf(const Place &place);
    Spoken read(const Place &place);
    void run(const char *program, const QStringList &arguments);

    Program m_program;
    QProcess m_display;
    MessageBus m_session;
    QProcess m_launcher;
    Place m_window;
};

} // namespace vorle::test
