#pragma once

#include "base/Clock.h"
#include "base/JsonText.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QUuid>

#include <algorithm>
#include <array>
#include <concepts>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

/// Records to and from JSON (RFC 8259), each field described once.
///
/// A record names its fields in a static member function, in the record's own order:
///
///     struct TopicSource {
///         QString title;
///         QString url;
///         static constexpr auto jsonFields() {
///             return std::tuple(json::field("title", &TopicSource::title),
///                               json::field("url", &TopicSource::url));
///         }
///     };
///
/// A std::optional member may be absent or null; any other is required. Unknown keys are passed
/// over, unless the record has a static member function `jsonRest()` that names the member, a
/// `json::Rest`, to keep them in: they are then written again as they were. An enumeration has a
/// free function `rawStrings(E)` in its own namespace that gives the raw string of each value,
/// values counting from 0. Texts are QString, or QByteArray where the UTF-8 form is kept. Moments
/// are ISO 8601 in UTC, to the second. UUIDs are written upper-case without braces and read in
/// either case.
namespace vorle::json {

/// What a record does not know of its object: the text of each value, by its key.
using Rest = QMap<QByteArray, QByteArray>;

template <class Owner, class Value>
struct Field {
    std::string_view key;
    Value Owner::*member;
};

template <class Owner, class Value>
constexpr Field<Owner, Value> field(std::string_view key, Value Owner::*member) {
    return {key, member};
}

template <class T>
concept Record = requires { T::jsonFields(); };

template <class T>
concept KeepsRest = Record<T> && requires { T::jsonRest(); };

template <class E>
concept RawEnum = std::is_enum_v<E> && requires(E value) { rawStrings(value); };

/// The raw string of an enumeration's value.
template <RawEnum E>
constexpr std::string_view raw(E value) {
    return rawStrings(value)[static_cast<std::size_t>(value)];
}

template <RawEnum E>
QString rawText(E value) {
    const std::string_view text = raw(value);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The value with that raw string, or nothing.
template <RawEnum E>
constexpr std::optional<E> fromRaw(std::string_view text) {
    const auto words = rawStrings(E{});
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == text) {
            return static_cast<E>(i);
        }
    }
    return std::nullopt;
}

template <RawEnum E>
std::optional<E> fromRaw(const QString &text) {
    const QByteArray utf8 = text.toUtf8();
    return fromRaw<E>(std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())));
}

namespace detail {

/// Calls `visit(Reader &)` on the root of the text.
class RootVisitor {
public:
    virtual void root(Reader &in) = 0;

protected:
    ~RootVisitor() = default;
};
void readRoot(const QByteArray &utf8, RootVisitor &visitor);

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};
template <class T>
struct IsList : std::false_type {};
template <class T>
struct IsList<QList<T>> : std::true_type {};
template <class T>
struct IsMap : std::false_type {};
template <class T>
struct IsMap<QMap<QString, T>> : std::true_type {};

QDateTime readMoment(Reader &in);
QUuid readUuid(Reader &in);
QByteArray writeUuid(const QUuid &id);
[[noreturn]] void failUnknownWord(std::string_view word);
[[noreturn]] void failMissing(std::string_view key);
[[noreturn]] void failIn(std::string_view key, const DecodeError &error);

template <class T>
void read(Reader &in, T &out);
template <class T>
void write(Writer &out, const T &value);

/// One field, free of its types: what the record tables hold.
struct Slot {
    std::string_view key;
    void (*read)(Reader &in, void *record);
    bool (*present)(const void *record);
    void (*write)(Writer &out, const void *record);
    bool required;
};

template <Record T>
struct Table {
    static constexpr auto fields = T::jsonFields();
    static constexpr std::size_t size = std::tuple_size_v<decltype(T::jsonFields())>;
    static_assert(size <= 64, "the set of keys seen is one 64-bit word");

    template <std::size_t I>
    static constexpr Slot slot() {
        using Value = std::remove_cvref_t<decltype(std::declval<T>().*std::get<I>(fields).member)>;
        return Slot{std::get<I>(fields).key,
                    [](Reader &in, void *record) {
                        detail::read(in, static_cast<T *>(record)->*std::get<I>(fields).member);
                    },
                    [](const void *record) {
                        if constexpr (IsOptional<Value>::value) {
                            return (static_cast<const T *>(record)->*std::get<I>(fields).member)
                                .has_value();
                        } else {
                            return record != nullptr;
                        }
                    },
                    [](Writer &out, const void *record) {
                        detail::write(out,
                                      static_cast<const T *>(record)->*std::get<I>(fields).member);
                    },
                    !IsOptional<Value>::value};
    }

    static constexpr std::array<Slot, size> inOrder() {
        return []<std::size_t... I>(std::index_sequence<I...>) {
            return std::array<Slot, size>{slot<I>()...};
        }(std::make_index_sequence<size>());
    }

    static constexpr std::array<Slot, size> sorted() {
        auto slots = inOrder();
        std::sort(slots.begin(), slots.end(),
                  [](const Slot &a, const Slot &b) { return a.key < b.key; });
        return slots;
    }

    static constexpr std::array<Slot, size> own = inOrder();
    static constexpr std::array<Slot, size> alphabetical = sorted();
};

/// `rest` is null where nothing is kept of it.
void readRecord(Reader &in, void *record, std::span<const Slot> alphabetical, Rest *rest);
void writeRecord(Writer &out, const void *record, std::span<const Slot> slots, const Rest *rest);

