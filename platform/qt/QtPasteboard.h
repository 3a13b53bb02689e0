#pragma once

#include "platform/Pasteboard.h"

namespace vorle {

/// The pasteboard of the window system. Needs a QGuiApplication.
class QtPasteboard final : public Pasteboard {
public:
    QString text() const override;
    void replace(const QString &text) override;
};

} // namespace vorle
