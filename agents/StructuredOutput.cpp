#include "agents/StructuredOutput.h"
#include "agents/AgentError.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
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

std::optional<double> costOf(const QJsonObject &result) {
    const QJsonValue cost = result[QStringLiteral("total_cost_usd")];
    return cost.isDouble() ? std::optional(cost.toDouble()) : std::nullopt;
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
    const auto cost = costOf(result);
    if (result[QStringLiteral("is_error")].toBool()) {
        const QJsonValue text = result[QStringLiteral("result")];
        throw AgentError::message(
            text.isString() ? text.toString()
                            : QCoreApplication::translate("AgentError", "erreur de l’agent"))
            .withCost(cost);
    }
    const QJsonValue answer = result[QStringLiteral("structured_output")];
    if (!answer.isObject()) {
        throw AgentError::unreadable().withCost(cost);
    }
    return {QJsonDocument(answer.toObject()).toJson(QJsonDocument::Compact), cost};
}

AgentResult unwrapCodex(const QByteArray &answer) {
    if (QJsonDocument::fromJson(answer).isNull()) {
        throw AgentError::unreadable();
    }
    return {answer, std::nullopt};
}

ClaudeFailure claudeFailure(const QByteArray &output) {
    const QJsonObject result = QJsonDocument::fromJson(output).object();
    QString text = result[QStringLiteral("result")].toString();
    if (text.isEmpty()) {
        QStringList errors;
        for (const QJsonValue error : result[QStringLiteral("errors")].toArray()) {
            errors += error.toString();
        }
        text = errors.join(QStringLiteral("; "));
    }
    return {text, costOf(result)};
}

} // namespace vorle
