#pragma once

#include "platform/Pasteboard.h"

namespace vorle::test {

/// A pasteboard in memory.
class FakePasteboard final : public Pasteboard {
public:
    QString text() const override { return m_text; }
    void replace(const QString &text) override { m_text = text; }

private:
    QString m_text;
};

} // namespace vorle::test
