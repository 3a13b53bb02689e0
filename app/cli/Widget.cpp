// The app's state in small, for status bars: what stands in the file that widgets read.

#include "app/cli/Handlers.h"
#include "base/French.h"
#include "base/FrenchSpacing.h"
#include "core/NumberText.h"
#include "desktop/WidgetSnapshot.h"
#include "storage/DurableFile.h"

#include <QTimeZone>

#include <algorithm>
#include <system_error>

namespace vorle::cli {

namespace {

constexpr qint64 maxSnapshotBytes = 1'000'000;
constexpr qsizetype titlesShown = 5;

/// One line of waybar's "custom" modules ("return-type": "json").
struct WaybarLine {
    QString text;
    QString alt;
    QString tooltip;
    QString cssClass;
    int percentage = 0;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("text", &WaybarLine::text),
                          json::field("alt", &WaybarLine::alt),
                          json::field("tooltip", &WaybarLine::tooltip),
                          json::field("class", &WaybarLine::cssClass),
                          json::field("percentage", &WaybarLine::percentage));
    }
};

QString sortText(const WidgetSnapshot &now) {
    return now.toSortCount == 0 ? French::tr("rien à trier")
                                : French::tr("%1 à trier").arg(numberText(now.toSortCount));
}

/// Waybar reads its texts as markup, and the titles are strangers'.
QString waybarLine(const WidgetSnapshot &now) {
    QStringList lines{sortText(now)};
    for (const auto &item : now.toSort.first(std::min(now.toSort.size(), titlesShown))) {
        lines +=
            QStringLiteral("  %1  %2")
                .arg(item.score ? QString::number(*item.score) : QStringLiteral("–"), item.title);
    }
    lines += QStringLiteral("%1 : %2 %3, %4")
                 .arg(now.weekLabel, French::tr("%1 min").arg(now.weekDone), now.weekBudgetLabel,
                      now.weekLeftLabel.toLower());
    if (now.nextSearch) {
        lines += French::tr("Prochaine fouille : %1").arg(now.nextSearch->label);
    }
    const QString state = now.searching         ? QStringLiteral("searching")
                          : now.toSortCount > 0 ? QStringLiteral("waiting")
                                                : QStringLiteral("empty");
    WaybarLine line{
        .text = now.searching         ? French::tr("fouille…")
                : now.toSortCount > 0 ? numberText(now.toSortCount)
                                      : QString(),
        .alt = state,
        .tooltip = frenchSpacing(lines.join(u'\n')).toHtmlEscaped(),
        .cssClass = state,
        .percentage = now.weekBudget > 0 ? std::min(100, now.weekDone * 100 / now.weekBudget) : 0};
    return QString::fromUtf8(json::encode(line));
}

/// Polybar reads "%{…}" as orders: nothing of a stranger's stands in its line.
QString polybarLine(const WidgetSnapshot &now) {
    QStringList parts{now.searching ? French::tr("fouille…") : sortText(now)};
    if (now.programCount > 0) {
        parts += French::tr("%1 au programme").arg(numberText(now.programCount));
    }
    return frenchSpacing(parts.join(QStringLiteral(" · ")));
}

/// What the system does not tell is believed.
bool isTrue(const std::function<bool()> &ask) {
    try {
        return ask();
    } catch (const std::system_error &) {
        return true;
    }
}

} // namespace

Task<ExitStatus> widget(Context &context, std::function<QString()> file,
                        std::function<bool()> isSomebodyThere, const Clock &clock) {
    const QString format = context.arguments.options.value(QStringLiteral("format"));
    if (!format.isEmpty() && format != u"json" && format != u"waybar" && format != u"polybar") {
        throw Failure(
            French::tr("Format inconnu : %1. Il y a json, waybar et polybar.").arg(format),
            ExitStatus::Usage);
    }
    const QString path = file();
    const auto bytes = readWhole(path, maxSnapshotBytes);
    if (!bytes) {
        throw Failure(French::tr("Rien à montrer encore : ouvre vorle une fois."));
    }
    WidgetSnapshot now;
    try {
        now = json::decode<WidgetSnapshot>(*bytes);
    } catch (const json::DecodeError &) {
        throw Failure(French::tr("Ce fichier est illisible : %1. Il se refait dès que vorle "
                                 "s’ouvre.")
                          .arg(path));
    }
    now.searching = now.searching && isTrue(isSomebodyThere);
    if (now.nextSearch) { // as time went on, whether the app is open or not
        now.nextSearch->label =
            relativeTimeText(now.nextSearch->at, clock.now(), QTimeZone::systemTimeZone());
    }
    if (format == u"waybar") {
        context.console.print(waybarLine(now).toUtf8());
    } else if (format == u"polybar") {
        context.console.print(polybarLine(now));
    } else {
        context.console.print(json::encode(now));
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
