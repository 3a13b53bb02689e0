#include "base/Json.h"

#include <simdjson.h>

#include <cmath>
#include <cstring>

namespace vorle::json {

namespace {

namespace od = simdjson::ondemand;

[[noreturn]] void fail(simdjson::error_code code) {
    if (code == simdjson::MEMALLOC) {
        throw std::bad_alloc();
    }
    throw DecodeError(simdjson::error_message(code));
}

template <class T>
T checked(simdjson::simdjson_result<T> result) {
    T value{};
    if (const auto code = std::move(result).get(value)) {
        fail(code);
    }
    return value;
}

od::value &at(void *value) { return *static_cast<od::value *>(value); }

} // namespace

bool Reader::isNull() {
    bool null = false;
    return at(m_value).is_null().get(null) == simdjson::SUCCESS && null;
}

bool Reader::boolean() { return checked(at(m_value).get_bool()); }

double Reader::number() { return checked(at(m_value).get_double()); }

qint64 Reader::integer() {
    od::value &value = at(m_value);
    int64_t whole = 0;
    if (value.get_int64().get(whole) == simdjson::SUCCESS) {
        return whole;
    }
    const double real = checked(value.get_double());
    // Exactly representable bounds; a comparison with NaN is false.
    if (!(real >= -9.0e15 && real <= 9.0e15) || std::trunc(real) != real) {
        throw DecodeError("not a whole number");
    }
    return static_cast<qint64>(real);
}

std::string_view Reader::utf8() { return checked(at(m_value).get_string()); }

QByteArray Reader::raw() {
    od::value &value = at(m_value);
    std::string_view text;
    switch (checked(value.type())) {
    case od::json_type::object: {
        auto object = checked(value.get_object());
        text = checked(object.raw_json());
        break;
    }
    case od::json_type::array: {
        auto array = checked(value.get_array());
        text = checked(array.raw_json());
        break;
    }
    default:
        text = value.raw_json_token();
    }
    return QByteArray(text.data(), static_cast<qsizetype>(text.size())).trimmed();
}

void Reader::object(Visitor &visitor) {
    od::object members = checked(at(m_value).get_object());
    for (auto member : members) {
        std::string_view key;
        if (const auto code = member.unescaped_key().get(key)) {
            fail(code);
        }
        od::value value = checked(member.value());
        Reader reader(&value);
        visitor.value(key, reader);
    }
}

void Reader::array(Visitor &visitor) {
    od::array elements = checked(at(m_value).get_array());
    for (auto element : elements) {
        od::value value = checked(std::move(element));
        Reader reader(&value);
        visitor.value({}, reader);
    }
}

namespace detail {

void readRoot(const QByteArray &utf8, RootVisitor &visitor) {
    constexpr qsizetype markSize = 3;
    const qsizetype mark = utf8.startsWith("\xEF\xBB\xBF") ? markSize : 0;
    const char *start = utf8.constData() + mark;
    const auto size = static_cast<std::size_t>(utf8.size() - mark);
    const auto capacity = static_cast<std::size_t>(utf8.capacity() - mark);
    const bool padded = capacity >= size + simdjson::SIMDJSON_PADDING;
    const simdjson::padded_string copy =
        padded ? simdjson::padded_string() : simdjson::padded_string(start, size);
    od::parser parser;
    od::document document =
        checked(parser.iterate(padded ? simdjson::padded_string_view(start, size, capacity)
                                      : simdjson::padded_string_view(copy)));
    od::value root = checked(document.get_value());
    Reader reader(&root);
    visitor.root(reader);
    if (document.current_location().error() == simdjson::SUCCESS) {
        throw DecodeError("text goes on after the value");
    }
}

QDateTime readMoment(Reader &in) {
    const std::string_view text = in.utf8();
    const auto moment =
        parseIso8601(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    if (!moment) {
        throw DecodeError("not an ISO 8601 date");
    }
    return *moment;
}

QUuid readUuid(Reader &in) {
    const std::string_view text = in.utf8();
    // With braces a UUID has 38 characters: only the bare form is ours.
    const QLatin1StringView bare(text.data(), static_cast<qsizetype>(text.size()));
    const QUuid id = bare.size() == 36 ? QUuid::fromString(bare) : QUuid();
    if (id.isNull() && text != "00000000-0000-0000-0000-000000000000") {
        throw DecodeError("not a UUID");
    }
    return id;
}

QByteArray writeUuid(const QUuid &id) { return id.toByteArray(QUuid::WithoutBraces).toUpper(); }

void failUnknownWord(std::string_view word) {
    throw DecodeError("unknown word \"" + std::string(word) + '"');
}

void failMissing(std::string_view key) { throw DecodeError("missing key " + std::string(key)); }

void failIn(std::string_view key, const DecodeError &error) {
    throw DecodeError(std::string(key) + ": " + error.what());
}

namespace {

struct RecordVisitor final : Reader::Visitor {
    RecordVisitor(void *target, std::span<const Slot> fields, Rest *unknown)
        : record(target), slots(fields), rest(unknown) {}

    void value(std::string_view key, Reader &in) override {
        // Our own files have sorted keys, so the next slot is nearly always the one.
        std::size_t index = next;
        while (index < slots.size() && slots[index].key < key) {
            ++index;
        }
        if (index >= slots.size() || slots[index].key != key) {
            index = 0;
            while (index < slots.size() && slots[index].key != key) {
                ++index;
            }
        }
        if (index == slots.size()) {
            if (rest != nullptr) {
                // The key's bytes go with the next look at the text.
                const QByteArray name(key.data(), static_cast<qsizetype>(key.size()));
                rest->insert(name, in.raw());
            }
            return;
        }
        try {
            slots[index].read(in, record);
        } catch (const DecodeError &error) {
            failIn(key, error);
        }
        seen |= std::uint64_t{1} << index;
        next = index + 1;
    }

    void *record;
    std::span<const Slot> slots;
    Rest *rest;
    std::size_t next = 0;
    std::uint64_t seen = 0;
};

void writeRest(Writer &out, Rest::const_iterator from, Rest::const_iterator to) {
    for (; from != to; ++from) {
        out.key(from.key().toStdString());
        out.raw(from.value());
    }
}

} // namespace

void readRecord(Reader &in, void *record, std::span<const Slot> alphabetical, Rest *rest) {
    if (rest != nullptr) {
        rest->clear();
    }
    RecordVisitor visitor(record, alphabetical, rest);
    in.object(visitor);
    for (std::size_t i = 0; i < alphabetical.size(); ++i) {
        if (alphabetical[i].required && (visitor.seen >> i & 1U) == 0) {
            failMissing(alphabetical[i].key);
        }
    }
}

void writeRecord(Writer &out, const void *record, std::span<const Slot> slots, const Rest *rest) {
    static const Rest nothing;
    const Rest &unknown = rest != nullptr ? *rest : nothing;
    auto next = unknown.cbegin();
    out.beginObject();
    for (const Slot &slot : slots) {
        if (out.style() == Style::Pretty && next != unknown.cend()) {
            const QByteArrayView key(slot.key.data(), static_cast<qsizetype>(slot.key.size()));
            const auto upTo = unknown.lowerBound(key.toByteArray());
            writeRest(out, next, upTo);
            next = upTo;
        }
        if (slot.present(record)) {
            out.key(slot.key);
            slot.write(out, record);
        }
    }
    writeRest(out, next, unknown.cend());
    out.endObject();
}

} // namespace detail

void Writer::boolean(bool value) { m_out += value ? "true" : "false"; }

void Writer::integer(qint64 value) { m_out += QByteArray::number(value); }

void Writer::number(double value) {
    if (!std::isfinite(value)) {
        m_out += "null";
    } else if (std::trunc(value) == value && std::abs(value) < 1e15) {
        m_out += QByteArray::number(static_cast<qint64>(value));
    } else {
        m_out += QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
    }
}

void Writer::text(QStringView value) { escaped(value.toUtf8()); }

void Writer::utf8(QByteArrayView value) {
    if (simdjson::validate_utf8(value.data(), static_cast<std::size_t>(value.size()))) {
        escaped(value);
    } else {
        escaped(QString::fromUtf8(value).toUtf8());
    }
}

void Writer::escaped(QByteArrayView value) {
    static constexpr char hex[] = "0123456789abcdef";
    m_out += '"';
    const char *run = value.begin();
    for (const char *at = run; at != value.end(); ++at) {
        const auto c = static_cast<unsigned char>(*at);
        if (c >= 0x20 && c != '"' && c != '\\') {
            continue;
        }
        m_out.append(run, at - run);
        run = at + 1;
        m_out += '\\';
        switch (c) {
        case '\n':
            m_out += 'n';
            break;
        case '\t':
            m_out += 't';
            break;
        case '\r':
            m_out += 'r';
            break;
        case '"':
        case '\\':
            m_out += static_cast<char>(c);
            break;
        default:
            m_out += "u00";
            m_out += hex[c >> 4];
            m_out += hex[c & 15];
        }
    }
    m_out.append(run, value.end() - run);
    m_out += '"';
}

void Writer::begin(char bracket) {
    m_out += bracket;
    ++m_level;
    m_first = true;
}

void Writer::end(char bracket) {
    --m_level;
    if (!m_first && m_style == Style::Pretty) {
        m_out += '\n';
        m_out.append(m_level * 2, ' ');
    }
    m_out += bracket;
    m_first = false;
}

void Writer::separate() {
    if (!m_first) {
        m_out += ',';
    }
    m_first = false;
    if (m_style == Style::Pretty) {
        m_out += '\n';
        m_out.append(m_level * 2, ' ');
    }
}

void Writer::key(std::string_view name) {
    separate();
    escaped(QByteArrayView(name.data(), static_cast<qsizetype>(name.size())));
    m_out += m_style == Style::Pretty ? ": " : ":";
}

void Writer::element() { separate(); }

} // namespace vorle::json
