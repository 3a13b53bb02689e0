#pragma once

#include "platform/DockPresence.h"

namespace vorle {

/// By the application's activation policy, which its Info.plist (LSUIElement) has begin as that of
/// a menu-bar item: regular with a window, accessory without.
class MacDock final : public DockPresence {
public:
    void show(bool shown) override;
};

} // namespace vorle
