#include "desktop/LaunchPrompt.h"

#include "base/French.h"
#include "base/Text.h"
#include "base/WebLink.h"

#include <QStringList>

namespace vorle {

namespace {

/// There are at most five lines from strangers.
constexpr qsizetype maxLineBytes = 20'000;
constexpr QChar wordJoiner(0x2060);

/// What a reader sees of `text`, on one line.
QString visible(const QString &text) {
    QString out;
    for (const char32_t c : withoutHidden(utf8Prefix(text, maxLineBytes).toString()).toUcs4()) {
        switch (QChar::category(c)) {
        case QChar::Other_Control:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            out += u' ';
            break;
        default:
            out += QStringView(QChar::fromUcs4(c));
        }
    }
    return trimmed(out).toString();
}

/// Whether the word may name a file outside the project, or a resource of a tool.
bool leadsOut(QStringView word) {
    const qsizetype sign = word.indexOf(u'@');
    if (sign < 0) {
        return false;
    }
    for (qsizetype at = sign; at >= 0; at = word.indexOf(u'@', at + 1)) {
        if (at + 1 < word.size() && QStringView(u"/~.\\\"'").contains(word[at + 1])) {
            return true;
        }
    }
    return word.contains(u"..") || word.contains(u":/");
}

QString withoutMentions(const QString &line) {
    QString out;
    for (const QStringView word : QStringView(line).split(u' ')) {
        const bool held = leadsOut(word);
        for (qsizetype at = 0; at < word.size(); ++at) {
            const bool inside = at > 0 && (word[at - 1].isLetterOrNumber() || word[at - 1] == u'/');
            if (held && word[at] == u'@' && !inside) {
                out += wordJoiner;
            }
            out += word[at];
        }
        out += u' ';
    }
    out.chop(1);
    return out;
}

/// The addresses of pages, each once, as many as fit on the line.
QString addresses(const QList<TopicSource> &sources) {
    QStringList all;
    qsizetype bytes = 0;
    for (const TopicSource &source : sources) {
        const auto link = WebLink::from(source.url, WebLink::Giver::User);
        bytes += link ? link->text().size() + 2 : 0;
        if (link && !all.contains(link->text()) && bytes <= maxLineBytes) {
            all += link->text();
        }
    }
    return all.join(QStringLiteral(", "));
}

} // namespace

QString launchPrompt(const Topic &topic, LaunchTarget target) {
    QString prompt;
    const auto add = [&](const QString &label, const QString &text) {
        if (!text.isEmpty()) {
            prompt += label;
            prompt += text;
            prompt += u'\n';
        }
    };
    const auto words = [](const QString &text) {
        return utf8Prefix(withoutMentions(visible(text)), maxLineBytes).toString();
    };
    add(French::tr("Sujet de veille repéré par vorle : "), words(topic.title));
    add(French::tr("Pourquoi ça me concerne : "), words(topic.why));
    add(French::tr("Premier pas proposé : "), words(topic.firstStep));
    add(French::tr("Sources : "), addresses(topic.sources));
    add(French::tr("Mon projet : "), words(topic.project.value_or(QString())));
    if (!prompt.isEmpty()) {
        prompt += u'\n';
    }
    return prompt +
           (target == LaunchTarget::ProjectFolder
                ? French::tr(
                      "Aide-moi à faire ce premier pas dans ce projet. Commence par vérifier ce "
                      "qui me concerne vraiment dans le code, puis propose un plan court avant de "
                      "modifier quoi que ce soit.")
                : French::tr(
                      "Aide-moi à approfondir ce sujet et à faire ce premier pas : dis-moi ce qui "
                      "compte vraiment pour moi, puis propose un plan court et concret."));
}

} // namespace vorle
