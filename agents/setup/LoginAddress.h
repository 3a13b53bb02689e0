#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

#include <optional>

namespace vorle {

/// Finds the first https address in what a login prints, piece by piece; an address ends at a
/// blank, at a BEL or an ESC, so that the codes of a terminal never stick to it. Any thread.
class LoginAddress {
public:
    /// The address, once: as soon as what ends it has come, or nothing has come for a while.
    /// `piece` may end anywhere, also inside a character; an empty one says that time went by.
    std::optional<QString> feed(QByteArrayView piece);
    /// What an address that goes to the very end of the output is, where none was found before.
    std::optional<QString> finish();

private:
    std::optional<QString> found(qsizetype end);

    QStringDecoder m_decode{QStringDecoder::Utf8};
    QString m_text; ///< from where an address may begin
    int m_silence = 0;
    bool m_done = false;
};

} // namespace vorle
