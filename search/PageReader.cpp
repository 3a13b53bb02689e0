#include "search/PageReader.h"

#include "search/Browser.h"
#include "search/Links.h"

#include <QPointer>

#include <map>

namespace vorle {

namespace {

constexpr int readsAtOnce = 16;
constexpr int readsAtOncePerHost = 4;

} // namespace

/// What reads share. They hold it, so that it outlives the last of them.
class PageReader::Places {
public:
    Places(HttpClient &http, std::chrono::milliseconds deadline)
        : m_http(&http), m_deadline(deadline), m_all(readsAtOnce) {}

    static Task<ReadPage> read(std::shared_ptr<Places> places, QString link, CancelToken cancel,
                               Reach reach);

private:
    static Task<HttpResponse> fetch(std::shared_ptr<Places> places, HttpRequest request,
                                    CancelToken cancel);
    std::shared_ptr<Gate> gateOf(const QString &host);

    QPointer<HttpClient> m_http;
    std::chrono::milliseconds m_deadline;
    Gate m_all;
    std::map<QString, std::weak_ptr<Gate>> m_byHost;
};

std::shared_ptr<Gate> PageReader::Places::gateOf(const QString &host) {
    std::erase_if(m_byHost, [](const auto &entry) { return entry.second.expired(); });
    auto &known = m_byHost[host];
    auto gate = known.lock();
    if (!gate) {
        gate = std::make_shared<Gate>(readsAtOncePerHost);
        known = gate;
    }
    return gate;
}

Task<HttpResponse> PageReader::Places::fetch(std::shared_ptr<Places> places, HttpRequest request,
                                             CancelToken cancel) {
    // The host's place first: those who wait for it hold no place another host could use.
    const auto gate = places->gateOf(request.url.host());
    const auto ofHost = co_await gate->enter(cancel);
    const auto ofAll = co_await places->m_all.enter(cancel);
    if (places->m_http.isNull()) {
        co_return HttpResponse{};
    }
    co_return co_await places->m_http->get(std::move(request), cancel);
}

Task<ReadPage> PageReader::Places::read(std::shared_ptr<Places> places, QString link,
                                        CancelToken cancel, Reach reach) {
    cancel.throwIfCancelled();
    ReadPage page;
    HttpRequest request;
    request.url = readableLink(link);
    if (request.url.isEmpty()) {
        page.finalUrl = link;
        co_return page;
    }
    page.finalUrl = request.url.toString(QUrl::FullyEncoded);
    request.userAgent = browserUserAgent;
    request.acceptLanguage = "en";
    request.maxBytes = pageByteLimit;
    request.deadline = places->m_deadline;
    request.reach = reach;
    const HttpResponse response = co_await fetch(places, std::move(request), cancel);
    page.outcome = response.outcome;
    page.status = response.status;
    if (!response.ok()) {
        co_return page;
    }
    page.finalUrl = response.url.toString(QUrl::FullyEncoded);
    static_cast<PageText &>(page) = co_await onPool([response] {
        return extractPage(response.body, response.contentType,
                           response.truncated ? PageExtent::Cut : PageExtent::Whole);
    });
    cancel.throwIfCancelled();
    co_return page;
}

PageReader::PageReader(HttpClient &http, std::chrono::milliseconds deadline)
    : m_places(std::make_shared<Places>(http, deadline)) {}

PageReader::~PageReader() = default;

Task<ReadPage> PageReader::read(QString link, CancelToken cancel, Reach reach) {
    return Places::read(m_places, std::move(link), std::move(cancel), reach);
}

} // namespace vorle
