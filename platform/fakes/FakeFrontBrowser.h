#pragma once

#include "platform/FrontBrowser.h"

#include <QStringList>

namespace vorle::test {

/// An application in front that answers what it is told to.
class FakeFrontBrowser final : public FrontBrowser {
public:
    QString front;
    std::optional<QString> reply;
    QStringList scripts; ///< that were asked

    QString frontApp() const override { return front; }
    Task<std::optional<QString>> answer(QString script) override {
        scripts += script;
        co_await sleepFor(std::chrono::milliseconds(0));
        co_return reply;
    }
};

} // namespace vorle::test
