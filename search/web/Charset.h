#pragma once

#include <QByteArray>

#include <optional>

namespace vorle {

/// The text of a page as valid UTF-8 without NULs: by its byte order mark; else as UTF-8 when it is
/// valid UTF-8 beyond ASCII, whatever it declares; else by the charset of its Content-Type, else
/// the one its first meta elements name, else UTF-8. What is announced as
/// UTF-8, or as nothing, but mostly fails to decode is Windows-1252. Nothing when the bytes are no
/// text (a NUL near the beginning). Pure, any thread; `bytes` must outlive the result, which may
/// share them.
std::optional<QByteArray> decodeText(QByteArrayView bytes, QByteArrayView contentType);

} // namespace vorle
