#include "platform/macos/SparkleEngine.h"

#include "base/French.h"
#include "base/Log.h"

#include <QHostAddress>
#include <QUrl>

#include <optional>

#import <Foundation/Foundation.h>
#import <Sparkle/Sparkle.h>

namespace {

using vorle::UpdateDriver;

QString textOf(NSString *text) {
    return text == nil ? QString() : QString::fromUtf8([text UTF8String]);
}

QString textOf(NSError *error) {
    return error == nil ? QString() : textOf(error.localizedDescription);
}

constexpr NSUInteger mostNotes = 16000;

/// Those that stand in the feed itself. Like all notes they are shown as they stand: a page is not.
QString notesOf(SUAppcastItem *item) {
    const bool isText = [item.itemDescriptionFormat isEqualToString:@"plain-text"] ||
                        [item.itemDescriptionFormat isEqualToString:@"markdown"];
    return isText ? textOf(item.itemDescription).left(mostNotes) : QString();
}

/// Those that it leads to.
QString notesOf(SPUDownloadData *downloaded) {
    if (![downloaded.MIMEType isEqualToString:@"text/plain"] &&
        ![downloaded.MIMEType isEqualToString:@"text/markdown"]) {
        return {};
    }
    NSData *data = downloaded.data;
    return QString::fromUtf8(
        static_cast<const char *>(data.bytes),
        static_cast<qsizetype>(data.length < mostNotes ? data.length : mostNotes));
}

/// The feed that is asked in the place of the bundle's; an empty one where what is set is none.
std::optional<QUrl> otherFeed() {
    const QString set = qEnvironmentVariable("VORLE_UPDATE_FEED");
    if (set.isEmpty()) {
        return std::nullopt;
    }
    const QUrl feed(set, QUrl::StrictMode);
    const bool isHere = feed.host() == u"localhost" || QHostAddress(feed.host()).isLoopback();
    const bool isFeed = feed.scheme() == u"https" || (feed.scheme() == u"http" && isHere);
    return isFeed && !feed.host().isEmpty() && feed.userInfo().isEmpty() ? feed : QUrl();
}

std::function<void()> callOf(void (^block)(void)) {
    void (^kept)(void) = [block copy];
    return [kept] {
        if (kept != nil) {
            kept();
        }
    };
}

UpdateDriver::Reply replyOf(void (^block)(SPUUserUpdateChoice)) {
    void (^kept)(SPUUserUpdateChoice) = [block copy];
    return [kept](UpdateDriver::Choice choice) {
        switch (choice) {
        case UpdateDriver::Choice::Install:
            return kept(SPUUserUpdateChoiceInstall);
        case UpdateDriver::Choice::Skip:
            return kept(SPUUserUpdateChoiceSkip);
        case UpdateDriver::Choice::Dismiss:
            return kept(SPUUserUpdateChoiceDismiss);
        }
    };
}

} // namespace

/// Hands each call on; `driver` is null once the program leaves.
@interface VorleUserDriver : NSObject <SPUUserDriver, SPUUpdaterDelegate>
@property(nonatomic, assign) UpdateDriver *driver;
@end

@implementation VorleUserDriver

- (NSString *)feedURLStringForUpdater:(SPUUpdater *)updater {
    const auto feed = otherFeed();
    return feed && !feed->isEmpty() ? [NSString stringWithUTF8String:feed->toEncoded().constData()]
                                    : nil;
}

- (void)showUpdatePermissionRequest:(SPUUpdatePermissionRequest *)request
                              reply:(void (^)(SUUpdatePermissionResponse *))reply {
    void (^kept)(SUUpdatePermissionResponse *) = [reply copy];
    if (_driver != nullptr) {
        _driver->showPermissionRequest([kept](bool daily) {
            kept([[SUUpdatePermissionResponse alloc] initWithAutomaticUpdateChecks:daily
                                                                 sendSystemProfile:NO]);
        });
    }
}

- (void)showUserInitiatedUpdateCheckWithCancellation:(void (^)(void))cancellation {
    if (_driver != nullptr) {
        _driver->showUserInitiatedCheck(callOf(cancellation));
    }
}

- (void)showUpdateFoundWithAppcastItem:(SUAppcastItem *)appcastItem
                                 state:(SPUUserUpdateState *)state
                                 reply:(void (^)(SPUUserUpdateChoice))reply {
    if (_driver != nullptr) {
        _driver->showFound({textOf(appcastItem.displayVersionString), notesOf(appcastItem),
                            state.stage != SPUUserUpdateStageNotDownloaded},
                           replyOf(reply));
    }
}

- (void)showUpdateReleaseNotesWithDownloadData:(SPUDownloadData *)downloadData {
    if (_driver != nullptr) {
        _driver->showReleaseNotes(notesOf(downloadData));
    }
}

- (void)showUpdateReleaseNotesFailedToDownloadWithError:(NSError *)error {
    if (_driver != nullptr) {
        _driver->showReleaseNotesFailed(textOf(error));
    }
}

