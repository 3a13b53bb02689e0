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
constexpr int maxReadsPerHost = 4;

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
class PageReader::Shared {
public:
    Shared(HttpClient &http, std::chrono::milliseconds deadline, Route route)
        : m_http(&http)
        , m_deadline(deadline)
        , m_route(std::move(route))
        , m_all(maxConcurrentReads) {}

    static Task<ReadPage> read(std::shared_ptr<Shared> shared, QString link, CancelToken cancel,
                               Reach reach);

private:
    using Extract = std::function<PageText(const HttpResponse &)>;

    static Task<ReadPage> readAt(std::shared_ptr<Shared> shared, QUrl address, Extract extract,
                                 CancelToken cancel, Reach reach);
    static Task<ReadPage> readTwin(std::shared_ptr<Shared> shared, QUrl link, PageTwin twin,
                                   CancelToken cancel);
    static Task<HttpResponse> fetch(std::shared_ptr<Shared> shared, HttpRequest request,
                                    CancelToken cancel);
    std::shared_ptr<Gate> gateOf(const QString &host);

    QPointer<HttpClient> m_http;
    std::chrono::milliseconds m_deadline;
    Route m_route;
    Gate m_all;
    std::map<QString, std::weak_ptr<Gate>> m_byHost;
};

std::shared_ptr<Gate> PageReader::Shared::gateOf(const QString &host) {
    std::erase_if(m_byHost, [](const auto &entry) { return entry.second.expired(); });
    auto &known = m_byHost[host];
    auto gate = known.lock();
    if (!gate) {
        gate = std::make_shared<Gate>(maxReadsPerHost);
        known = gate;
    }
    return gate;
}

Task<HttpResponse> PageReader::Shared::fetch(std::shared_ptr<Shared> shared, HttpRequest request,
                                             CancelToken cancel) {
    // The host's permit first: those who wait for it hold no permit that another host could use.
    const auto gate = shared->gateOf(request.url.host());
    const auto ofHost = co_await gate->enter(cancel);
    const auto ofAll = co_await shared->m_all.enter(cancel);
    if (shared->m_http.isNull()) {
        co_return HttpResponse{};
    }
    co_return co_await shared->m_http->get(std::move(request), cancel);
}

/// One GET, and what `extract` makes of the answer.
Task<ReadPage> PageReader::Shared::readAt(std::shared_ptr<Shared> shared, QUrl address,
                                          Extract extract, CancelToken cancel, Reach reach) {
    ReadPage page;
    HttpRequest request;
    request.url = shared->m_route ? shared->m_route(address) : address;
    page.finalUrl = request.url.toString(QUrl::FullyEncoded);
    request.userAgent = browserUserAgent;
    request.acceptLanguage = "en";
    request.maxBytes = maxPageBytes;
    request.deadline = shared->m_deadline;
    request.reach = reach;
    const HttpResponse response = co_await fetch(shared, std::move(request), cancel);
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
Task<ReadPage> PageReader::Shared::readTwin(std::shared_ptr<Shared> shared, QUrl link,
                                            PageTwin twin, CancelToken cancel) {
    const auto extract = [](PageText (*reads)(const QByteArray &)) {
        return [reads](const HttpResponse &response) {
            return response.truncated ? PageText() : reads(response.body);
        };
    };
    ReadPage page =
        co_await readAt(shared, twin.address, extract(twin.read), cancel, Reach::PublicOnly);
    const auto shorter =
        page.status == 200 && page.level == ReadLevel::None ? shorterTwin(link) : std::nullopt;
    if (shorter) {
        page = co_await readAt(shared, shorter->address, extract(shorter->read), cancel,
                               Reach::PublicOnly);
    }
    page.finalUrl = link.toString(QUrl::FullyEncoded);
    co_return page;
}

Task<ReadPage> PageReader::Shared::read(std::shared_ptr<Shared> shared, QString link,
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
        ReadPage told = co_await readTwin(shared, address, *twin, cancel);
        if (told.level != ReadLevel::None) {
            co_return told;
        }
    }
    const auto extract = [](const HttpResponse &response) {
        return extractPage(response.body, response.contentType,
                           response.truncated ? PageExtent::Cut : PageExtent::Whole);
    };
    ReadPage page = co_await readAt(shared, address, extract, cancel, reach);
    // A question about cookies is no page about the video.
    const bool unread = page.level == ReadLevel::None || !namesOnePage(page.finalUrl);
    if (twin && twin->use == PageTwin::Use::Unread && unread) {
        ReadPage told = co_await readTwin(shared, address, *twin, cancel);
        co_return told.level == ReadLevel::None ? page : told;
    }
    co_return page;
}

PageReader::PageReader(HttpClient &http, std::chrono::milliseconds deadline, Route route)
    : m_shared(std::make_shared<Shared>(http, deadline, std::move(route))) {}

PageReader::~PageReader() = default;

Task<ReadPage> PageReader::read(QString link, CancelToken cancel, Reach reach) {
    return Shared::read(m_shared, std::move(link), std::move(cancel), reach);
}

} // namespace vorle
