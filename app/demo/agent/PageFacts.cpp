#include "app/demo/agent/PageFacts.h"

#include "base/FrenchLocale.h"
#include "base/Text.h"

#include <QRegularExpression>

#include <algorithm>

namespace vorle::demo {

namespace {

/// How much of a page tells what it is about, in characters.
constexpr qsizetype openingLength = 600;

QRegularExpression pattern(const char *text) {
    return QRegularExpression(QString::fromUtf8(text),
                              QRegularExpression::CaseInsensitiveOption |
                                  QRegularExpression::UseUnicodePropertiesOption);
}

bool says(const QString &text, const char *words) { return pattern(words).match(text).hasMatch(); }

QStringList sentences(const QString &text) {
    static const QRegularExpression end = pattern(R"((?<=[.!?…])\s+(?=[\p{Lu}«\d]))");
    return text.split(end, Qt::SkipEmptyParts);
}

qsizetype occurrences(const QString &text, const char *words) {
    qsizetype count = 0;
    const QRegularExpression expression = pattern(words);
    for (auto matches = expression.globalMatch(text); matches.hasNext(); matches.next()) {
        ++count;
    }
    return count;
}

QDate frenchDate(const QRegularExpressionMatch &match) {
    const QLocale french = frenchLocale();
    for (int month = 1; month <= 12; ++month) {
        if (french.standaloneMonthName(month).compare(match.captured(2), Qt::CaseInsensitive) ==
            0) {
            return {match.captured(3).toInt(), month, match.captured(1).toInt()};
        }
    }
    return {};
}

/// The earliest date after today in a sentence that sets a limit.
void readDeadline(const QStringList &all, const QDate &today, PageFacts &facts) {
    static const QRegularExpression date = pattern(R"(\b(\d{1,2})(?:er)? (\p{L}+) (\d{4})\b)");
    QDate earliest;
    for (const QString &sentence : all) {
        if (!says(sentence, "jusqu’au|avant le|ne pourr|clôture|ferment|date limite")) {
            continue;
        }
        for (auto matches = date.globalMatch(sentence); matches.hasNext();) {
            const QDate found = frenchDate(matches.next());
            if (!found.isValid() || found <= today || (earliest.isValid() && found >= earliest)) {
                continue;
            }
            earliest = found;
            facts.deadlineReason =
                says(sentence, "inscription")   ? QStringLiteral("Clôture des inscriptions.")
                : says(sentence, "correctif")   ? QStringLiteral("Fin des correctifs.")
                : says(sentence, "déplo|délai") ? QStringLiteral("Fin des déploiements possibles.")
                                                : QStringLiteral("Date limite donnée par la page.");
        }
    }
    facts.deadline = earliest.isValid() ? earliest.toString(Qt::ISODate) : QString();
}

void readLines(const BlockRead &block, PageFacts &facts) {
    for (const QString &raw : block.content.split(u'\n')) {
        QString line = raw.trimmed();
        // Headings of a text/markdown page reach the judge as "| ## …".
        static const QRegularExpression marks = pattern("^(?:\\| )?(?:#+|-) ");
        line.remove(marks);
        const bool ends = line.endsWith(u'.') || line.endsWith(u'?') || line.endsWith(u'!');
        const bool listed = line.size() <= 160 && ends && sentences(line).size() == 1;
        if (listed && says(line, "faille|casse|gain|nouvelle API|n’est plus|n’accepte plus")) {
            facts.changes += line;
        } else if (facts.lead.isEmpty() && line.size() >= 80 && ends) {
            facts.lead = line;
        } else if (facts.heading.isEmpty() && !facts.lead.isEmpty() && !line.isEmpty() &&
                   line.size() <= 50 && !ends) {
            facts.heading = line;
        }
    }
    facts.changes = facts.changes.first(std::min<qsizetype>(5, facts.changes.size()));
}

} // namespace

QString firstSentences(const QString &text, qsizetype characters) {
    QString out;
    for (const QString &sentence : sentences(text)) {
        const QString longer = out.isEmpty() ? sentence : out + u' ' + sentence;
        if (characterCount(longer) > characters) {
            break;
        }
        out = longer;
    }
    return !out.isEmpty() || text.isEmpty()
               ? out
               : firstCharacters(text, characters - 1).toString().trimmed() + u'…';
}

PageFacts readFacts(const BlockRead &block, const ProfileRead &profile, const QDate &today) {
    PageFacts facts;
    facts.unread = block.level == u"none";
    const QString &text = block.content;
    facts.steering = says(text, "ignore (your|all|the|any) (previous|prior)|\\bAI assistants\\b");
    facts.hype = says(text, "révolutionnaire|incroyable|ultime|que tout le monde");
    facts.french = occurrences(text, "\\b(le|la|les|des|une|est)\\b") >=
                   occurrences(text, "\\b(the|of|and|is|to)\\b");
    facts.flaw = says(text, "faille|vulnérabilité|vulnerability|CVE-\\d");
    facts.exploited = says(text, "exploitation|exploited|exploitée");
    facts.breaking = says(text, "\\bcasse\\b|breaking change");
    facts.figures = static_cast<int>(occurrences(text, "\\d+(?:[.,]\\d+)*"));
    static const QRegularExpression version = pattern(R"(\b\d+\.\d+(?:\.\d+)?\b)");
    for (auto matches = version.globalMatch(block.title + u' ' + text); matches.hasNext();) {
        const QString found = matches.next().captured();
        if (!facts.versions.contains(found)) {
            facts.versions += found;
        }
    }
    readLines(block, facts);
    QStringList all;
    for (const QString &line : text.split(u'\n')) {
        all += sentences(line.trimmed());
    }
    readDeadline(all, today, facts);
    for (const QString &sentence : all) {
        // The last one counts: pages end on their advice.
        if (says(sentence, "^\\W*(Lance|Passe|Ajoute|Essaie|Cherche|Crée|Commence|Relève|Regarde|"
                           "Mesure|Prends|Note|Sème|Ramasse|Télécharge|Lis|Compare)\\b")) {
            facts.step = sentence;
        }
    }
    facts.tie = tieOf(block.title + u'\n' + block.note + u'\n' +
                          text.first(std::min<qsizetype>(openingLength, text.size())),
                      text, profile);
    return facts;
}

} // namespace vorle::demo
