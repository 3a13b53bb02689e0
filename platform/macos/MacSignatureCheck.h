#pragma once

#include "platform/SignatureCheck.h"

namespace vorle {

/// The Security framework's static code.
class MacSignatureCheck final : public SignatureCheck {
public:
    bool meets(const QString &program, const QString &requirement) const override;
};

} // namespace vorle
