#include "platform/linux/PortalHotKey.h"

#include "base/French.h"
#include "platform/linux/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QUuid>

#include <utility>

namespace vorle {

namespace {

QString shortcutsInterface() { return QStringLiteral("org.freedesktop.portal.GlobalShortcuts"); }
QString sessionInterface() { return QStringLiteral("org.freedesktop.portal.Session"); }
QString ourShortcut() { return QStringLiteral("capture"); }

using Shortcut = std::pair<QString, QVariantMap>; // its name, and what is said of it

} // namespace

QString portalTrigger(const KeyCombination &combination) {
    const struct {
        int modifier;
        QStringView name;
    } names[] = {{KeyCombination::control, u"CTRL+"},
                 {KeyCombination::option, u"ALT+"},
                 {KeyCombination::shift, u"SHIFT+"},
                 {KeyCombination::command, u"LOGO+"}};
    QString trigger;
    for (const auto &each : names) {
        if ((combination.modifiers & each.modifier) != 0) {
            trigger += each.name;
        }
    }
    const struct {
        QStringView key;
        QStringView name;
    } keys[] = {
        {u" ", u"space"},      {u"↩", u"Return"},     {u"⇥", u"Tab"},         {u"⌦", u"Delete"},
        {u"←", u"Left"},       {u"→", u"Right"},      {u"↑", u"Up"},          {u"↓", u"Down"},
        {u"↖", u"Home"},       {u"↘", u"End"},        {u"⇞", u"Prior"},       {u"⇟", u"Next"},
        {u",", u"comma"},      {u".", u"period"},     {u"/", u"slash"},       {u"-", u"minus"},
        {u"+", u"plus"},       {u"=", u"equal"},      {u";", u"semicolon"},   {u":", u"colon"},
        {u"&", u"ampersand"},  {u"'", u"apostrophe"}, {u"é", u"eacute"},      {u"è", u"egrave"},
        {u"ç", u"ccedilla"},   {u"à", u"agrave"},     {u"ù", u"ugrave"},      {u"!", u"exclam"},
        {u")", u"parenright"}, {u"(", u"parenleft"},  {u"\"", u"quotedbl"},   {u"_", u"underscore"},
        {u"$", u"dollar"},     {u"*", u"asterisk"},   {u"²", u"twosuperior"}, {u"<", u"less"},
        {u"⌫", u"BackSpace"},  {u"⎋", u"Escape"},     {u"⌤", u"KP_Enter"}};
    for (const auto &each : keys) {
        if (combination.key == each.key) {
            return trigger + each.name.toString();
        }
    }
    return trigger + combination.key;
}

PortalHotKey::PortalHotKey(const QDBusConnection &bus)
    : m_bus(bus), m_portal(portalService(), bus, QDBusServiceWatcher::WatchForOwnerChange) {
    qDBusRegisterMetaType<Shortcut>();
    qDBusRegisterMetaType<QList<Shortcut>>();
    connect(&m_portal, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &before, const QString &now) {
                ownerChanged(before, now);
            });
    if (m_bus.isConnected()) {
        m_bus.connect(portalService(), portalPath(), shortcutsInterface(),
                      QStringLiteral("Activated"), this, SLOT(activated(QDBusMessage)));
        m_bus.connect(portalService(), portalPath(), shortcutsInterface(),
                      QStringLiteral("ShortcutsChanged"), this,
                      SLOT(shortcutsChanged(QDBusMessage)));
        // Of whatever session: its path is not known before the portal has made it.
        m_bus.connect(portalService(), {}, sessionInterface(), QStringLiteral("Closed"), this,
                      SLOT(sessionClosed(QDBusMessage)));
    }
}

PortalHotKey::~PortalHotKey() { close(); }

void PortalHotKey::follow(std::function<void()> pressed, std::function<void()> changed) {
    m_pressed = std::move(pressed);
    m_changed = std::move(changed);
}

void PortalHotKey::replace(const std::optional<KeyCombination> &combination) {
    if (combination && combination == m_declined) {
        return; // the person said no: another combination, or this one once more, has to be wanted
    }
    m_declined.reset();
    close();
    m_wanted = combination;
    open();
}

