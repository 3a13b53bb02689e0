#include "app/demo/agent/Digger.h"

#include "app/demo/agent/PageFacts.h"
#include "app/demo/agent/PromptReader.h"

namespace vorle::demo {

namespace {

/// The sentences of an English page in plain text, without its headings and the marks of its lists.
QString told(const DemoPage &page) {
    QStringList lines;
    for (const QString &line : page.text.split(u'\n')) {
        if (line.endsWith(u'.')) {
            lines += line.startsWith(QStringLiteral("- ")) ? line.sliced(2) : line;
        }
    }
    return firstSentences(lines.join(u' '), 900);
}

} // namespace

DugAnswer dig(const QHash<QString, QString> &values, const DemoCatalogue &catalogue,
              const QString &site) {
    DugAnswer answer;
    for (const BlockRead &block : readBlocks(values.value(QStringLiteral("@ITEMS")))) {
        DugUp result;
        result.id = block.id;
        const auto page = catalogue.pageOf(block.link, site);
        const auto copy = page ? catalogue.at(page->copy) : std::nullopt;
        if (copy) {
            result = {block.id, true, site + copy->path, copy->title, told(*copy)};
        }
        answer.results += result;
    }
    return answer;
}

} // namespace vorle::demo
