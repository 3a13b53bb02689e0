#pragma once

// The demonstration's agent as a real child, through the real runner.

#include "agents/EngineAgent.h"
#include "app/demo/Demonstration.h"
#include "base/Resources.h"
#include "judging/JudgePrompt.h"
#include "search/run/Pipeline.h"
#include "search/run/SearchScope.h"
#include "tests/support/Wait.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cmath>

namespace vorle::test {

struct CandidatesAnswer {
    QList<Candidate> candidates;
    static constexpr auto jsonFields() {
        return std::tuple(json::field("candidates", &CandidatesAnswer::candidates));
    }
};

struct JudgmentsAnswer {
    QList<Judgment> judgments;
    static constexpr auto jsonFields() {
        return std::tuple(json::field("judgments", &JudgmentsAnswer::judgments));
    }
};

/// What of `value` does not follow `schema`, as a path; empty when all does.
inline QString unlike(const QJsonValue &value, const QJsonObject &schema,
                      const QString &path = {}) {
    const QString type = schema.value(u"type").toString();
    const bool fits =
        (type == u"object" && value.isObject()) || (type == u"array" && value.isArray()) ||
        (type == u"string" && value.isString()) || (type == u"boolean" && value.isBool()) ||
        (type == u"number" && value.isDouble()) ||
        (type == u"integer" && value.isDouble() &&
         value.toDouble() == std::floor(value.toDouble()));
    const QJsonArray words = schema.value(u"enum").toArray();
    if (!fits || (!words.isEmpty() && !words.contains(value))) {
        return path + QStringLiteral(": not ") + type;
    }
    const QJsonObject properties = schema.value(u"properties").toObject();
    const QJsonObject object = value.toObject();
    for (const QJsonValue key : schema.value(u"required").toArray()) {
        if (!object.contains(key.toString())) {
            return path + u'/' + key.toString() + QStringLiteral(": absent");
        }
    }
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString wrong =
            properties.contains(it.key())
                ? unlike(*it, properties.value(it.key()).toObject(), path + u'/' + it.key())
                : path + u'/' + it.key() + QStringLiteral(": unknown");
        if (!wrong.isEmpty()) {
            return wrong;
        }
    }
    for (const QJsonValue element : value.toArray()) {
        const QString wrong = unlike(element, schema.value(u"items").toObject(), path);
        if (!wrong.isEmpty()) {
            return wrong;
        }
    }
    return {};
}

class DemoAgent : public testing::Test {
protected:
    QString resource(const char *name, const char *extension) const {
        return Resources().text(QString::fromLatin1(name), QString::fromLatin1(extension)).value();
    }

    EngineAgent agent() const {
        AgentEnvironment environment = AgentEnvironment::ofThisProcess();
        const auto variables = demonstration->environment();
        for (auto it = variables.cbegin(); it != variables.cend(); ++it) {
            environment.variables.insert(it.key(), it.value());
        }
        environment.variables.insert(QStringLiteral("VORLE_DEMO_PACE"), QStringLiteral("0"));
        return EngineAgent(environment, [] { return QString(); });
    }

    template <class Answer>
    Answer ask(const QString &prompt, const char *schemaName, AgentKind kind = AgentKind::Claude) {
        const QString schema = resource(schemaName, "json");
        EngineAgent runner = agent();
        runner.check(kind);
        const AgentResult result = test::waitFor(runner.run({prompt, schema, {}, {}}, kind));
        EXPECT_EQ(unlike(QJsonDocument::fromJson(result.json).object(),
                         QJsonDocument::fromJson(schema.toUtf8()).object()),
                  QString());
        return json::decode<Answer>(result.json);
    }

    QList<Candidate> candidates(const SearchScope &scope, int count = 8,
                                const QStringList &known = {}, AgentKind kind = AgentKind::Claude) {
        CandidatesRequest request;
        request.today = QDate::currentDate();
        request.since = request.today.addDays(-7);
        request.count = count;
        request.radius = stayOnTopicSentence();
        request.knownLinks = known;
        return ask<CandidatesAnswer>(
                   candidatesPrompt(resource("candidates-prompt", "md"), scope, request, {}),
                   "candidates-schema", kind)
            .candidates;
    }

    QString judging(const QList<JudgeCandidate> &blocks) const {
        JudgeProfile profile;
        profile.projects = {{QStringLiteral("Tiravue"),
                             QStringLiteral("tirages de photos"),
                             {QStringLiteral("Expo")},
                             {}}};
        profile.interests = {{QStringLiteral("modèles d’IA en local"), 5}};
        return judgePrompt(resource("judge-prompt", "md"), QDate(2026, 11, 21), profile, {}, {},
                           blocks);
    }

    static CodeProject tiravue() {
        QFile manifest(QStringLiteral(":/vorle/demo/tiravue/package.json"));
        EXPECT_TRUE(manifest.open(QIODevice::ReadOnly));
        return {QStringLiteral("Tiravue"), QStringLiteral("des tirages"),
                QStringLiteral("package.json"), QString::fromUtf8(manifest.readAll())};
    }

    static QStringList links(const QList<Candidate> &found) {
        QStringList urls;
        for (const Candidate &candidate : found) {
            urls += candidate.url;
        }
        return urls;
    }

    std::unique_ptr<Demonstration> demonstration = Demonstration::start();
};

} // namespace vorle::test
