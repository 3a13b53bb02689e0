#include "desktop/BrowserTab.h"

#include "base/Text.h"
#include "platform/FrontBrowser.h"
#include "platform/Pasteboard.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace vorle {

namespace {

constexpr qsizetype tabTitleCharacters = 300;

struct Browser {
    QStringView identifier;
    QStringView name;
    QStringView script; ///< gives the title and the address on two lines; empty: it cannot be asked
};
constexpr std::array browsers{
    Browser{
        u"com.apple.Safari", u"Safari",
        uR"(tell application "Safari" to return (name of current tab of front window) & "\n" & (URL of current tab of front window))"},
    Browser{
        u"com.google.Chrome", u"Google Chrome",
        uR"(tell application "Google Chrome" to return (title of active tab of front window) & "\n" & (URL of active tab of front window))"},
    Browser{
        u"company.thebrowser.Browser", u"Arc",
        uR"(tell application "Arc" to return (title of active tab of front window) & "\n" & (URL of active tab of front window))"},
    Browser{u"org.mozilla.firefox", u"Firefox", u""},
};

const Browser *browserOf(const QString &identifier) {
    const auto found = std::ranges::find(browsers, QStringView(identifier), &Browser::identifier);
    return found == browsers.end() ? nullptr : &*found;
}

/// The title and the address on two lines, as a page; nothing where that is no web address.
std::optional<BrowserTab::Page> pageIn(const QString &answer, const Browser &browser) {
    const qsizetype lineBreak = answer.indexOf(u'\n');
    const auto link = lineBreak < 0
                          ? std::nullopt
                          : WebLink::from(answer.sliced(lineBreak + 1), WebLink::Giver::User);
    if (!link) {
        return std::nullopt;
    }
    return BrowserTab::Page{clampedLine(answer.first(lineBreak), tabTitleCharacters), link->text(),
                            browser.name.toString()};
}

std::optional<BrowserTab::Page> copiedPage(const QString &text) {
    const auto link =
        text.startsWith(u"http") ? WebLink::from(text, WebLink::Giver::User) : std::nullopt;
    if (!link) {
        return std::nullopt;
    }
    return BrowserTab::Page{
        {}, link->text(), QCoreApplication::translate("BrowserTab", "Presse-papiers")};
}

} // namespace

QString BrowserTab::frontApp() const {
    return m_browser != nullptr ? m_browser->frontApp() : QString();
}

BrowserTab::Proposal BrowserTab::readPasteboard(const QString &frontApp) const {
    if (m_browser == nullptr) {
        return {copiedPage(m_pasteboard.text()), {}};
    }
    const Browser *browser = browserOf(frontApp);
    if (browser == nullptr || !browser->script.isEmpty()) {
        return {};
    }
    return {copiedPage(m_pasteboard.text()),
            QCoreApplication::translate("BrowserTab",
                                        "Firefox ne laisse pas lire l’onglet : copie le lien (⌘L "
                                        "puis ⌘C), je le proposerai ici.")};
}

Task<BrowserTab::Proposal> BrowserTab::read(QString frontApp) const {
    const Browser *browser = browserOf(frontApp);
    if (m_browser == nullptr || browser == nullptr || browser->script.isEmpty()) {
        co_return readPasteboard(frontApp);
    }
    const auto answer = co_await m_browser->answer(browser->script.toString());
    co_return Proposal{answer ? pageIn(*answer, *browser) : std::nullopt, {}};
}

} // namespace vorle