- (void)showUpdateNotFoundWithError:(NSError *)error
                    acknowledgement:(void (^)(void))acknowledgement {
    if (_driver != nullptr) {
        _driver->showNotFound(textOf(error), callOf(acknowledgement));
    }
}

- (void)showUpdaterError:(NSError *)error acknowledgement:(void (^)(void))acknowledgement {
    if (_driver != nullptr) {
        _driver->showError(textOf(error), callOf(acknowledgement));
    }
}

- (void)showDownloadInitiatedWithCancellation:(void (^)(void))cancellation {
    if (_driver != nullptr) {
        _driver->showDownloadInitiated(callOf(cancellation));
    }
}

- (void)showDownloadDidReceiveExpectedContentLength:(uint64_t)expectedContentLength {
    if (_driver != nullptr) {
        _driver->showExpectedBytes(static_cast<qint64>(expectedContentLength));
    }
}

- (void)showDownloadDidReceiveDataOfLength:(uint64_t)length {
    if (_driver != nullptr) {
        _driver->showReceivedBytes(static_cast<qint64>(length));
    }
}

- (void)showDownloadDidStartExtractingUpdate {
    if (_driver != nullptr) {
        _driver->showExtractionStarted();
    }
}

- (void)showExtractionReceivedProgress:(double)progress {
    if (_driver != nullptr) {
        _driver->showExtractionProgress(progress);
    }
}

- (void)showReadyToInstallAndRelaunch:(void (^)(SPUUserUpdateChoice))reply {
    if (_driver != nullptr) {
        _driver->showReady(replyOf(reply));
    }
}

- (void)showInstallingUpdateWithApplicationTerminated:(BOOL)applicationTerminated
                          retryTerminatingApplication:(void (^)(void))retryTerminatingApplication {
    // The system has asked the program to end already; asking again is for when it did not.
    void (^again)(void) = [retryTerminatingApplication copy];
    if (_driver != nullptr) {
        _driver->showInstalling(applicationTerminated, callOf(again));
    }
}

- (void)showUpdateInstalledAndRelaunched:(BOOL)relaunched
                         acknowledgement:(void (^)(void))acknowledgement {
    if (_driver != nullptr) {
        _driver->showInstalled(relaunched, callOf(acknowledgement));
    }
}

- (void)showUpdateInFocus {
    if (_driver != nullptr) {
        _driver->showInFocus();
    }
}

- (void)dismissUpdateInstallation {
    if (_driver != nullptr) {
        _driver->dismissed();
    }
}

@end

namespace vorle {

struct SparkleEngine::Parts {
    VorleUserDriver *driver = [[VorleUserDriver alloc] init];
    SPUUpdater *updater = nil; // once it has started
    std::optional<QString> obstacle;
};

SparkleEngine::SparkleEngine() : m_parts(std::make_unique<Parts>()) {}

SparkleEngine::~SparkleEngine() { m_parts->driver.driver = nullptr; }

void SparkleEngine::start(UpdateDriver &driver) {
    m_parts->driver.driver = &driver;
    if (const auto feed = otherFeed(); feed && feed->isEmpty()) { // the bundle's is not meant
        m_parts->obstacle = French::tr("Cette vorle ne sait pas où chercher ses mises à jour.");
        return;
    }
    NSBundle *bundle = [NSBundle mainBundle];
    SPUUpdater *updater = [[SPUUpdater alloc] initWithHostBundle:bundle
                                               applicationBundle:bundle
                                                      userDriver:m_parts->driver
                                                        delegate:m_parts->driver];
    NSError *error = nil;
    if (![updater startUpdater:&error]) { // no feed, no key, no bundle
        logLine(QStringLiteral("updates: ") + textOf(error));
        m_parts->obstacle = French::tr("Cette vorle n’a pas été installée pour se mettre à jour.");
        return;
    }
    constexpr NSTimeInterval day = 24.0 * 3600;
    updater.updateCheckInterval = day;
    m_parts->updater = updater;
}

std::optional<QString> SparkleEngine::obstacle() const { return m_parts->obstacle; }

void SparkleEngine::check() { [m_parts->updater checkForUpdates]; }

bool SparkleEngine::checksByItself() const {
    return m_parts->updater.automaticallyChecksForUpdates;
}

void SparkleEngine::setChecksByItself(bool on) {
    m_parts->updater.automaticallyChecksForUpdates = on;
}

bool SparkleEngine::installsByItself() const {
    return m_parts->updater.automaticallyDownloadsUpdates;
}

void SparkleEngine::setInstallsByItself(bool on) {
    m_parts->updater.automaticallyDownloadsUpdates = on;
}

void SparkleEngine::stop(std::function<void()> ended) {
    m_parts->driver.driver = nullptr; // what it does from now on is for the end of the program
    ended();
}

} // namespace vorle
