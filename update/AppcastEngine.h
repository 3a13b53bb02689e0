#pragma once

#include "base/Async.h"
#include "base/Clock.h"
#include "base/HttpClient.h"
#include "core/Preferences.h"
#include "platform/UpdateEngine.h"
#include "update/Installation.h"
#include "update/ReleaseFetch.h"
#include "update/UpdateConfig.h"

#include <QDateTime>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace vorle {

/// The engine of systems that bring none: reads the feed, fetches, checks and unpacks a version
/// beside the one in use, and puts it in its place when the program ends (see
/// InstallationLayout.h). Looks once a day where the person allowed that, or has versions installed
/// as they come, and never otherwise but when they ask. Main thread; `stop()` has to have ended
/// before it goes.
class AppcastEngine final : public QObject, public UpdateEngine {
    Q_OBJECT
public:
    struct Parts {
        Preferences &preferences;
        const Clock &clock;
        UpdateConfig config;
        QString program;            ///< the one that runs, by its path
        QString version;            ///< its version
        std::function<void()> quit; ///< has the program end, keeping what it has
        /// Whether the system's packages hold a program.
        std::function<Task<bool>(QString program, CancelToken cancel)> packaged = isPackaged;
    };
    explicit AppcastEngine(Parts parts, QObject *parent = nullptr);
    ~AppcastEngine() override;

    void start(UpdateDriver &driver) override;
    std::optional<QString> obstacle() const override;
    void check() override;
    void lookAtClock() override;
    bool checksByItself() const override;
    void setChecksByItself(bool on) override;
    bool installsByItself() const override;
    void setInstallsByItself(bool on) override;
    void stop(std::function<void()> ended) override;
    void confirmStart() override;
    void finish(std::function<void(std::optional<QString> successor)> done) override;

    /// Ends the program, and has what is ready start in its place: for a command that installed.
    void relaunch();

private:
    enum class Wish { Person, Nobody };
    /// What an answer comes to, for a coroutine that waits for it.
    struct Answer;

    void begin(Wish wish);
    Task<> run(CancelToken cancel);
    Task<> update(CancelToken cancel);
    Task<std::optional<Release>> look(CancelToken cancel);
    Task<> fetch(Release release, CancelToken cancel);
    Task<UpdateDriver::Choice> choiceFor(Release release, CancelToken cancel);
    Task<> confirm();
    Task<> leave(std::function<void(std::optional<QString>)> done);
    static Task<> tellEnd(TaskGroup *work, std::function<void()> ended);
    void tellOfLastTime();
    void tellChecking();
    void askForPermission();
    void fail(const QString &text);
    void tellReady();
    bool isPassedOver(const QString &version) const;

    Parts m_parts;
    std::optional<Installation> m_installation;
    UpdateDriver *m_driver = nullptr;
    std::unique_ptr<HttpClient> m_http; // made for the first request
    CancelSource m_cancel;
    TaskGroup m_work;
    Wish m_wish = Wish::Nobody;       // of what is under way
    std::optional<QDateTime> m_asked; // the feed, which has not answered since
    std::optional<QString> m_toldReady;
    bool m_underWay = false;
    bool m_isLooking = false;   // it is not known yet whether there is a newer version
    bool m_again = false;       // the person asked again while what they stopped was ending
    bool m_isPackaged = false;  // as was found out by a check
    bool m_isToConfirm = false; // it could not yet
    bool m_isConfirming = false;
    bool m_stopped = false;
    bool m_relaunch = false;
};

/// What is said of a program that the system's packages hold, in French.
QString packagedText();

/// Why a program cannot be updated from where it lies, or with what was built into it, as a French
/// sentence; nothing when it can.
std::optional<QString> updateObstacle(const UpdateConfig &config, const QString &program);

} // namespace vorle
