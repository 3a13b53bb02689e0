#include "search/ScreenedItems.h"

#include "base/Log.h"
#include "core/BesideTopics.h"
#include "core/DurableFile.h"

#include <QCryptographicHash>

namespace vorle {

namespace {

struct Contents {
    QString territory;
    QList<QString> links; ///< the latest last

    static constexpr auto jsonFields() {
        return std::tuple(json::field("territory", &Contents::territory),
                          json::field("links", &Contents::links));
    }
};

/// What the screening is told of the person, in short.
QString territoryOf(const SitesRequest &request) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QStringList &list : {request.projects, request.interests, request.tools}) {
        for (const QString &text : list) {
            hash.addData(text.toUtf8() + '\n');
        }
        hash.addData("\f");
    }
    return QString::fromLatin1(hash.result().toHex());
}

Contents read(const QString &file, const QString &territory) {
    try {
        const auto bytes = file.isEmpty() ? std::nullopt : readWhole(file);
        auto contents = bytes ? json::decode<Contents>(*bytes) : Contents();
        if (contents.territory == territory) {
            return contents;
        }
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the screened items could not be read: ") +
                QString::fromUtf8(error.what()));
    }
    return {territory, {}};
}

} // namespace

ScreenedItems::ScreenedItems(const QString &topicsFile)
    : m_file(besideTopics(topicsFile, QStringLiteral("screened.json"))) {}

QSet<QString> ScreenedItems::passedOver(const SitesRequest &request) const {
    const QList<QString> links = read(m_file, territoryOf(request)).links;
    return {links.begin(), links.end()};
}

void ScreenedItems::add(const SitesRequest &request, const QSet<QString> &links) const {
    if (m_file.isEmpty() || links.isEmpty()) {
        return;
    }
    Contents contents = read(m_file, territoryOf(request));
    QList<QString> fresh(links.begin(), links.end());
    fresh.removeIf([&](const QString &link) { return contents.links.contains(link); });
    fresh.sort(); // the same items always make the same file
    contents.links += fresh;
    contents.links = contents.links.last(std::min(mostItems, contents.links.size()));
    try {
        const QByteArray text = json::encode(contents, json::Style::Pretty) + '\n';
        const QByteArrayView piece(text);
        replaceWhole(m_file, {&piece, 1});
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the screened items could not be kept: ") +
                QString::fromUtf8(error.what()));
    }
}

} // namespace vorle
