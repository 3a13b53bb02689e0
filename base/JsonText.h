#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <stdexcept>
#include <string_view>
#include <utility>

/// JSON text, value by value: what base/Json.h reads records from and writes them to.
namespace vorle::json {

/// The text does not hold what was asked for: not JSON, a required key absent, a value of the
/// wrong type, an unknown word. `what()` names the key, in English.
class DecodeError final : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A position in a JSON text being read. Every function throws DecodeError.
class Reader {
public:
    class Visitor {
    public:
        virtual void value(std::string_view key, Reader &in) = 0;

    protected:
        ~Visitor() = default;
    };

    explicit Reader(void *value) : m_value(value) {}

    bool isNull();
    bool boolean();
    qint64 integer(); ///< a whole number; 3.0 counts as one
    double number();
    std::string_view utf8(); ///< valid until the next call on the text
    QByteArray raw();        ///< the value's own text, whatever it is
    /// Visits each member of an object, or each element of an array (with an empty key). What the
    /// visitor leaves unread is passed over.
    void object(Visitor &visitor);
    void array(Visitor &visitor);

private:
    void *m_value;
};

enum class Style {
    Pretty, ///< two blanks a level, keys sorted
    Compact ///< one line, keys in the record's own order
};

class Writer {
public:
    /// `start` is what the text begins with: a buffer that is given back by take() and handed in
    /// again spares its allocations.
    explicit Writer(Style style, int level = 0, QByteArray start = {})
        : m_out(std::move(start)), m_style(style), m_level(level) {}

    Style style() const { return m_style; }
    void boolean(bool value);
    void integer(qint64 value);
    void number(double value); ///< shortest text that reads back the same; not finite: null
    void text(QStringView value);
    void utf8(QByteArrayView value); ///< bytes that are no UTF-8 are replaced by U+FFFD
    void raw(QByteArrayView json) { m_out += json; } ///< a value's text, as Reader::raw() gave it
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    void key(std::string_view name);
    void element(); ///< before each element of an array

    QByteArray take() { return std::move(m_out); }

private:
    void begin(char bracket);
    void end(char bracket);
    void separate();
    void escaped(QByteArrayView value);

    QByteArray m_out;
    Style m_style;
    int m_level;
    bool m_first = true;
};

} // namespace vorle::json
