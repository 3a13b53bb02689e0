#include "core/SettingsTable.h"

#include "base/French.h"
#include "core/SettingJson.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

namespace vorle {

namespace {

using Form = SettingsFile::Form;
using json::detail::IsList;
using json::detail::IsMap;
using json::detail::IsOptional;

template <class T>
constexpr bool hasValidity = json::Record<T> && requires(const T &value) { value.isValid(); };

/// Whether a value of the right type is one the setting may take.
template <class T>
bool fitsLimits(const SettingLimits &limits, const T &value) {
    if constexpr (std::is_same_v<T, int>) {
        return limits.range == nullptr || limits.range->contains(value);
    } else if constexpr (std::is_same_v<T, QMap<QString, int>>) {
        return std::ranges::all_of(value, [&](int each) { return fitsLimits(limits, each); });
    } else if constexpr (std::is_same_v<T, QString>) {
        if (limits.rule != nullptr && !value.isEmpty()) {
            return limits.rule->accepts(value);
        }
        return limits.words.empty() ||
               std::ranges::find(limits.words, value.toStdString()) != limits.words.end();
    } else if constexpr (IsOptional<T>::value) {
        return !value || fitsLimits(limits, *value);
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

QString quoted(std::span<const std::string_view> words) {
    QStringList texts;
    for (const std::string_view word : words) {
        texts += u'"' + QString::fromUtf8(word.data(), qsizetype(word.size())) + u'"';
    }
    return texts.join(QStringLiteral(", "));
}

QString wholeNumber(const SettingLimits &limits) {
    return limits.range == nullptr ? French::tr("un nombre entier")
                                   : French::tr("un nombre entier de %1 à %2")
                                         .arg(limits.range->min)
                                         .arg(limits.range->max);
}

template <class T>
QString expectationOf(const SettingLimits &limits) {
    if constexpr (std::is_same_v<T, int>) {
        return wholeNumber(limits);
    } else if constexpr (std::is_same_v<T, bool>) {
        return French::tr("true ou false");
    } else if constexpr (json::RawEnum<T>) {
        return French::tr("l’un de ces mots : ") + quoted(rawStrings(T{}));
    } else if constexpr (std::is_same_v<T, std::optional<QString>>) {
        if (limits.rule != nullptr) {
            return French::tr("%1 ou null").arg(limits.rule->expectation());
        }
        return limits.words.empty() ? French::tr("un texte ou null")
                                    : French::tr("%1 ou null").arg(quoted(limits.words));
    } else if constexpr (std::is_same_v<T, std::optional<bool>>) {
        return French::tr("true, false ou null");
    } else if constexpr (std::is_same_v<T, std::optional<QDateTime>>) {
        return French::tr("une date comme \"2026-11-21T08:00:00Z\" ou null");
    } else if constexpr (std::is_same_v<T, QList<QString>>) {
        return French::tr("une liste de textes");
    } else if constexpr (std::is_same_v<T, QMap<QString, QString>>) {
        return French::tr("un objet dont chaque valeur est un texte");
    } else if constexpr (std::is_same_v<T, QMap<QString, int>>) {
        return French::tr("un objet dont chaque valeur est %1").arg(wholeNumber(limits));
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
void salvageEntries(const SettingLimits &limits, const QJsonValue &value, T &into) {
    if constexpr (IsList<T>::value) {
        into.clear();
        for (const QJsonValue element : value.toArray()) {
            if (auto item = fromJsonValue<typename T::value_type>(element)) {
                into.append(std::move(*item));
            }
        }
    } else if constexpr (IsMap<T>::value) {
        into.clear();
        const QJsonObject members = value.toObject();
        for (auto member = members.begin(); member != members.end(); ++member) {
            const auto item = fromJsonValue<typename T::mapped_type>(member.value());
            if (item && fitsLimits(limits, T{{member.key(), *item}})) {
                into.insert(member.key(), *item);
            }
        }
    }
}

/// The functions of one row.
template <std::size_t I>
struct Of {
    static constexpr auto row = std::get<I>(Settings::rows());
    using T = std::remove_cvref_t<decltype(std::declval<Settings>().*row.member)>;

    static bool accept(const QJsonValue &value, Settings &into) {
        auto read = fromJsonValue<T>(value);
        if (!read || !fitsLimits(row.limits, *read)) {
            return false;
        }
        into.*row.member = std::move(*read);
        return true;
    }
    static void salvage(const QJsonValue &value, Settings &into) {
        if (accept(value, into)) {
            return;
        }
        if constexpr (std::is_same_v<T, int>) {
            const double number = value.toDouble(std::nan(""));
            if (row.limits.range != nullptr && number == std::trunc(number)) {
                into.*row.member = static_cast<int>(
                    std::clamp<double>(number, row.limits.range->min, row.limits.range->max));
            }
        } else {
            salvageEntries(row.limits, value, into.*row.member);
        }
    }
    static bool fits(const Settings &settings) {
        return fitsLimits(row.limits, settings.*row.member);
    }
    static void tidy(Settings &settings) {
        if constexpr (row.limits.once) {
            T once;
            for (const QString &text : std::as_const(settings.*row.member)) {
                if (!once.contains(text)) {
                    once.append(text);
                }
            }
            settings.*row.member = std::move(once);
        }
        if constexpr (std::is_same_v<T, std::optional<QString>>) {
            std::optional<QString> &text = settings.*row.member;
            if (row.limits.rule != nullptr && text && text->isEmpty()) {
                text.reset();
            }
        }
    }
    static QJsonValue json(const Settings &from) { return toJsonValue(from.*row.member); }
    static bool equal(const Settings &a, const Settings &b) {
        return a.*row.member == b.*row.member;
    }
    static QString expectation() { return expectationOf<T>(row.limits); }
    static SettingEntry entry() {
        return {.key = QString::fromUtf8(row.key.data(), qsizetype(row.key.size())),
                .form = formOf<T>(),
                .accept = accept,
                .salvage = salvage,
                .fits = fits,
                .tidy = tidy,
                .migrate = row.migrate,
                .json = json,
                .equal = equal,
                .expectation = expectation};
    }
};

} // namespace

bool isModelName(const QString &text) {
    constexpr qsizetype maxLength = 100;
    constexpr std::u16string_view signs = u"._:/@[]-";
    const auto fits = [&](QChar c) {
        return (c.isLetterOrNumber() && c.unicode() < 0x80) ||
               signs.find(c.unicode()) != signs.npos;
    };
    return !text.isEmpty() && text.size() <= maxLength && !text.startsWith(u'-') &&
           std::ranges::all_of(text, fits);
}

QString modelNameExpectation() {
    return French::tr("un nom de modèle : 100 signes au plus, parmi A-Z a-z 0-9 . _ : / @ [ ] -, "
                      "et pas de - au début");
}

void migrateCalibrated(const SettingsFile & /*file*/, Settings &into) {
    into.calibrated = into.onboarded;
}

void migrateRadius(const SettingsFile &file, Settings &into) {
    const double old = file.value(QStringLiteral("radiusLevel"), Form::Plain).toDouble(0.5);
    if (old == std::floor(old)) {
        into.radiusLevel = static_cast<int>(std::lround(std::clamp(old, 0.0, 9.0) * 6 / 9.0));
    }
}

std::span<const SettingEntry> settingTable() {
    static const auto table = []<std::size_t... I>(std::index_sequence<I...>) {
        return std::vector<SettingEntry>{Of<I>::entry()...};
    }(std::make_index_sequence<std::tuple_size_v<decltype(Settings::rows())>>());
    return table;
}

const SettingEntry *findSetting(const QString &key) {
    const auto table = settingTable();
    const auto found = std::ranges::find(table, key, &SettingEntry::key);
    return found == table.end() ? nullptr : &*found;
}

} // namespace vorle
