#include "desktop/LinkFile.h"

#include "base/Text.h"
#include "base/WebLink.h"
#include "storage/DurableFile.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <system_error>

namespace vorle {

namespace {

constexpr qsizetype fileTitleCharacters = 300;

/// The value of a key in a section of a file of lines, the first one.
std::optional<QString> valueOf(const QStringList &lines, const QString &section,
                               const QString &key) {
    bool inside = false;
    for (const QString &line : lines) {
        const QString text = line.trimmed();
        if (text.startsWith(u'[')) {
            inside = text.compare(u'[' + section + u']', Qt::CaseInsensitive) == 0;
            continue;
        }
        const qsizetype equals = text.indexOf(u'=');
        if (inside && equals > 0 &&
            text.first(equals).trimmed().compare(key, Qt::CaseInsensitive) == 0) {
            return text.sliced(equals + 1).trimmed();
        }
    }
    return std::nullopt;
}

/// The text behind the key "URL" of a property list in XML.
std::optional<QString> addressInList(const QByteArray &bytes) {
    QXmlStreamReader xml(bytes);
    xml.setEntityExpansionLimit(0);
    bool isNext = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (isNext && xml.name() == u"string") {
            return xml.readElementText();
        }
        isNext = xml.name() == u"key" && xml.readElementText() == u"URL";
    }
    return std::nullopt;
}

} // namespace

std::optional<LinkFile> LinkFile::from(const QByteArray &bytes) {
    std::optional<QString> address;
    std::optional<QString> title;
    if (bytes.trimmed().startsWith('<')) {
        address = addressInList(bytes);
    } else {
        static const QRegularExpression lineBreak(QStringLiteral("[\\r\\n]+"));
        const QStringList lines = QString::fromUtf8(bytes).split(lineBreak);
        const QString desktop = QStringLiteral("Desktop Entry");
        const QString key = QStringLiteral("URL");
        if (valueOf(lines, desktop, QStringLiteral("Type")) == QStringLiteral("Link")) {
            address = valueOf(lines, desktop, key);
            title = valueOf(lines, desktop, QStringLiteral("Name"));
        } else {
            address = valueOf(lines, QStringLiteral("InternetShortcut"), key);
        }
    }
    const auto link = address ? WebLink::from(*address) : std::nullopt;
    if (!link) {
        return std::nullopt;
    }
    return LinkFile{link->text(), clampedLine(title.value_or(QString()), fileTitleCharacters)};
}

std::optional<LinkFile> LinkFile::at(const QString &path) {
    try {
        const auto bytes = readWhole(path, maxBytes);
        auto link = bytes ? from(*bytes) : std::nullopt;
        if (link && link->title.isEmpty()) {
            link->title = clampedLine(QFileInfo(path).completeBaseName(), fileTitleCharacters);
        }
        return link;
    } catch (const std::system_error &) {
        return std::nullopt;
    }
}

} // namespace vorle
