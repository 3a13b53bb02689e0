#pragma once

#include "platform/SignatureCheck.h"

#include <QFile>

#include <functional>

namespace vorle::test {

/// Takes for signed what holds those words.
class FakeSignatureCheck final : public SignatureCheck {
public:
    QByteArray signature = "signed by the right team";
    std::function<void()> onCheck{}; ///< on the thread that asks

    bool meets(const QString &program, const QString &requirement) const override {
        if (onCheck) {
            onCheck();
        }
        QFile file(program);
        return requirement.contains(u"2DC432GLL2") && file.open(QIODevice::ReadOnly) &&
               file.readAll().contains(signature);
    }
};

} // namespace vorle::test
