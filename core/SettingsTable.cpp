#include "core/SettingsTable.h"

#include "base/French.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <vector>

namespace vorle {

namespace {

using Form = SettingsFile::Form;
using json::detail::IsList;
using json::detail::IsMap;
using json::detail::IsOptional;

/// Lets a value that is no object stand at the root of a JSON text.
template <class T>
struct Holder {
    T value{};
    static constexpr auto jsonFields() { return std::tuple(json::field("value", &Holder::value)); }
};
constexpr QLatin1StringView holderKey("value");

template <class T>
std::optional<T> fromJson(const QJsonValue &value) {
    if (value.isUndefined()) {
        return std::nullopt;
    }
    const QByteArray text =
        QJsonDocument(QJsonObject{{holderKey, value}}).toJson(QJsonDocument::Compact);
    try {
        return json::decode<Holder<T>>(text).value;
    } catch (const json::DecodeError &) {
        return std::nullopt;
    }
}

template <class T>
QJsonValue toJson(const T &value) {
    const QByteArray text = json::encode(Holder<T>{value});
    const QJsonValue written = QJsonDocument::fromJson(text).object().value(holderKey);
    return written.isUndefined() ? QJsonValue(QJsonValue::Null) : written;
}

struct Range {
    int least;
    int most;
    bool contains(int value) const { return value >= least && value <= most; }
};
constexpr Range weightRange{1, 5};

Range rangeOf(const QString &key) {
    constexpr int minutesInAWeek = 7 * 24 * 60;
    return key == u"radiusLevel2" ? Range{0, 6} : Range{0, minutesInAWeek};
}

template <class T>
constexpr bool hasValidity = json::Record<T> && requires(const T &value) { value.isValid(); };

/// Whether a value of the right type is one the setting may take.
template <class T>
bool fits(const QString &key, const T &value) {
    if constexpr (std::is_same_v<T, int>) {
        return rangeOf(key).contains(value);
    } else if constexpr (std::is_same_v<T, QMap<QString, int>>) {
        return std::ranges::all_of(value, [](int weight) { return weightRange.contains(weight); });
    } else if constexpr (std::is_same_v<T, std::optional<QString>>) {
        return key != u"agent" || !value || *value == u"claude" || *value == u"codex";
    } else if constexpr (hasValidity<T>) {
        return value.isValid();
    } else {
        return true;
    }
}

template <class T>
constexpr Form formOf() {
    if constexpr (std::is_same_v<T, std::optional<QDateTime>>) {
        return Form::Date;
    } else if constexpr (json::Record<T> || std::is_same_v<T, std::optional<LastReport>> ||
                         std::is_same_v<T, QList<PrioritySite>>) {
        return Form::Record;
    } else {
        return Form::Plain;
    }
}

template <class T>
QString expectationOf(const QString &key) {
    if constexpr (std::is_same_v<T, int>) {
        const Range range = rangeOf(key);
        return French::tr("un nombre entier de %1 à %2").arg(range.least).arg(range.most);
    } else if constexpr (std::is_same_v<T, bool>) {
        return French::tr("true ou false");
    } else if constexpr (json::RawEnum<T>) {
        QStringList words;
        for (const std::string_view word : rawStrings(T{})) {
            words += u'"' + QString::fromUtf8(word.data(), qsizetype(word.size())) + u'"';
        }
        return French::tr("l’un de ces mots : ") + words.join(QStringLiteral(", "));
    } else if constexpr (std::is_same_v<T, std::optional<QString>>) {
        return key == u"agent" ? French::tr("\"claude\", \"codex\" ou null")
                               : French::tr("un texte ou null");
    } else if constexpr (std::is_same_v<T, std::optional<QDateTime>>) {
        return French::tr("une date comme \"2026-11-21T08:00:00Z\" ou null");
    } else if constexpr (std::is_same_v<T, QList<QString>>) {
        return French::tr("une liste de textes");
    } else if constexpr (std::is_same_v<T, QMap<QString, QString>>) {
        return French::tr("un objet dont chaque valeur est un texte");
    } else if constexpr (std::is_same_v<T, QMap<QString, int>>) {
        return French::tr("un objet dont chaque valeur est un nombre entier de %1 à %2")
            .arg(weightRange.least)
            .arg(weightRange.most);
    } else if constexpr (IsList<T>::value) {
        return French::tr("une liste d’objets comme ") +
               QString::fromUtf8(json::encode(typename T::value_type{}));
    } else if constexpr (IsOptional<T>::value) {
        return French::tr("null, ou un objet comme ") +
               QString::fromUtf8(json::encode(typename T::value_type{}));
    } else {
        return French::tr("un objet comme ") + QString::fromUtf8(json::encode(T{}));
    }
}

template <class T>
void salvageEntries(const QString &key, const QJsonValue &value, T &into) {
    if constexpr (IsList<T>::value) {
        into.clear();
        for (const QJsonValue element : value.toArray()) {
            if (auto item = fromJson<typename T::value_type>(element)) {
                into.append(std::move(*item));
            }
        }
    } else if constexpr (IsMap<T>::value) {
        into.clear();
        const QJsonObject members = value.toObject();
        for (auto member = members.begin(); member != members.end(); ++member) {
            const auto item = fromJson<typename T::mapped_type>(member.value());
            if (item && fits(key, T{{member.key(), *item}})) {
                into.insert(member.key(), *item);
            }
        }
    }
}

/// The functions of one entry.
template <std::size_t I>
struct Of {
    static constexpr auto field = std::get<I>(Settings::fields());
    using T = std::remove_cvref_t<decltype(std::declval<Settings>().*field.member)>;

    static bool accept(const QString &key, const QJsonValue &value, Settings &into) {
        auto read = fromJson<T>(value);
        if (!read || !fits(key, *read)) {
            return false;
        }
        into.*field.member = std::move(*read);
        return true;
    }
    static void salvage(const QString &key, const QJsonValue &value, Settings &into) {
        if (accept(key, value, into)) {
            return;
        }
        if constexpr (std::is_same_v<T, int>) {
            if (const auto number = fromJson<double>(value);
                number && *number == std::trunc(*number)) {
                const Range range = rangeOf(key);
                into.*field.member =
                    static_cast<int>(std::clamp<double>(*number, range.least, range.most));
            }
        } else {
            salvageEntries(key, value, into.*field.member);
        }
    }
    static QJsonValue json(const Settings &from) { return toJson(from.*field.member); }
    static bool equal(const Settings &a, const Settings &b) {
        return a.*field.member == b.*field.member;
    }
    static SettingEntry entry() {
        return {.key = QString::fromUtf8(field.key.data(), qsizetype(field.key.size())),
                .form = formOf<T>(),
                .accept = accept,
                .salvage = salvage,
                .json = json,
                .equal = equal,
                .expectation = expectationOf<T>};
    }
};

} // namespace

std::span<const SettingEntry> settingTable() {
    static const auto table = []<std::size_t... I>(std::index_sequence<I...>) {
        return std::vector<SettingEntry>{Of<I>::entry()...};
    }(std::make_index_sequence<std::tuple_size_v<decltype(Settings::fields())>>());
    return table;
}

const SettingEntry *findSetting(const QString &key) {
    const auto table = settingTable();
    const auto found = std::ranges::find(table, key, &SettingEntry::key);
    return found == table.end() ? nullptr : &*found;
}

} // namespace vorle
