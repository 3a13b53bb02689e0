#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace vorle {

/// The addresses of ours that the system hands to the running program, as a Mac does. Main thread;
/// needs an application object.
class AddressEvents final : public QObject {
    Q_OBJECT
public:
    AddressEvents();

    /// `opened` is called for each from now on; what came before, with the last of it.
    void follow(std::function<void(const QString &)> opened);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void(const QString &)> m_opened;
    std::optional<QString> m_waiting;
};

} // namespace vorle
