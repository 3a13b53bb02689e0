#include "core/SettingsTable.h"
#include "storage/JsonSettings.h"
#include "tests/fuzz/Require.h"

#include <QJsonDocument>

// Whatever a settings file holds, what is read of a setting is a value that the setting takes, and
// a change that meets another one of the same setting gives a value of the same kind.
namespace {

using namespace vorle;
using fuzz::require;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QJsonObject stored = QJsonDocument::fromJson(bytes).object();
    Settings settings;
    QJsonValue before;
    for (const SettingEntry &entry : settingTable()) {
        const QJsonValue value = stored.value(entry.key);
        if (!value.isUndefined()) {
            entry.salvage(value, settings);
        }
        require(entry.fits(settings), "a value out of its range", entry.key);
        const QJsonValue read = entry.json(settings);
        Settings again;
        require(entry.accept(read, again), "its own value is refused", entry.key);
        require(entry.equal(settings, again), "another value came back", entry.key);
        require(mergedSetting(read, read, value).type() == read.type(), "changed its kind",
                entry.key);
        require(mergedSetting(before, value, read).type() == value.type(), "changed its kind",
                entry.key);
        before = value;
    }
    return 0;
}
