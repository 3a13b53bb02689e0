#include "desktop/CaptureAddress.h"

#include "base/Text.h"
#include "base/WebLink.h"

#include <QUrl>

namespace vorle {

namespace {

constexpr qsizetype longest = 16'000;
constexpr qsizetype receivedTitleCharacters = 300;

/// A part of the query, decoded; nothing where there is none. Not by QUrl, which tidies up what it
/// reads: a link inside a link must come out as it went in.
std::optional<QString> part(QStringView query, QStringView name) {
    for (const QStringView each : query.split(u'&')) {
        const qsizetype equals = each.indexOf(u'=');
        if (equals >= 0 && each.first(equals) == name) {
            return QUrl::fromPercentEncoding(each.sliced(equals + 1).toUtf8());
        }
    }
    return std::nullopt;
}

} // namespace

bool CaptureAddress::isOurs(const QString &address) {
    return address.startsWith(u"vorle:", Qt::CaseInsensitive);
}

std::optional<CaptureAddress> CaptureAddress::from(const QString &address) {
    static const QString start = QStringLiteral("vorle://add");
    if (address.size() > longest || !address.startsWith(start, Qt::CaseInsensitive)) {
        return std::nullopt;
    }
    QStringView rest = QStringView(address).sliced(start.size());
    if (rest.startsWith(u'/')) { // some browsers put one there
        rest = rest.sliced(1);
    }
    if (!rest.startsWith(u'?')) {
        return std::nullopt;
    }
    const QStringView query = rest.sliced(1).split(u'#').constFirst();
    const auto link = WebLink::from(part(query, u"url").value_or(QString()));
    if (!link) {
        return std::nullopt;
    }
    // Forms write a blank as "+"; whoever means that sign writes it encoded.
    const QString plain = query.toString().replace(u'+', u' ');
    return CaptureAddress{link->text(), clampedLine(part(plain, u"title").value_or(QString()),
                                                    receivedTitleCharacters)};
}

} // namespace vorle
