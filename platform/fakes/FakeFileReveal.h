#pragma once

#include "platform/FileReveal.h"

#include <QStringList>

namespace vorle::test {

/// A file browser that notes what it is to show.
class FakeFileReveal final : public FileReveal {
public:
    QStringList revealed;
    bool takes = true; ///< what it answers

    QString label() const override { return QStringLiteral("Show"); }
    bool reveal(const QString &path) override {
        revealed += path;
        return takes;
    }
};

} // namespace vorle::test