void PortalHotKey::open() {
    if (!m_wanted || !m_bus.isConnected()) {
        turn(m_wanted ? State::Unavailable : State::None);
        return;
    }
    turn(State::Asked);
    const QString token = QStringLiteral("vorle_") + QUuid::createUuid().toString(QUuid::Id128);
    PortalRequest::ask(
        m_bus, shortcutsInterface(), QStringLiteral("CreateSession"),
        [&](QVariantMap options) {
            options[QStringLiteral("session_handle_token")] = token;
            return QVariantList{options};
        },
        this,
        [this, asked = ++m_asked](PortalRequest::Answer answer, const QVariantMap &results) {
            const QVariant handle = results.value(QStringLiteral("session_handle"));
            // Specified as a text, and given as a path by some.
            const QString session = handle.canConvert<QDBusObjectPath>()
                                        ? handle.value<QDBusObjectPath>().path()
                                        : handle.toString();
            if (asked != m_asked) {
                return;
            }
            if (answer != PortalRequest::Answer::Given || session.isEmpty()) {
                turn(State::Unavailable);
                return;
            }
            m_session = session;
            bind(session);
        });
}

void PortalHotKey::bind(const QString &session) {
    const QList<Shortcut> shortcuts{
        {ourShortcut(),
         {{QStringLiteral("description"), French::tr("Ajouter un sujet")},
          {QStringLiteral("preferred_trigger"), portalTrigger(*m_wanted)}}}};
    PortalRequest::ask(
        m_bus, shortcutsInterface(), QStringLiteral("BindShortcuts"),
        [&](const QVariantMap &options) {
            return QVariantList{QVariant::fromValue(QDBusObjectPath(session)),
                                QVariant::fromValue(shortcuts), QString(), options};
        },
        this,
        [this, asked = m_asked](PortalRequest::Answer answer, const QVariantMap &results) {
            if (asked != m_asked) {
                return;
            }
            if (answer == PortalRequest::Answer::Given) {
                takeBound(results.value(QStringLiteral("shortcuts")));
            } else {
                if (answer == PortalRequest::Answer::Refused) {
                    m_declined = m_wanted;
                }
                close();
                turn(State::Unavailable);
            }
        });
}

void PortalHotKey::takeBound(const QVariant &shortcuts) {
    for (const auto &[id, properties] : qdbus_cast<QList<Shortcut>>(shortcuts)) {
        if (id == ourShortcut()) {
            m_boundTo = properties.value(QStringLiteral("trigger_description")).toString();
            m_state = State::Registered;
            if (m_changed) {
                m_changed(); // also where only the combination is another
            }
            return;
        }
    }
    turn(State::Taken); // it gave the session, and did not give this
}

void PortalHotKey::close() {
    ++m_asked;
    m_boundTo.clear();
    if (!m_session.isEmpty()) {
        m_bus.send(QDBusMessage::createMethodCall(portalService(), std::exchange(m_session, {}),
                                                  sessionInterface(), QStringLiteral("Close")));
    }
}

void PortalHotKey::turn(State state) {
    if (state != m_state) {
        m_state = state;
        if (m_changed) {
            m_changed();
        }
    }
}

/// A portal that ends takes its sessions with it; one that comes, later than this program or once
/// more, is asked. One that comes because it was just asked is not asked again.
void PortalHotKey::ownerChanged(const QString &before, const QString &now) {
    if (!before.isEmpty()) {
        forgetSession();
    }
    if (!now.isEmpty() && m_state == State::Unavailable && m_wanted != m_declined) {
        open();
    }
}

void PortalHotKey::forgetSession() {
    m_session.clear();
    ++m_asked;
    m_boundTo.clear();
    turn(m_wanted ? State::Unavailable : State::None);
}

/// By the desktop: what was bound is bound no more.
void PortalHotKey::sessionClosed(const QDBusMessage &signal) {
    if (!m_session.isEmpty() && signal.path() == m_session) {
        forgetSession();
    }
}

void PortalHotKey::activated(const QDBusMessage &signal) {
    const QVariantList arguments = signal.arguments();
    if (m_session.isEmpty() || arguments.size() < 2 ||
        arguments[0].value<QDBusObjectPath>().path() != m_session ||
        arguments[1].toString() != ourShortcut()) {
        return;
    }
    // By it the compositor lets the window come forward: Qt takes it from there.
    const auto options = qdbus_cast<QVariantMap>(arguments.value(3));
    if (const auto token = options.value(QStringLiteral("activation_token")).toString();
        !token.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    }
    if (m_pressed) {
        m_pressed();
    }
}

void PortalHotKey::shortcutsChanged(const QDBusMessage &signal) {
    const QVariantList arguments = signal.arguments();
    if (!m_session.isEmpty() && arguments.size() >= 2 &&
        arguments[0].value<QDBusObjectPath>().path() == m_session) {
        takeBound(arguments[1]);
    }
}

} // namespace vorle
