#include "search/run/ScreenedItems.h"

#include "base/Log.h"
#include "storage/BesideTopics.h"
#include "storage/DurableFile.h"

#include <QCryptographicHash>

namespace vorle {

namespace {

struct Contents {
    QString territory;
    QList<QString> links;    ///< the latest last
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("territory", &Contents::territory),
                          json::field("links", &Contents::links));
    }
    static constexpr auto jsonRest() { return &Contents::unknown; }
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

} // namespace

ScreenedItems::ScreenedItems(const QString &topicsFile)
    : m_file(sidecarPath(topicsFile, fileName())) {}

QSet<QString> ScreenedItems::passedOver(const SitesRequest &request) const {
    try {
        const auto bytes = m_file.isEmpty() ? std::nullopt : readWhole(m_file);
        const auto contents = bytes ? json::decode<Contents>(*bytes) : Contents();
        if (contents.territory == territoryOf(request)) {
            return {contents.links.begin(), contents.links.end()};
        }
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the screened items could not be read: ") +
                QString::fromUtf8(error.what()));
    }
    return {};
}

void ScreenedItems::add(const SitesRequest &request, const QSet<QString> &links,
                        const QDateTime &now) const {
    if (m_file.isEmpty() || links.isEmpty()) {
        return;
    }
    try {
        Contents contents = replaceable<Contents>(m_file, now).value_or(Contents());
        const QString territory = territoryOf(request);
        if (contents.territory != territory) {
            contents.territory = territory;
            contents.links.clear();
        }
        QList<QString> fresh(links.begin(), links.end());
        fresh.removeIf([&](const QString &link) { return contents.links.contains(link); });
        fresh.sort(); // the same items always make the same file
        contents.links += fresh;
        contents.links = contents.links.last(std::min(maxItems, contents.links.size()));
        replaceWhole(m_file, json::encode(contents, json::Style::Pretty) + '\n');
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the screened items could not be kept: ") +
                QString::fromUtf8(error.what()));
    }
}

} // namespace vorle
