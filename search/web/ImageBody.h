#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace vorle {

/// Whether decoding a picture would take far more than its sides say: a JPEG of more than 32 scans,
/// each of which goes over all of it, or a PNG (or one in an ICO) with more than 16 compressed
/// texts, each of which can be a thousand times its size. Pure, any thread; time linear in the
/// bytes, which may come from a stranger.
bool isOverloaded(QByteArrayView picture);

/// What of a picture is to be given to a decoder: of a PNG the chunks that its pixels are made of,
/// and no others; of other forms all. Empty where it is not all there: a PNG that is cut short, a
/// JPEG without a scan, a WebP shorter than it says. Pure, any thread; linear likewise.
QByteArray decodablePart(const QByteArray &picture);

} // namespace vorle
