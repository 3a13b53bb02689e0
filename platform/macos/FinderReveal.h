#pragma once

#include "platform/FileReveal.h"

namespace vorle {

/// The Finder, with the file chosen.
class FinderReveal final : public FileReveal {
public:
    QString label() const override;
    bool reveal(const QString &path) override;
};

} // namespace vorle
