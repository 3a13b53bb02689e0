#pragma once

#include "core/Preferences.h"
#include "tests/core/Samples.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle::test {

/// Settings in a folder of their own; the file and its own folder are not there yet.
class SettingsFixture : public testing::Test {
protected:
    Preferences open() { return Preferences(std::make_unique<SettingsFile>(file)); }
    /// What is read of a file that holds this text.
    Settings read(const QByteArray &text) {
        file = dir.filePath(QStringLiteral("read.json"));
        writeFile(file, text);
        return open().settings();
    }
    QJsonObject onDisk() const { return QJsonDocument::fromJson(readFile(file)).object(); }

    QTemporaryDir dir;
    QString file = dir.filePath(QStringLiteral("sub/settings.json"));
};

} // namespace vorle::test
