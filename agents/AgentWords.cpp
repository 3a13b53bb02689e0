#include "agents/AgentWords.h"

#include "base/Text.h"

#include <QCoreApplication>
#include <QList>
#include <QRegularExpression>

#include <cctype>
#include <optional>

namespace vorle {

namespace {

QRegularExpression pattern(const char *text) {
    QRegularExpression made(QString::fromLatin1(text));
    made.optimize();
    return made;
}

/// Colours, cursor moves, titles, links: whole, so that no "[31m" stays behind.
QString withoutSequences(QString text) {
    static const QRegularExpression sequences =
        pattern("(?:\\x1B\\[|\\x{9B})[0-?]*[ -/]*[@-~]"
                "|(?:\\x1B[\\]PX^_]|[\\x{90}\\x{98}\\x{9D}-\\x{9F}])[^\\x07\\x1B\\x{9C}\\r\\n]*"
                "(?:\\x07|\\x1B\\\\|\\x{9C})?"
                "|\\x1B[ -/]*[0-~]");
    return text.remove(sequences);
}

bool isControl(char16_t c) {
    return (c < 0x20 && c != u'\n' && c != u'\t') || (c >= 0x7F && c < 0xA0);
}

/// Each keeps what its first group took: the word that tells what the secret is. None looks far
/// ahead from more than one place of a word, so that hostile words cost no more than long ones, and
/// none takes the mask for a secret.
const QList<QRegularExpression> &secrets() {
    static const QList<QRegularExpression> all{
        pattern("()-----BEGIN [A-Z ]*PRIVATE KEY-----[A-Za-z0-9+/=\\s:,-]*"),
        // What issuers put in front of theirs.
        pattern("(?<![A-Za-z0-9])()(?:sk|pk|rk)[-_][A-Za-z0-9_-]{12,}"),
        pattern("(?<![A-Za-z0-9])()(?:gh[oprsu]_|github_pat_|glpat-|xox[a-z]-|npm_|hf_|AKIA|ASIA|"
                "AIza|ya29\\.)[A-Za-z0-9_.-]{10,}"),
        pattern("(?<![A-Za-z0-9_-])()eyJ[A-Za-z0-9_-]{8,}(?:\\.[A-Za-z0-9_-]+)+"),
        // What is said of them.
        pattern("((?i:bearer|basic)[ \\t]+)(?=[^\\s\"',;]{0,200}[0-9])[^\\s\"',;[][^\\s\"',;]{7,}"),
        pattern("((?i:api[_-]?key|[_-]token|secret|passw(?:or)?d|x-api-key|set-cookie|cookie|"
                "mot\\x20de\\x20passe)[\"']?[ \\t\\x{A0}]*[:=][ "
                "\\t]*[\"']?)[^\\s\"',;&[][^\\s\"',;&]{3,}"),
        pattern("((?i:token|key|authorization)[\"']?[ \\t]*[:=][ \\t]*[\"']?)"
                "(?=[^\\s\"',;&]{0,200}[0-9])[^\\s\"',;&[][^\\s\"',;&]{11,}"),
        pattern("(://[^\\s/@:]{0,200}:)[^\\s/@]+(?=@)"),
        // A long word of small letters, capitals and figures is nobody's name.
        pattern("(?<![A-Za-z0-9_])()(?=[A-Za-z0-9_]*[a-z])(?=[A-Za-z0-9_]*[A-Z])"
                "(?=[A-Za-z0-9_]*[0-9])[A-Za-z0-9_]{40,}"),
    };
    return all;
}

/// The control character that the escape at `at` of a JSON text stands for, or nothing.
std::optional<char16_t> escapedControl(const QByteArray &json, qsizetype at) {
    if (at + 1 >= json.size() || json[at] != '\\') {
        return std::nullopt;
    }
    const char sign = json[at + 1];
    if (sign == 'b' || sign == 'f') {
        return sign == 'b' ? u'\b' : u'\f';
    }
    bool number = false;
    const ushort unit = sign == 'u' && at + 6 <= json.size()
                            ? json.sliced(at + 2, 4).toUShort(&number, 16)
                            : ushort(0);
    return number && isControl(unit) && unit != u'\r' ? std::optional<char16_t>(unit)
                                                      : std::nullopt;
}

/// Past "[", parameters and letter at `at`: what is left of a colour once its first sign is gone.
qsizetype endOfSequence(const QByteArray &json, qsizetype at) {
    qsizetype end = at + 1;
    while (end < json.size() && json[end] >= '0' && json[end] <= '?') {
        ++end;
    }
    const bool sequence =
        end < json.size() && json[at] == '[' && std::isalpha(uchar(json[end])) != 0;
    return sequence ? end + 1 : at;
}

} // namespace

QString sanitized(const QString &text) {
    QString out = withoutSequences(text);
    out.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    out.replace(u'\r', u'\n');
    out.removeIf([](QChar c) { return isControl(c.unicode()); });
    out = withoutHidden(out);
    const QString mask =
        QStringLiteral("\\1") + QCoreApplication::translate("AgentError", "[clé masquée]");
    for (const QRegularExpression &secret : secrets()) {
        out.replace(secret, mask);
    }
    return out;
}

QByteArray sanitizedJson(const QByteArray &json) {
    QByteArray out;
    out.reserve(json.size());
    for (qsizetype at = 0; at < json.size();) {
        const auto byte = static_cast<uchar>(json[at]);
        const uchar next = at + 1 < json.size() ? static_cast<uchar>(json[at + 1]) : uchar(0);
        if (const auto control = escapedControl(json, at)) {
            at += json[at + 1] == 'u' ? 6 : 2;
            at = *control == 0x1B ? endOfSequence(json, at) : at;
        } else if (byte == 0x7F) {
            ++at;
        } else if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {
            at += 2;
        } else {
            const qsizetype length = byte == '\\' && at + 1 < json.size() ? 2 : 1;
            out += QByteArrayView(json).sliced(at, length);
            at += length;
        }
    }
    return out;
}

} // namespace vorle
