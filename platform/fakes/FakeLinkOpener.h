#pragma once

#include "platform/LinkOpener.h"

#include <QList>

#include <functional>

namespace vorle::test {

/// A browser that notes what it is given.
class FakeLinkOpener final : public LinkOpener {
public:
    QList<QUrl> opened;
    bool takes = true;              ///< what it answers
    std::function<void()> onOpen{}; ///< called with each address

private:
    bool openInBrowser(const QUrl &address) override {
        opened += address;
        if (onOpen) {
            onOpen();
        }
        return takes;
    }
};

} // namespace vorle::test
