#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace vorle {

/// Why an agent was not installed. Its description is for the log; people are told in French, by
/// whoever shows it. What the system itself refuses (a full disk) is no SetupError but a
/// std::system_error.
class SetupError final : public std::exception {
public:
    enum class Case { Download, StepFailed, NotSigned, NoNpm, NpmDoesNotRun, UnderWay };

    /// "download failed"
    static SetupError download();
    /// The step's text and " failed".
    static SetupError stepFailed(const QString &step);
    /// "not signed by OpenAI"
    static SetupError notSigned();
    /// "npm not found": where agents come as packages there is no program that takes them.
    static SetupError noNpm();
    /// "npm does not run": there is one, or several, but no Node that runs any of them.
    static SetupError npmDoesNotRun();
    /// "another process installs": it is left to that one.
    static SetupError underWay();

    Case kind() const { return m_case; }
    const QString &description() const { return m_description; }
    /// The description, in UTF-8.
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    SetupError(Case kind, const QString &description);

    Case m_case;
    QString m_description;
    QByteArray m_utf8;
};

} // namespace vorle
