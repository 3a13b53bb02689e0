#pragma once

#include "platform/KeyWatch.h"

#include <QObject>

class QKeyEvent;

namespace vorle {

/// By Qt's own events: X11, Wayland, and what a test sends.
class QtKeyWatch final : public QObject, public KeyWatch {
public:
    ~QtKeyWatch() override { stop(); }

    void start(std::function<void(const KeyCombination &)> pressed) override;
    void stop() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void(const KeyCombination &)> m_pressed;
};

/// The combination that Qt tells of; the code is -1 where it cannot be told. Pure.
KeyCombination combinationOf(const QKeyEvent &event);

} // namespace vorle
