#include "app/demo/agent/Screener.h"

#include "app/demo/agent/Tie.h"
#include "base/Text.h"

#include <QSet>

#include <algorithm>

namespace vorle::demo {

FoundAnswer screen(const QHash<QString, QString> &values, const DemoCatalogue &catalogue,
                   const QString &site) {
    const ProfileRead profile = readSitesProfile(values);
    const QStringList known = values.value(QStringLiteral("@KNOWN")).split(QStringLiteral(" ; "));
    const qsizetype count = std::min(3, values.value(QStringLiteral("@COUNT")).toInt());
    QSet<QString> subjects;
    FoundAnswer answer;
    for (const ItemRead &item : readItems(values.value(QStringLiteral("@ITEMS")))) {
        const QString text = item.title + u'\n' + item.summary;
        const Tie tie = tieOf(text, text, profile);
        if (answer.candidates.size() >= count || tie.kind == Tie::Kind::None ||
            subjects.contains(tie.name) || known.contains(item.link)) {
            continue;
        }
        subjects.insert(tie.name);
        const auto page = catalogue.pageOf(item.link, site);
        const QString headline = page ? page->headline : item.title;
        answer.candidates += Found{firstCharacters(headline, 90).toString(), item.link,
                                   page ? page->kind : QStringLiteral("article"), tie.name};
    }
    return answer;
}

} // namespace vorle::demo
