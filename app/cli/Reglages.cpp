#include "app/cli/Handlers.h"
#include "app/cli/Requirements.h"
#include "base/French.h"
#include "core/Preferences.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vorle::cli {

namespace {

/// JSON of any kind on one line, a bare text or number included.
QByteArray compact(const QJsonValue &value) {
    const QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return wrapped.sliced(1, wrapped.size() - 2);
}

QJsonValue parsedValue(const QString &text) {
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson("[" + text.toUtf8() + "]", &error);
    if (error.error != QJsonParseError::NoError || document.array().size() != 1) {
        throw Failure(French::tr("« %1 » n’est pas du JSON. Un texte s’écrit entre "
                                 "guillemets : '\"%1\"'")
                          .arg(text),
                      ExitStatus::Usage);
    }
    return document.array().first();
}

} // namespace

Task<ExitStatus> reglages(Context &context, OnDemand<Preferences> opened) {
    Preferences &preferences = *opened;
    const QStringList &words = context.arguments.positional;
    if (words.isEmpty()) {
        QStringList lines;
        QJsonObject all;
        for (const QString &key : Preferences::settingKeys()) {
            all[key] = preferences.setting(key);
            lines += context.console.bold(key) + QStringLiteral("  ") +
                     QString::fromUtf8(compact(preferences.setting(key)));
        }
        if (context.arguments.json()) {
            context.console.print(QJsonDocument(all).toJson().trimmed());
        } else {
            context.console.print(lines.join(u'\n'));
        }
        co_return ExitStatus::Done;
    }
    if (words.size() == 2) {
        if (const auto error = preferences.changeSetting(words[0], parsedValue(words[1]))) {
            throw Failure(*error);
        }
        requireSaved(preferences);
    }
    const QJsonValue value = preferences.setting(words[0]);
    if (value.isUndefined()) {
        throw Failure(French::tr("Réglage inconnu : %1").arg(words[0]));
    }
    context.console.print(compact(value));
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
