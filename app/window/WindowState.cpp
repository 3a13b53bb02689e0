#include "app/window/WindowState.h"

#include "base/Log.h"
#include "storage/BesideTopics.h"
#include "storage/DurableFile.h"

#include <QDateTime>

#include <algorithm>
#include <exception>

namespace vorle {

void WindowState::setGeometry(const QRect &geometry) {
    x = geometry.x();
    y = geometry.y();
    width = geometry.width();
    height = geometry.height();
}

WindowState WindowState::load(const QString &topicsFile) {
    if (topicsFile.isEmpty()) {
        return {};
    }
    WindowState state;
    try {
        const auto bytes = readWhole(sidecarPath(topicsFile, QStringLiteral("window.json")));
        if (bytes) {
            state = json::decode<WindowState>(*bytes);
        }
    } catch (const json::DecodeError &) {
        return {};
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the window's place could not be read: ") +
                QString::fromLocal8Bit(error.what()));
        state.refused = true;
    }
    return state;
}

void WindowState::save(const QString &topicsFile) const {
    if (topicsFile.isEmpty() || refused) {
        return;
    }
    const QByteArray bytes = json::encode(*this, json::Style::Pretty);
    try {
        const QString file = sidecarPath(topicsFile, QStringLiteral("window.json"));
        replaceable<WindowState>(file, QDateTime::currentDateTime()); // what it is none of is kept
        replaceWhole(file, bytes);
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the window's place was not kept: %1")
                    .arg(QString::fromLocal8Bit(error.what())));
    }
}

QRect onScreen(const QRect &wanted, const QSize &fallback, const QList<QRect> &screens) {
    if (screens.isEmpty()) {
        return {wanted.topLeft(), wanted.isValid() ? wanted.size() : fallback};
    }
    const QRect *best = nullptr;
    qint64 most = 0;
    for (const QRect &screen : screens) {
        const QRect common = screen.intersected(wanted);
        const qint64 area = qint64(common.width()) * common.height();
        if (wanted.isValid() && common.isValid() && area > most) {
            best = &screen;
            most = area;
        }
    }
    const QRect &screen = best != nullptr ? *best : screens.first();
    QRect geometry(QPoint(), (best != nullptr ? wanted.size() : fallback).boundedTo(screen.size()));
    if (best == nullptr) {
        geometry.moveCenter(screen.center());
        return geometry;
    }
    geometry.moveTo(std::clamp(wanted.x(), screen.x(), screen.right() + 1 - geometry.width()),
                    std::clamp(wanted.y(), screen.y(), screen.bottom() + 1 - geometry.height()));
    return geometry;
}

QPoint besideItem(const QRect &item, const QSize &panel, const QRect &screen) {
    constexpr int gap = 6;
    const bool under = item.center().y() < screen.center().y();
    const int x = item.center().x() - panel.width() / 2;
    const int y = under ? item.bottom() + 1 + gap : item.top() - gap - panel.height();
    const auto clamped = [](int wanted, int first, int length, int room) {
        return std::max(first, std::min(wanted, first + room - length));
    };
    return {clamped(x, screen.x() + gap, panel.width(), screen.width() - 2 * gap),
            clamped(y, screen.y() + gap, panel.height(), screen.height() - 2 * gap)};
}

} // namespace vorle
