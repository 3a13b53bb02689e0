#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace vorle {

/// A web address that a stranger gave (the agent, a feed, a page, a redirect, another program, a
/// saved answer) as it may be kept, shown and put into a prompt. The one door for all of them. Pure
/// value, any thread.
class WebLink {
public:
    /// The most bytes of an address, encoded. A link is never cut.
    static constexpr qsizetype maxBytes = 2'000;
    /// Of one that the user gave: newsletters wrap theirs in long ones.
    static constexpr qsizetype maxUserBytes = 4'000;

    /// The link `given` means, the blanks around it apart; nothing when that is no absolute http(s)
    /// address with a host, holds a line break or another control character, or is too long. What
    /// is read is encoded: blanks, quotes, angle brackets, backquotes and all beyond ASCII. A user
    /// name and a password, which are never sent, and which make one site's address look like
    /// another's, are left out.
    static std::optional<WebLink> from(const QString &given, qsizetype most = maxBytes);

    /// Printable ASCII without blanks, quotes (but the apostrophe), "<", ">" and "`".
    const QString &text() const { return m_text; }
    QUrl url() const { return QUrl(m_text); }

    bool operator==(const WebLink &) const = default;

private:
    explicit WebLink(QString text) : m_text(std::move(text)) {}

    QString m_text;
};

} // namespace vorle
