#include "agents/setup/AgentSignIn.h"

#include "agents/AgentError.h"
#include "agents/ProcessRunner.h"
#include "agents/setup/LoginAddress.h"
#include "agents/setup/WorkFolder.h"

#include <QFile>
#include <QFileInfo>

#include <system_error>

namespace vorle {

namespace {

QStringList loginArguments(AgentKind kind) {
    return kind == AgentKind::Claude ? QStringList{QStringLiteral("auth"), QStringLiteral("login")}
                                     : QStringList{QStringLiteral("login")};
}

/// Stands where a login looks for a browser, and notes what it is to open.
class BrowserStandIn {
public:
    /// @throws std::system_error
    BrowserStandIn(const WorkFolder &work, QProcessEnvironment &variables)
        : m_pages(work.file(QStringLiteral("pages"))) {
#if defined(Q_OS_LINUX)
        const QString program = work.file(QStringLiteral("xdg-open"));
        QFile file(program);
        const QByteArray script = "#!/bin/sh\n# vorle opens the page: its browser outlives this "
                                  "login.\nprintf '%s\\n' \"$1\" >> \"$VORLE_PAGES\"\n";
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) ||
            file.write(script) != script.size() || !file.flush() ||
            !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
            throw std::system_error(EIO, std::generic_category(), program.toStdString());
        }
        file.close();
        if (!QFileInfo(program).isExecutable()) {
            return; // nothing runs from this file system: the login's own browser is better
        }
        const QString path = QStringLiteral("PATH");
        variables.insert(path, work.path() + u':' + variables.value(path));
        variables.insert(QStringLiteral("BROWSER"), program);
        variables.insert(QStringLiteral("VORLE_PAGES"), m_pages);
#else
        static_cast<void>(variables); // the system opens pages, in a process of its own
#endif
    }

    /// The first page that was to be opened.
    std::optional<QString> page() const {
        constexpr qint64 longest = 16'384;
        QFile file(m_pages);
        const QByteArray line =
            file.open(QIODevice::ReadOnly) ? file.readLine(longest) : QByteArray();
        return line.endsWith('\n') ? std::optional(QString::fromUtf8(line)) : std::nullopt;
    }

private:
    QString m_pages;
};

/// Finds the page of one login, and shows it once.
class LoginPage {
public:
    LoginPage(AgentKind kind, const BrowserStandIn &browser, ShowPage show)
        : m_kind(kind), m_browser(browser), m_show(std::move(show)) {}

    void hear(QByteArrayView output, QByteArrayView error) {
        if (m_shown) {
            return;
        }
        if (m_kind == AgentKind::Claude) {
            showOnce(m_browser.page());
            return;
        }
        // Each on its own: a piece of one may come in the middle of the other's address.
        showOnce(m_output.feed(output));
        showOnce(m_error.feed(error));
    }
    /// The login has ended, perhaps just after it told of a page that it does not wait for.
    void finish() {
        if (m_shown || m_kind == AgentKind::Claude) {
            return;
        }
        showOnce(m_output.finish());
        showOnce(m_error.finish());
    }

private:
    void showOnce(const std::optional<QString> &address) {
        const auto link = address ? WebLink::from(*address, WebLink::Giver::User) : std::nullopt;
        if (link && !m_shown) {
            m_shown = true;
            m_show(*link);
        }
    }

    AgentKind m_kind;
    const BrowserStandIn &m_browser;
    ShowPage m_show;
    LoginAddress m_output;
    LoginAddress m_error;
    bool m_shown = false;
};

} // namespace

Task<bool> signInAgent(const AgentLocator &agents, AgentKind kind, ShowPage show,
                       std::chrono::milliseconds limit, CancelToken cancel) {
    const auto executable = agents.locate(kind);
    if (!executable) {
        throw AgentError::notFound(displayName(kind));
    }
    const WorkFolder work;
    ProcessRequest login;
    login.executable = *executable;
    login.arguments = loginArguments(kind);
    login.timeout = limit;
    login.environment = agents.environment().childVariables(*executable);
    login.workingDirectory = work.path();
    const BrowserStandIn browser(work, login.environment);
    LoginPage page(kind, browser, std::move(show));
    login.heard = [&page](QByteArrayView output, QByteArrayView error) {
        page.hear(output, error);
    };
    co_await runProcess(std::move(login), cancel);
    page.finish();
    co_return agents.readiness(kind) == AgentReadiness::Ready;
}

} // namespace vorle
