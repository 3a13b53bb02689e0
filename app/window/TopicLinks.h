#pragma once

#include "base/Clock.h"
#include "core/TopicStore.h"
#include "search/capture/LinkCapture.h"

#include <QMimeData>
#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace vorle {

class LinkOpener;
class Pasteboard;

/// The links that leave the window and those that come into it: opened, copied, dragged out; typed,
/// dropped. Main thread; what it is given outlives it.
class TopicLinks final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")

public:
    struct Parts {
        const TopicStore &store;
        LinkCapture &capture;
        LinkOpener &opener;
        Pasteboard &pasteboard;
        const Clock &clock;
    };
    explicit TopicLinks(Parts parts, QObject *parent = nullptr) : QObject(parent), m_parts(parts) {}

    /// What is dragged over the window.
    enum Offer {
        Nothing, ///< neither an address nor a file: none of ours
        Links,   ///< a web address at least
        Files,   ///< files alone
        Refused  ///< addresses of other kinds, or words
    };
    Q_ENUM(Offer)

    /// So many links are taken of one drop.
    static constexpr qsizetype mostAtOnce = 50;

    /// Opens a link in the browser; web addresses alone. Says so when it does not open.
    void open(const QString &url);
    void openOf(const QString &topicId) { open(linkOf(topicId)); }
    void copyOf(const QString &topicId);
    /// A web address on the pasteboard, "" for anything else.
    Q_INVOKABLE QString onPasteboard() const;
    /// Captures a link that the person typed: it is read and judged, and waits in "À trier". Gives
    /// a French sentence when the link cannot be taken, "" when it was.
    Q_INVOKABLE QString add(const QString &url, const QString &note);

    /// @param urls  what is offered as addresses
    /// @param text  as words; counts where there are no addresses
    Q_INVOKABLE vorle::TopicLinks::Offer offerOf(const QList<QUrl> &urls,
                                                 const QString &text) const;
    /// Takes in what was dropped: strangers' links, whoever let them go here, since a page chooses
    /// what is dragged out of it. What became of them is `said`.
    Q_INVOKABLE void takeDropped(const QList<QUrl> &urls, const QString &text);

    /// A topic's link as other programs take it: its address, as a link with its title too. Null
    /// for a topic without one.
    std::unique_ptr<QMimeData> dragged(const QString &topicId) const;
    /// The card's link was taken hold of, to be carried out of the window. Returns at once: the
    /// drag begins with the next turn of the event loop, when no handler of the card that may go
    /// meanwhile is under way, and lasts until it is let go.
    Q_INVOKABLE void carry(const QString &topicId);
    /// Whether a link of our own is on its way.
    bool isCarrying() const { return m_carrying; }

Q_SIGNALS:
    /// A word for the user on what they just did.
    void said(const QString &sentence);

private:
    QString linkOf(const QString &topicId) const;
    void letFly(const QString &topicId);

    Parts m_parts;
    bool m_carrying = false;
};

} // namespace vorle
