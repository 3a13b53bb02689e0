#pragma once

#include <QString>

#include <optional>
#include <string_view>

namespace vorle::html {

/// An address as it stands in an attribute, with its "&amp;" as "&" and nothing else decoded: what
/// looks like another entity is a part of its query.
QString addressIn(std::string_view value);

/// The attributes of a start tag, or of what is written like one, in their order: a name, and
/// behind an equals sign, blanks or not, a value. A value in quotes ends at the quote that opened
/// it, wherever that stands; one without at a blank, a quote or ">". Reads each byte once. The
/// views point into the text, which must outlive the reader. (A meta element is read by the
/// patterns of MetaTag instead.)
class AttributeReader {
public:
    struct Attribute {
        std::string_view name; ///< as written
        std::string_view value;
        bool quoted = false;

        /// Whether that is its name (in lower case), case ignored.
        bool is(std::string_view wanted) const;
    };

    /// `at` is behind the element's name.
    AttributeReader(std::string_view text, std::size_t at) : m_text(text), m_at(at) {}

    /// The next one; nothing once the tag's ">" or the text's end is reached, which a quote that
    /// nothing closes reaches too.
    std::optional<Attribute> next();
    /// Where the reading stands: at the tag's ">", or at the text's end.
    std::size_t position() const { return m_at; }

private:
    void passBlanks();

    std::string_view m_text;
    std::size_t m_at;
};

} // namespace vorle::html
