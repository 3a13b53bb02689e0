#include "agents/StructuredOutput.h"
#include "agents/AgentError.h"
#include "agents/AgentWords.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringList>

namespace vorle {

namespace {

// The parser refuses more than 1024 levels, which bounds the recursions here.
QJsonObject strict(QJsonObject node);

/// Properties are made strict; one that the node does not require may also be null.
QJsonObject strictProperties(const QJsonObject &node) {
    const QJsonArray required = node.value(QStringLiteral("required")).toArray();
    QJsonObject properties = node.value(QStringLiteral("properties")).toObject();
    for (auto property = properties.begin(); property != properties.end(); ++property) {
        if (!property.value().isObject()) {
            continue;
        }
        QJsonObject schema = strict(property.value().toObject());
        const QJsonValue type = schema.value(QStringLiteral("type"));
        if (type.isString() && !required.contains(property.key())) {
            schema[QStringLiteral("type")] = QJsonArray{type, QStringLiteral("null")};
        }
        property.value() = schema;
    }
    return properties;
}

QJsonObject strict(QJsonObject node) {
    const QString propertiesKey = QStringLiteral("properties");
    const bool hasProperties = node.value(propertiesKey).isObject();
    for (auto member = node.begin(); member != node.end(); ++member) {
        if (member.value().isObject() && !(hasProperties && member.key() == propertiesKey)) {
            member.value() = strict(member.value().toObject());
        }
    }
    if (hasProperties) {
        const QJsonObject properties = strictProperties(node);
        node[propertiesKey] = properties;
        node[QStringLiteral("required")] = QJsonArray::fromStringList(properties.keys());
        node[QStringLiteral("additionalProperties")] = false;
    }
    return node;
}

/// The code unit that the escape at `at` stands for ("\\u" and four digits), or nothing.
std::optional<ushort> escapedUnit(const QByteArray &json, qsizetype at) {
    if (at + 6 > json.size() || json[at] != '\\' || json[at + 1] != 'u') {
        return std::nullopt;
    }
    bool hexadecimal = false;
    const ushort unit = json.sliced(at + 2, 4).toUShort(&hexadecimal, 16);
    return hexadecimal ? std::optional(unit) : std::nullopt;
}

/// `json` with U+FFFD for every escaped half of a character: an agent that cuts its own text in
/// the middle of an emoji writes one, and no decoder accepts it.
QByteArray withoutHalfCharacters(QByteArray json) {
    const auto isHalf = [&](qsizetype at, ushort firstHalf) {
        const auto unit = escapedUnit(json, at);
        return unit && (*unit & 0xFC00U) == firstHalf;
    };
    for (qsizetype at = json.indexOf('\\'); at >= 0; at = json.indexOf('\\', at)) {
        if (isHalf(at, 0xD800) && isHalf(at + 6, 0xDC00)) {
            at += 12;
        } else if (isHalf(at, 0xD800) || isHalf(at, 0xDC00)) {
            json.replace(at, 6, "\\ufffd");
            at += 6;
        } else {
            at += 2; // the sign and what it escapes
        }
    }
    return json;
}

QByteArray tidy(const QByteArray &json) { return sanitizedJson(withoutHalfCharacters(json)); }

/// No call costs more: a figure past it, as one below 0, is none.
constexpr double maxCost = 100'000;

/// Likewise.
constexpr double maxTokens = 1e12;

std::optional<qint64> tokensOf(const QJsonObject &usage) {
    double tokens = 0;
    bool told = false;
    for (const char *key : {"input_tokens", "cache_creation_input_tokens",
                            "cache_read_input_tokens", "output_tokens"}) {
        const QJsonValue count = usage[QLatin1StringView(key)];
        const bool isCount = count.toDouble(-1) >= 0 && count.toDouble() <= maxTokens;
        tokens += isCount ? count.toDouble() : 0;
        told = told || isCount;
    }
    return told ? std::optional(static_cast<qint64>(tokens)) : std::nullopt;
}

AgentSpend spentOn(const QJsonObject &result) {
    const double dollars = result[QStringLiteral("total_cost_usd")].toDouble(-1);
    const bool isCost = dollars >= 0 && dollars <= maxCost;
    return {isCost ? std::optional(dollars) : std::nullopt,
            tokensOf(result[QStringLiteral("usage")].toObject())};
}

} // namespace

QString makeStrict(const QString &schema) {
    const QJsonDocument document = QJsonDocument::fromJson(schema.toUtf8());
    if (!document.isObject()) {
        throw AgentError::missingInstruction();
    }
    return QString::fromUtf8(
        QJsonDocument(strict(document.object())).toJson(QJsonDocument::Compact));
}

AgentResult unwrapClaude(const QByteArray &output) {
    const QJsonDocument document = QJsonDocument::fromJson(output);
    if (!document.isObject()) {
        throw AgentError::unreadable();
    }
    const QJsonObject result = document.object();
    const AgentSpend spent = spentOn(result);
    if (result[QStringLiteral("is_error")].toBool()) {
        const QString told = result[QStringLiteral("result")].toString();
        throw AgentError::message(told).withSpent(spent).withLimit(usageLimit(told));
    }
    const QJsonValue answer = result[QStringLiteral("structured_output")];
    if (!answer.isObject()) {
        throw AgentError::unreadable().withSpent(spent);
    }
    return {tidy(QJsonDocument(answer.toObject()).toJson(QJsonDocument::Compact)), spent};
}

AgentResult unwrapCodex(const QByteArray &answer) {
    if (QJsonDocument::fromJson(answer).isNull()) {
        throw AgentError::unreadable();
    }
    return {tidy(answer), {}};
}

ClaudeFailure claudeFailure(const QByteArray &output) {
    const QJsonDocument document = QJsonDocument::fromJson(output);
    if (!document.isObject()) {
        return {QString::fromUtf8(output), {}};
    }
    const QJsonObject result = document.object();
    QString text = result[QStringLiteral("result")].toString();
    if (text.isEmpty()) {
        QStringList errors;
        for (const QJsonValue error : result[QStringLiteral("errors")].toArray()) {
            errors += error.toString();
        }
        text = errors.join(QStringLiteral("; "));
    }
    return {text, spentOn(result)};
}

std::optional<qint64> codexTokens(const QString &printed) {
    static const QRegularExpression count(
        QStringLiteral("tokens used[: \\t]*\\s([0-9]{1,3}(?:[,.][0-9]{3}){0,3}|[0-9]{1,12})\\s*$"),
        QRegularExpression::CaseInsensitiveOption);
    const auto found = count.match(printed);
    if (!found.hasMatch()) {
        return std::nullopt;
    }
    QString digits = found.captured(1);
    digits.removeIf([](QChar c) { return !c.isDigit(); });
    return digits.toLongLong();
}

} // namespace vorle
