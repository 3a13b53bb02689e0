#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace vorle {

/// A web address that somebody gave (the agent, a feed, a page, a redirect, another program, a
/// saved answer, the user) as it may be kept, shown, opened and put into a prompt. The one owner of
/// what a web link is and of how long one may be. Pure value, any thread.
class WebLink {
public:
    /// The user's may be longer: newsletters wrap theirs in long ones.
    enum class Giver { Stranger, User };
    /// Whether "intranet", typed without a scheme, names a site or is but a word.
    enum class Host { Dotted, Any };

    /// The most bytes of an address, encoded. A link is never cut.
    static constexpr qsizetype longest(Giver giver) { return giver == Giver::User ? 4'000 : 2'000; }

    /// The link `given` means, the blanks around it apart; nothing when that is no absolute http(s)
    /// address with a host, holds a line break or another control character, or is too long. What
    /// is read is encoded: blanks, quotes, angle brackets, backquotes and all beyond ASCII. A user
    /// name and a password, which are never sent, and which make one site's address look like
    /// another's, are left out.
    static std::optional<WebLink> from(const QString &given, Giver giver = Giver::Stranger);

    /// The link that a person typed: without a scheme, https is meant. A mail's address is none.
    static std::optional<WebLink> typed(const QString &text, Host host = Host::Dotted);

    /// What `link` on a page at `base` leads to, as browsers read it: line breaks and tabs inside
    /// it are dropped. A stranger's.
    static std::optional<WebLink> resolved(const QString &link, const QUrl &base);

    /// Whether an address is of the kind at all (valid, http or https, with a host), for doors that
    /// are handed one.
    static bool isWeb(const QUrl &address);

    /// `link` taken apart, the blanks around it aside, whatever its length; an empty address when
    /// it is of another kind. For comparing links and telling what they lead to: what is kept,
    /// shown or opened passes from().
    static QUrl parsed(const QString &link);

    /// An address's site: its host without what only tells the same one apart ("www.", "m.").
    /// Encoded, for comparing; decoded for a person to read.
    static QString site(const QUrl &address,
                        QUrl::ComponentFormattingOptions form = QUrl::FullyEncoded);

    /// The parts of an address's path, encoded, without empty ones.
    static QStringList segments(const QUrl &address);

    /// A kept address as a person may read it: the link that would be opened; what is none, without
    /// the signs that nobody sees.
    static QString shown(const QString &link);

    /// Printable ASCII without blanks, quotes (but the apostrophe), "<", ">" and "`".
    const QString &text() const { return m_text; }
    QUrl url() const { return QUrl(m_text); }

    bool operator==(const WebLink &) const = default;

private:
    explicit WebLink(QString text) : m_text(std::move(text)) {}

    QString m_text;
};

} // namespace vorle