template <Record T>
Rest *restOf(T &record) {
    if constexpr (KeepsRest<T>) {
        return &(record.*T::jsonRest());
    } else {
        return nullptr;
    }
}

template <Record T>
const Rest *restOf(const T &record) {
    return restOf(const_cast<T &>(record));
}

template <class T>
void read(Reader &in, T &out);

template <class T>
void readList(Reader &in, T &out) {
    struct Elements final : Reader::Visitor {
        explicit Elements(T &list) : m_list(list) {}
        void value(std::string_view, Reader &element) override {
            typename T::value_type item{};
            read(element, item);
            m_list.append(std::move(item));
        }
        T &m_list;
    };
    out.clear();
    Elements elements(out);
    in.array(elements);
}

template <class T>
void readMap(Reader &in, T &out) {
    struct Members final : Reader::Visitor {
        explicit Members(T &map) : m_map(map) {}
        void value(std::string_view key, Reader &member) override {
            const auto name = QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
            read(member, m_map[name]);
        }
        T &m_map;
    };
    out.clear();
    Members members(out);
    in.object(members);
}

template <class T>
void read(Reader &in, T &out) {
    if constexpr (IsOptional<T>::value) {
        if (in.isNull()) {
            out.reset();
        } else {
            read(in, out.emplace());
        }
    } else if constexpr (Record<T>) {
        readRecord(in, &out, Table<T>::alphabetical, restOf(out));
    } else if constexpr (RawEnum<T>) {
        const std::string_view word = in.utf8();
        const auto value = fromRaw<T>(word);
        if (!value) {
            failUnknownWord(word);
        }
        out = *value;
    } else if constexpr (IsList<T>::value) {
        readList(in, out);
    } else if constexpr (IsMap<T>::value) {
        readMap(in, out);
    } else if constexpr (std::same_as<T, bool>) {
        out = in.boolean();
    } else if constexpr (std::integral<T>) {
        const qint64 value = in.integer();
        if (!std::in_range<T>(value)) {
            throw DecodeError("number out of range");
        }
        out = static_cast<T>(value);
    } else if constexpr (std::floating_point<T>) {
        out = in.number();
    } else if constexpr (std::same_as<T, QString>) {
        const std::string_view text = in.utf8();
        out = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    } else if constexpr (std::same_as<T, QByteArray>) {
        const std::string_view text = in.utf8();
        out = QByteArray(text.data(), static_cast<qsizetype>(text.size()));
    } else if constexpr (std::same_as<T, QDateTime>) {
        out = readMoment(in);
    } else {
        static_assert(std::same_as<T, QUuid>, "no JSON form is described for this type");
        out = readUuid(in);
    }
}

template <class T>
void write(Writer &out, const T &value) {
    if constexpr (IsOptional<T>::value) {
        write(out, *value); // an absent one is never written
    } else if constexpr (Record<T>) {
        writeRecord(out, &value,
                    out.style() == Style::Pretty ? std::span<const Slot>(Table<T>::alphabetical)
                                                 : std::span<const Slot>(Table<T>::own),
                    restOf(value));
    } else if constexpr (RawEnum<T>) {
        const std::string_view word = raw(value);
        out.utf8(QByteArrayView(word.data(), static_cast<qsizetype>(word.size())));
    } else if constexpr (IsList<T>::value) {
        out.beginArray();
        for (const auto &item : value) {
            out.element();
            write(out, item);
        }
        out.endArray();
    } else if constexpr (IsMap<T>::value) {
        out.beginObject();
        for (auto it = value.cbegin(); it != value.cend(); ++it) {
            out.key(it.key().toStdString());
            write(out, it.value());
        }
        out.endObject();
    } else if constexpr (std::same_as<T, bool>) {
        out.boolean(value);
    } else if constexpr (std::integral<T>) {
        out.integer(value);
    } else if constexpr (std::floating_point<T>) {
        out.number(value);
    } else if constexpr (std::same_as<T, QString>) {
        out.text(value);
    } else if constexpr (std::same_as<T, QByteArray>) {
        out.utf8(value);
    } else if constexpr (std::same_as<T, QDateTime>) {
        out.utf8(formatIso8601(value));
    } else {
        static_assert(std::same_as<T, QUuid>, "no JSON form is described for this type");
        out.utf8(writeUuid(value));
    }
}

} // namespace detail

/// Reads a whole text, which must be one JSON object or array and nothing more; a byte-order mark
/// before it is passed over. Bytes whose
/// capacity reaches 64 past their size are parsed where they are; others are copied first.
/// @throws DecodeError; std::bad_alloc, which says nothing of the text
template <class T>
T decode(const QByteArray &utf8) {
    struct Root final : detail::RootVisitor {
        void root(Reader &in) override { detail::read(in, result); }
        T result{};
    };
    Root visitor;
    detail::readRoot(utf8, visitor);
    return std::move(visitor.result);
}

/// Writes a value after what `writer` holds.
template <class T>
void encodeTo(Writer &writer, const T &value) {
    detail::write(writer, value);
}

/// Writes a value; `level` is the indentation level the text will stand at.
template <class T>
QByteArray encode(const T &value, Style style = Style::Compact, int level = 0) {
    Writer writer(style, level);
    detail::write(writer, value);
    return writer.take();
}

} // namespace vorle::json
