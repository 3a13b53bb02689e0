#pragma once

#include "platform/MailComposer.h"

#include <QList>

namespace vorle::test {

/// A mail program that notes what it is given.
class FakeMailComposer final : public MailComposer {
public:
    QString name = QStringLiteral("com.apple.mail");
    bool takes = true;    ///< drafts
    bool composes = true; ///< what it answers to one
    bool opens = true;    ///< what it answers to an address
    QList<MailDraft> drafts;
    QList<QUrl> opened;
    QStringList shown;

    Task<QString> program() override { co_return QString(name); }
    bool takesDrafts(const QString & /*program*/) const override { return takes; }
    Task<bool> compose(MailDraft draft) override {
        drafts += draft;
        co_return bool(composes);
    }
    bool open(const QUrl &address) override {
        opened += address;
        return opens;
    }
    void show(const QStringList &files) override { shown += files; }
};

} // namespace vorle::test
