#include "app/cli/BriefPage.h"

#include "app/TopicLabels.h"

namespace vorle::cli {

namespace {

constexpr int margin = 2;
constexpr int pointMargin = 4;

/// Lines are kept, each with its own indentation: code reads as code.
QString laidOut(const Console &console, const QString &text, int indent) {
    QStringList lines;
    for (const QString &line : text.split(u'\n')) {
        int blanks = 0;
        for (const QChar c : line) {
            if (c != u' ' && c != u'\t') {
                break;
            }
            blanks += c == u'\t' ? 4 : 1;
        }
        lines += line.trimmed().isEmpty()
                     ? QString()
                     : console.wrapped(line.trimmed(), indent + std::min(blanks, 20));
    }
    return lines.join(u'\n');
}

QString partText(const Console &console, const Brief::Part &part) {
    QStringList lines;
    if (!part.title.isEmpty()) {
        lines += console.bold(console.wrapped(part.title, margin));
    }
    if (!part.body.isEmpty()) {
        lines += laidOut(console, part.body, margin);
    }
    return lines.join(u'\n');
}

QString sourceText(const Console &console, const Brief::Source &source) {
    QStringList lines{console.bold(
        console.wrapped(source.title.isEmpty() ? QStringLiteral("Source") : source.title, margin))};
    if (!source.adds.isEmpty()) {
        lines += console.wrapped(source.adds, margin);
    }
    lines += QString(margin, u' ') + console.faint(source.url);
    return lines.join(u'\n');
}

} // namespace

QString briefPage(const Console &console, const Topic &topic, std::optional<int> minutes) {
    const Brief &brief = *topic.brief;
    QStringList blocks{
        console.bold(console.wrapped(QStringLiteral("Fiche de lecture · ") + topic.title, 0))};
    if (minutes) {
        blocks.last() +=
            u'\n' + console.faint(QStringLiteral("%1 de lecture").arg(durationLabel(*minutes)));
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
    section(QStringLiteral("L’essentiel"), parts(brief.essentials));
    section(QStringLiteral("Les détails"), parts(brief.details));
    if (brief.project) {
        const QString project = topic.project.value_or(QString()).simplified();
        section(QStringLiteral("Pour ") + (project.isEmpty() ? QStringLiteral("toi") : project),
                {laidOut(console, *brief.project, margin)});
    }
    QStringList points;
    for (const QString &point : brief.unclear) {
        points += QStringLiteral("  · ") + console.wrapped(point, pointMargin).trimmed();
    }
    section(QStringLiteral("Ce qui reste flou"),
            points.isEmpty() ? QStringList() : QStringList{points.join(u'\n')});
    QStringList sources;
    for (const Brief::Source &source : brief.sources) {
        sources += sourceText(console, source);
    }
    section(QStringLiteral("Les sources, et ce que chacune apporte"), sources);
    return blocks.join(QStringLiteral("\n\n"));
}

} // namespace vorle::cli
