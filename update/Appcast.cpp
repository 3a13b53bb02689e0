#include "update/Appcast.h"

#include "base/Text.h"
#include "search/discovery/Version.h"
#include "update/Installation.h"
#include "update/UpdateError.h"

#include <QSysInfo>
#include <QXmlStreamReader>

#if defined(Q_OS_LINUX)
#include <gnu/libc-version.h>
#endif

namespace vorle {

namespace {

constexpr QStringView sparkle = u"http://www.andymatuschak.org/xml-namespaces/sparkle";
constexpr qsizetype maxNotes = 4000; // characters

/// Whether every tag is of a length that a reader gets through at once.
bool hasShortTags(QByteArrayView xml) {
    constexpr qsizetype longest = 8000;
    qsizetype at = 0;
    while ((at = xml.indexOf('<', at)) >= 0) {
        const auto skip = [&](QByteArrayView opening, QByteArrayView closing) {
            if (!xml.sliced(at).startsWith(opening)) {
                return false;
            }
            const qsizetype end = xml.indexOf(closing, at + opening.size());
            at = end < 0 ? xml.size() : end + closing.size();
            return true;
        };
        if (skip("<![CDATA[", "]]>") || skip("<!--", "-->") || skip("<?", "?>")) {
            continue;
        }
        const qsizetype begin = at;
        char quote = 0;
        for (; at < xml.size() && (quote != 0 || xml[at] != '>'); ++at) {
            if (quote != 0) {
                quote = xml[at] == quote ? char(0) : quote;
            } else if (xml[at] == '"' || xml[at] == '\'') {
                quote = xml[at];
            }
            if (at - begin > longest) {
                return false;
            }
        }
    }
    return true;
}

/// What one item says, before it is held to anything.
struct Item {
    QString version;
    QString shortVersion;
    QString channel;
    QString minimumSystem;
    QString notes;
    QXmlStreamAttributes enclosure;
};

QString ownText(QXmlStreamReader &reader) {
    return reader.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
}

Item readItem(QXmlStreamReader &reader) {
    Item item;
    while (reader.readNextStartElement()) {
        const bool ours = reader.namespaceUri() == sparkle;
        const QStringView name = reader.name();
        if (ours && name == u"version") {
            item.version = ownText(reader);
        } else if (ours && name == u"shortVersionString") {
            item.shortVersion = ownText(reader);
        } else if (ours && name == u"channel") {
            item.channel = ownText(reader);
        } else if (ours && name == u"minimumSystemVersion") {
            item.minimumSystem = ownText(reader);
        } else if (!ours && name == u"description") {
            item.notes = ownText(reader);
        } else if (!ours && name == u"enclosure") {
            item.enclosure = reader.attributes();
            reader.skipCurrentElement();
        } else {
            reader.skipCurrentElement();
        }
    }
    return item;
}

/// The release that an item makes, where it makes one.
std::optional<Release> releaseOf(const Item &item, const QUrl &base) {
    const auto attribute = [&](const QString &name) {
        return item.enclosure.value(sparkle.toString(), name).toString().trimmed();
    };
    const auto firstOf = [](const QStringList &texts) {
        for (const QString &text : texts) {
            if (!text.isEmpty()) {
                return text;
            }
        }
        return QString();
    };
    Release release;
    release.version = firstOf({item.shortVersion, attribute(QStringLiteral("shortVersionString")),
                               item.version, attribute(QStringLiteral("version"))});
    release.archive = base.resolved(QUrl(item.enclosure.value(QStringLiteral("url")).toString()));
    bool isNumber = false;
    release.bytes = item.enclosure.value(QStringLiteral("length")).toLongLong(&isNumber);
    const auto signature =
        QByteArray::fromBase64Encoding(attribute(QStringLiteral("edSignature")).toLatin1(),
                                       QByteArray::AbortOnBase64DecodingErrors);
    release.signature = *signature;
    release.system = attribute(QStringLiteral("os"));
    release.minimumSystem = item.minimumSystem;
    release.notes = clampedLines(item.notes, maxNotes);
    constexpr qsizetype signatureBytes = 64;
    const bool whole = isReleaseVersion(release.version) && release.archive.isValid() &&
                       !release.archive.host().isEmpty() && isNumber && release.bytes > 0 &&
                       release.bytes <= Release::maxArchiveBytes &&
                       release.signature.size() == signatureBytes && item.channel.isEmpty();
    return whole ? std::optional(release) : std::nullopt;
}

bool suits(const Release &release, const Machine &machine) {
    if (release.system != machine.system &&
        release.system != machine.system + u'-' + machine.architecture) {
        return false;
    }
    return release.minimumSystem.isEmpty() || machine.cLibrary == release.minimumSystem ||
           isNewer(machine.cLibrary, release.minimumSystem);
}

} // namespace

Machine Machine::ofThisProcess() {
    Machine machine{QStringLiteral("macos"), QSysInfo::buildCpuArchitecture(), {}};
#if defined(Q_OS_LINUX)
    machine.system = QStringLiteral("linux");
    machine.cLibrary = QString::fromLatin1(gnu_get_libc_version());
#endif
    return machine;
}

QList<Release> readAppcast(const QByteArray &xml, const QUrl &base) {
    if (xml.size() > maxAppcastBytes || !hasShortTags(xml)) {
        throw UpdateError(QStringLiteral("the feed is too large"));
    }
    QList<Release> releases;
    // As the text whose tags were looked at, whatever encoding it says it has.
    QXmlStreamReader reader(QString::fromUtf8(xml));
    bool isFeed = false;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::DTD) {
            throw UpdateError(QStringLiteral("the feed has a document type"));
        }
        if (token != QXmlStreamReader::StartElement) {
            continue;
        }
        isFeed = isFeed || reader.name() == u"rss";
        if (isFeed && reader.name() == u"item") {
            if (const auto release = releaseOf(readItem(reader), base)) {
                releases += *release;
            }
        }
    }
    if (reader.hasError() || !isFeed) {
        throw UpdateError(QStringLiteral("the feed cannot be read: ") +
                          (isFeed ? reader.errorString() : QStringLiteral("it is no RSS")));
    }
    return releases;
}

std::optional<Release> newestRelease(const QList<Release> &releases, const Machine &machine,
                                     const QString &inUse) {
    std::optional<Release> newest;
    for (const Release &release : releases) {
        if (suits(release, machine) && isNewer(release.version, inUse) &&
            (!newest || isNewer(release.version, newest->version))) {
            newest = release;
        }
    }
    return newest;
}

} // namespace vorle
