#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <bitset>
#include <vector>

namespace vorle {

/// The names of the user's tools, made to be looked for in many texts: a text costs about the same
/// whether they are three or a thousand. Any thread.
class ToolNames {
public:
    explicit ToolNames(const QStringList &tools);

    /// Whether the text names one of the tools, as whole words and whatever their case. A "+" or
    /// "#" goes on with a name: "C++" does not name C, nor "C#".
    bool namedIn(QStringView text) const;

private:
    bool startsAt(QStringView text, qsizetype at) const;

    std::vector<QString> m_names; ///< folded, sorted, each once
    std::bitset<128> m_starts;    ///< the ASCII characters a name starts with
    bool m_startsBeyond = false;  ///< a name starts with another character
};

} // namespace vorle
