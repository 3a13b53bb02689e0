#pragma once

#include "base/Clock.h"
#include "base/Json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <cmath>
#include <limits>
#include <optional>

/// A setting's value as JSON, and back. Texts, numbers, words and dates are turned as they stand;
/// records are described once, in base/Json.h, and go through a text.
namespace vorle {

template <class T>
QJsonValue toJsonValue(const T &value);

/// Nothing where the JSON is of another type, or no word of the enumeration.
template <class T>
std::optional<T> fromJsonValue(const QJsonValue &value);

namespace settingjson {

template <json::Record T>
QJsonValue recordToJson(const T &value) {
    return QJsonDocument::fromJson(json::encode(value)).object();
}

template <json::Record T>
std::optional<T> recordFromJson(const QJsonValue &value) {
    if (!value.isObject()) {
        return std::nullopt;
    }
    try {
        return json::decode<T>(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    } catch (const json::DecodeError &) {
        return std::nullopt;
    }
}

inline std::optional<int> wholeFromJson(const QJsonValue &value) {
    const double number = value.toDouble(std::nan(""));
    const bool whole = number >= std::numeric_limits<int>::min() &&
                       number <= std::numeric_limits<int>::max() && number == std::trunc(number);
    return whole ? std::optional(static_cast<int>(number)) : std::nullopt;
}

} // namespace settingjson

template <class T>
QJsonValue toJsonValue(const T &value) {
    using namespace json::detail;
    if constexpr (IsOptional<T>::value) {
        return value ? toJsonValue(*value) : QJsonValue(QJsonValue::Null);
    } else if constexpr (json::Record<T>) {
        return settingjson::recordToJson(value);
    } else if constexpr (json::RawEnum<T>) {
        return json::rawText(value);
    } else if constexpr (IsList<T>::value) {
        QJsonArray array;
        for (const auto &item : value) {
            array.append(toJsonValue(item));
        }
        return array;
    } else if constexpr (IsMap<T>::value) {
        QJsonObject object;
        for (auto item = value.cbegin(); item != value.cend(); ++item) {
            object.insert(item.key(), toJsonValue(item.value()));
        }
        return object;
    } else if constexpr (std::same_as<T, QDateTime>) {
        return QString::fromLatin1(formatIso8601(value));
    } else {
        static_assert(std::same_as<T, bool> || std::same_as<T, int> || std::same_as<T, QString>);
        return QJsonValue(value);
    }
}

template <class T>
std::optional<T> fromJsonValue(const QJsonValue &value) {
    using namespace json::detail;
    if constexpr (IsOptional<T>::value) {
        if (value.isNull()) {
            return T();
        }
        auto inner = fromJsonValue<typename T::value_type>(value);
        return inner ? std::optional<T>(std::move(inner)) : std::nullopt;
    } else if constexpr (json::Record<T>) {
        return settingjson::recordFromJson<T>(value);
    } else if constexpr (json::RawEnum<T>) {
        return value.isString() ? json::fromRaw<T>(value.toString()) : std::nullopt;
    } else if constexpr (IsList<T>::value) {
        T list;
        for (const QJsonValue element : value.toArray()) {
            auto item = fromJsonValue<typename T::value_type>(element);
            if (!item) {
                return std::nullopt;
            }
            list.append(std::move(*item));
        }
        return value.isArray() ? std::optional(std::move(list)) : std::nullopt;
    } else if constexpr (IsMap<T>::value) {
        T map;
        const QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member) {
            auto item = fromJsonValue<typename T::mapped_type>(member.value());
            if (!item) {
                return std::nullopt;
            }
            map.insert(member.key(), std::move(*item));
        }
        return value.isObject() ? std::optional(std::move(map)) : std::nullopt;
    } else if constexpr (std::same_as<T, QDateTime>) {
        return value.isString() ? parseIso8601(value.toString().toUtf8()) : std::nullopt;
    } else if constexpr (std::same_as<T, bool>) {
        return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
    } else if constexpr (std::same_as<T, int>) {
        return settingjson::wholeFromJson(value);
    } else {
        static_assert(std::same_as<T, QString>);
        return value.isString() ? std::optional(value.toString()) : std::nullopt;
    }
}

} // namespace vorle
