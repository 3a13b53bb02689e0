#include "app/cli/BriefPage.h"

#include "base/French.h"
#include "base/WebLink.h"
#include "briefs/BriefWriter.h"
#include "core/DurationText.h"

namespace vorle::cli {

namespace {

constexpr int margin = 2;
constexpr int bodyMargin = 4;

QString lines(const Console &console, const QString &text, int indent) {
    QStringList out;
    for (const QString &line : text.split(u'\n')) {
        out += console.wrapped(line, indent);
    }
    return out.join(u'\n');
}

/// Code is not wrapped, nor its blanks touched: it may be copied.
QString codeLines(const Console &console, const QString &code) {
    QStringList out;
    for (const QString &line : code.split(u'\n')) {
        out += QString(bodyMargin, u' ') + console.plain(line);
    }
    return out.join(u'\n');
}

QString partText(const Console &console, const Brief::Part &part) {
    QStringList out;
    if (!part.title.isEmpty()) {
        out += console.bold(console.wrapped(part.title, margin));
    }
    if (!part.body.isEmpty()) {
        out += part.title == codePartTitle() ? codeLines(console, part.body)
                                             : lines(console, part.body, bodyMargin);
    }
    return out.join(u'\n');
}

QString sourceText(const Console &console, const Brief::Source &source) {
    QStringList out{console.bold(
        console.wrapped(source.title.isEmpty() ? French::tr("Source") : source.title, margin))};
    if (!source.adds.isEmpty()) {
        out += console.wrapped(source.adds, bodyMargin);
    }
    out += QString(bodyMargin, u' ') + console.faint(WebLink::shown(source.url));
    return out.join(u'\n');
}

} // namespace

QString briefPage(const Console &console, const Topic &topic, std::optional<int> minutes) {
    const Brief &brief = *topic.brief;
    QStringList blocks{
        console.bold(console.wrapped(French::tr("Fiche de lecture · ") + topic.title, 0))};
    if (minutes) {
        blocks.last() +=
            u'\n' + console.faint(French::tr("%1 de lecture").arg(durationText(*minutes)));
    }
    const auto section = [&](const QString &title, const QStringList &texts) {
        if (!texts.isEmpty()) {
            blocks += console.accent(title) + u'\n' + texts.first();
            blocks += texts.sliced(1);
        }
    };
    const auto parts = [&](const QList<Brief::Part> &list) {
        QStringList texts;
        for (const Brief::Part &part : list) {
            texts += partText(console, part);
        }
        return texts;
    };
    section(French::tr("L’essentiel"), parts(brief.essentials));
    section(French::tr("Les détails"), parts(brief.details));
    if (brief.project) {
        const QString project = topic.project.value_or(QString()).simplified();
        section(French::tr("Pour ") + (project.isEmpty() ? French::tr("toi") : project),
                {lines(console, *brief.project, margin)});
    }
    QStringList points;
    for (const QString &point : brief.unclear) {
        points += QStringLiteral("  · ") + console.wrapped(point, bodyMargin).trimmed();
    }
    section(French::tr("Ce qui reste flou"),
            points.isEmpty() ? QStringList() : QStringList{points.join(u'\n')});
    QStringList sources;
    for (const Brief::Source &source : brief.sources) {
        sources += sourceText(console, source);
    }
    section(French::tr("Les sources, et ce que chacune apporte"), sources);
    return blocks.join(QStringLiteral("\n\n"));
}

} // namespace vorle::cli
