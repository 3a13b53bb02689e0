#pragma once

#include "platform/FrontBrowser.h"

namespace vorle {

/// The workspace's frontmost application, asked by NSAppleScript.
class MacFrontBrowser final : public FrontBrowser {
public:
    QString frontApp() const override;
    Task<std::optional<QString>> answer(QString script) override;
};

} // namespace vorle
