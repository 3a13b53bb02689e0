#include "search/web/PageReader.h"

#include "base/Text.h"
#include "search/web/Browser.h"
#include "search/web/Links.h"
#include "search/web/PageTwin.h"

#include <QPointer>

#include <map>

namespace vorle {

namespace {

constexpr int maxConcurrentReads = 16;
constexpr int readsAtOncePerHost = 4;

/// What is kept of a page is shown one day.
void withoutHiddenSigns(PageText &page) {
    for (auto *line : {&page.title, &page.description}) {
        if (line->has_value()) {
            *line = clampedLine(**line, maxLineCharacters);
            if ((*line)->isEmpty()) {
                line->reset();
            }
        }
    }
    page.text = withoutHidden(QString::fromUtf8(page.text)).toUtf8();
}

} // namespace

/// What reads share. They hold it, so that it outlives the last of them.
class PageReader::Slots {
public:
    Slots(HttpClient &http, std::chrono::milliseconds deadline, Route route)
        : m_http(&http)
        , m_deadline(deadline)
        , m_route(std::move(route))
        , m_all(maxConcurrentReads) {}

    static Task<ReadPage> read(std::shared_ptr<Slots> slots, QString link, CancelToken cancel,
                               Reach reach);

private:
    using Extract = std::function<PageText(const HttpResponse &)>;

    static Task<ReadPage> readAt(std::shared_ptr<Slots> slots, QUrl address, Extract extract,
                                 CancelToken cancel, Reach reach);
    static Task<ReadPage> readTwin(std::shared_ptr<Slots> slots, QUrl link, PageTwin twin,
                                   CancelToken cancel);
    static Task<HttpResponse> fetch(std::shared_ptr<Slots> slots, HttpRequest request,
                                    CancelToken cancel);
    std::shared_ptr<Gate> gateOf(const QString &host);

    QPointer<HttpClient> m_http;
    std::chrono::milliseconds m_deadline;
    Route m_route;
    Gate m_all;
    std::map<QString, std::weak_ptr<Gate>> m_byHost;
};

std::shared_ptr<Gate> PageReader::Slots::gateOf(const QString &host) {
    std::erase_if(m_byHost, [](const auto &entry) { return entry.second.expired(); });
    auto &known = m_byHost[host];
    auto gate = known.lock();
    if (!gate) {
        gate = std::make_shared<Gate>(readsAtOncePerHost);
        known = gate;
    }
    return gate;
}

Task<HttpResponse> PageReader::Slots::fetch(std::shared_ptr<Slots> slots, HttpRequest request,
                                            CancelToken cancel) {
    // The host's slot first: those who wait for it hold no slot that another host could use.
    const auto gate = slots->gateOf(request.url.host());
    const auto ofHost = co_await gate->enter(cancel);
    const auto ofAll = co_await slots->m_all.enter(cancel);
    if (slots->m_http.isNull()) {
        co_return HttpResponse{};
    }
    co_return co_await slots->m_http->get(std::move(request), cancel);
}

/// One GET, and what `extract` makes of the answer.
Task<ReadPage> PageReader::Slots::readAt(std::shared_ptr<Slots> slots, QUrl address,
                                         Extract extract, CancelToken cancel, Reach reach) {
    ReadPage page;
    HttpRequest request;
    request.url = slots->m_route ? slots->m_route(address) : address;
    page.finalUrl = request.url.toString(QUrl::FullyEncoded);
    request.userAgent = browserUserAgent;
    request.acceptLanguage = "en";
    request.maxBytes = maxPageBytes;
    request.deadline = slots->m_deadline;
    request.reach = reach;
    const HttpResponse response = co_await fetch(slots, std::move(request), cancel);
    page.outcome = response.outcome;
    page.status = response.status;
    if (!response.ok()) {
        co_return page;
    }
    page.finalUrl = response.url.toString(QUrl::FullyEncoded);
    static_cast<PageText &>(page) = co_await onPool([response, extract] {
        PageText text = extract(response);
        withoutHiddenSigns(text);
        return text;
    });
    cancel.throwIfCancelled();
    co_return page;
}

/// The page's twin, under the page's own address.
Task<ReadPage> PageReader::Slots::readTwin(std::shared_ptr<Slots> slots, QUrl link, PageTwin twin,
                                           CancelToken cancel) {
    const auto extract = [](PageText (*reads)(const QByteArray &)) {
        return [reads](const HttpResponse &response) {
            return response.truncated ? PageText() : reads(response.body);
        };
    };
    ReadPage page =
        co_await readAt(slots, twin.address, extract(twin.read), cancel, Reach::PublicOnly);
    const auto shorter =
        page.status == 200 && page.level == ReadLevel::None ? shorterTwin(link) : std::nullopt;
    if (shorter) {
        page = co_await readAt(slots, shorter->address, extract(shorter->read), cancel,
                               Reach::PublicOnly);
    }
    page.finalUrl = link.toString(QUrl::FullyEncoded);
    co_return page;
}

Task<ReadPage> PageReader::Slots::read(std::shared_ptr<Slots> slots, QString link,
                                       CancelToken cancel, Reach reach) {
    cancel.throwIfCancelled();
    const QUrl address = readableLink(link);
    if (address.isEmpty()) {
        ReadPage page;
        page.finalUrl = link;
        co_return page;
    }
    const auto twin = twinOf(address);
    if (twin && twin->use == PageTwin::Use::Instead) {
        ReadPage told = co_await readTwin(slots, address, *twin, cancel);
        if (told.level != ReadLevel::None) {
            co_return told;
        }
    }
    const auto extract = [](const HttpResponse &response) {
        return extractPage(response.body, response.contentType,
                           response.truncated ? PageExtent::Cut : PageExtent::Whole);
    };
    ReadPage page = co_await readAt(slots, address, extract, cancel, reach);
    // A question about cookies is no page about the video.
    const bool unread = page.level == ReadLevel::None || !namesOnePage(page.finalUrl);
    if (twin && twin->use == PageTwin::Use::Unread && unread) {
        ReadPage told = co_await readTwin(slots, address, *twin, cancel);
        co_return told.level == ReadLevel::None ? page : told;
    }
    co_return page;
}

PageReader::PageReader(HttpClient &http, std::chrono::milliseconds deadline, Route route)
    : m_slots(std::make_shared<Slots>(http, deadline, std::move(route))) {}

PageReader::~PageReader() = default;

Task<ReadPage> PageReader::read(QString link, CancelToken cancel, Reach reach) {
    return Slots::read(m_slots, std::move(link), std::move(cancel), reach);
}

} // namespace vorle
