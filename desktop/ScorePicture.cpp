#include "desktop/ScorePicture.h"

#include "core/AccentColour.h"
#include "core/ScoreScale.h"

#include <QFont>
#include <QPainter>

namespace vorle {

namespace {

constexpr int side = 256; ///< pixels: what the largest of banners shows, twice

QColor colourOf(const QString &text, Accent accent) {
    return QColor(text == accentToken ? accentColour(accent).light : qtColour(text));
}

} // namespace

QImage scorePicture(std::optional<int> score, Accent accent, const QString &family) {
    const ScoreBadge badge = scoreBadge(score);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr double ring = side * 0.035;
    const QRectF disc = QRectF(image.rect()).adjusted(ring, ring, -ring, -ring);
    painter.setPen(badge.filled ? QPen(Qt::NoPen)
                                : QPen(colourOf(badge.accent.light, accent), ring));
    painter.setBrush(colourOf(badge.fill.light, accent));
    painter.drawEllipse(disc);
    QFont font(family);
    font.setBold(true);
    font.setPixelSize(badge.digits.size() > 1 ? side * 44 / 100 : side * 54 / 100);
    painter.setFont(font);
    painter.setPen(colourOf(badge.ink.light, accent));
    painter.drawText(disc, Qt::AlignCenter,
                     badge.digits.isEmpty() ? QStringLiteral("–") : badge.digits);
    return image;
}

} // namespace vorle
