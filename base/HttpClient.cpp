#include "base/HttpClient.h"

#include "base/AddressRules.h"
#include "base/MainThread.h"
#include "base/SocketWatch.h"
#include "base/WebLink.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <curl/curl.h>

#include <fcntl.h>
#include <map>
#include <sys/socket.h>

namespace vorle {

namespace {

constexpr int maxRedirects = 5;
constexpr qint64 maxHeaderBytes = 256 * 1024;
/// A redirect's own body is passed over, and a page that says no is short; beyond this it is an
/// attack.
constexpr qint64 maxRedirectBytes = 64 * 1024;

using Outcome = HttpResponse::Outcome;

void startCurlOnce() {
    [[maybe_unused]] static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
}

bool isThisMachine(const QString &host) {
    const QHostAddress address(host);
    return address.isNull() ? nameKind(host) == NameKind::Loopback
                            : addressKind(address) == AddressKind::Loopback;
}

} // namespace

class HttpClient::Private {
public:
    explicit Private(bool allowLoopback);
    ~Private();
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;

    struct Exchange;
    void start(const std::shared_ptr<Exchange> &exchange);
    /// Ends an exchange wherever it stands; its curl handle is gone on return.
    void end(Exchange &exchange, Outcome outcome);

private:
    void configure(Exchange &exchange);
    void send(Exchange &exchange, const QUrl &url);
    bool mayAsk(const Exchange &exchange, const QUrl &url) const;
    void act(curl_socket_t socket, int events);
    void collectEnded();
    void conclude(Exchange &exchange, CURLcode result);
    void watch(curl_socket_t socket, int what);

    CURLM *m_multi;
    QTimer m_timer;
    SocketWatch m_watched{[this](int socket, SocketWatch::Ready ready) {
        act(socket, ready == SocketWatch::Ready::Read ? CURL_CSELECT_IN : CURL_CSELECT_OUT);
    }};
    std::map<CURL *, std::shared_ptr<Exchange>> m_running;
    bool m_allowLoopback;
};

/// One request with its redirects. Shared by the client, while it runs, and the coroutine that
/// waits for it, so that either may go first.
struct HttpClient::Private::Exchange {
    HttpRequest request;
    HttpResponse response;
    OneShot ended;
    Private *owner = nullptr; ///< null when not under way
    CURL *easy = nullptr;
    curl_slist *headers = nullptr;
    QDeadlineTimer deadline;
    int redirects = 0;
    qint64 headerBytes = 0;
    qint64 redirectBytes = 0;
    qint64 sunk = 0; // bytes that the request's sink took
    bool addressRefused = false;

    bool mayReach(const QHostAddress &address) const {
        if (request.reach == Reach::Anywhere) {
            return true;
        }
        const AddressKind kind = addressKind(address);
        return kind == AddressKind::Public ||
               (kind == AddressKind::Loopback && owner->m_allowLoopback);
    }

    bool sink(QByteArrayView piece);
    static curl_socket_t onOpenSocket(void *self, curlsocktype, curl_sockaddr *address);
    static int onReady(void *self, char *remoteIp, char *, int, int);
    static size_t onHeader(char *, size_t size, size_t count, void *self);
    static size_t onBody(char *data, size_t size, size_t count, void *self);
};

curl_socket_t HttpClient::Private::Exchange::onOpenSocket(void *self, curlsocktype,
                                                          curl_sockaddr *address) {
    auto *exchange = static_cast<Exchange *>(self);
    if (!exchange->mayReach(QHostAddress(&address->addr))) {
        exchange->addressRefused = true;
        return CURL_SOCKET_BAD;
    }
    const int socket = ::socket(address->family, address->socktype, address->protocol);
    if (socket >= 0) {
        fcntl(socket, F_SETFD, FD_CLOEXEC); // no child process inherits it
    }
    return socket;
}

/// A connection opened for a request that may go anywhere must not serve one that may not.
int HttpClient::Private::Exchange::onReady(void *self, char *remoteIp, char *, int, int) {
    auto *exchange = static_cast<Exchange *>(self);
    if (!exchange->mayReach(QHostAddress(QString::fromLatin1(remoteIp)))) {
        exchange->addressRefused = true;
        return CURL_PREREQFUNC_ABORT;
    }
    return CURL_PREREQFUNC_OK;
}

size_t HttpClient::Private::Exchange::onHeader(char *, size_t size, size_t count, void *self) {
    auto *exchange = static_cast<Exchange *>(self);
    exchange->headerBytes += static_cast<qint64>(size * count);
    return exchange->headerBytes > maxHeaderBytes ? 0 : size * count;
}

bool HttpClient::Private::Exchange::sink(QByteArrayView piece) {
    curl_off_t length = -1;
    if (sunk == 0 && request.announced &&
        curl_easy_getinfo(easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length) == CURLE_OK &&
        length >= 0) {
        request.announced(length);
    }
    sunk += piece.size();
    return request.sink(piece);
}

size_t HttpClient::Private::Exchange::onBody(char *data, size_t size, size_t count, void *self) {
    auto *exchange = static_cast<Exchange *>(self);
    const auto length = static_cast<qint64>(size * count);
    long status = 0;
    curl_easy_getinfo(exchange->easy, CURLINFO_RESPONSE_CODE, &status);
    if (status >= 300 && status < 400) {
        exchange->redirectBytes += length;
        return exchange->redirectBytes > maxRedirectBytes ? 0 : size * count;
    }
    const HttpRequest &request = exchange->request;
    QByteArray &body = exchange->response.body;
    const bool isSunk = request.sink && status >= 200 && status < 300;
    // Who takes a large body piece by piece has no use for a large page that says no.
    const qint64 most =
        request.sink && !isSunk ? std::min(request.maxBytes, maxRedirectBytes) : request.maxBytes;
    const qint64 room = most - body.size() - exchange->sunk;
    if (!isSunk) {
        body.append(data, std::min(room, length));
    } else if (!exchange->sink({data, std::min(room, length)})) {
        return 0;
    }
    if (length > room) {
        exchange->response.truncated = true;
        return 0; // ends the transfer: the rest is not even received
    }
    return size * count;
}

HttpClient::Private::Private(bool allowLoopback) : m_allowLoopback(allowLoopback) {
    startCurlOnce();
    m_multi = curl_multi_init();
    Q_ASSERT(m_multi != nullptr);
    curl_multi_setopt(
        m_multi, CURLMOPT_SOCKETFUNCTION,
        +[](CURL *, curl_socket_t socket, int what, void *self, void *) -> int {
            static_cast<Private *>(self)->watch(socket, what);
            return 0;
        });
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(
        m_multi, CURLMOPT_TIMERFUNCTION, +[](CURLM *, long milliseconds, void *self) -> int {
            QTimer &timer = static_cast<Private *>(self)->m_timer;
            if (milliseconds < 0) {
                timer.stop();
            } else {
                timer.start(std::chrono::milliseconds(milliseconds));
            }
            return 0;
        });
    curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
}

HttpClient::Private::~Private() {
    while (!m_running.empty()) {
        end(*m_running.begin()->second, Outcome::Failed);
    }
    curl_multi_cleanup(m_multi);
}

bool HttpClient::Private::mayAsk(const Exchange &exchange, const QUrl &url) const {
    if (!WebLink::isWeb(url)) {
        return false;
    }
    const QString host = url.host(QUrl::FullyEncoded);
    if (exchange.request.secureOnly && url.scheme() != u"https" && !isThisMachine(host)) {
        return false;
    }
    switch (exchange.request.reach == Reach::Anywhere ? NameKind::Ordinary : nameKind(host)) {
    case NameKind::Ordinary:
        return true; // the address it leads to is checked when the connection opens
    case NameKind::Loopback:
        return m_allowLoopback;
    case NameKind::LocalNetwork:
        break;
    }
    return false;
}

void HttpClient::Private::start(const std::shared_ptr<Exchange> &exchange) {
    exchange->deadline.setRemainingTime(exchange->request.deadline);
    exchange->easy = curl_easy_init();
    exchange->owner = this;
    m_running.emplace(exchange->easy, exchange);
    configure(*exchange);
    send(*exchange, exchange->request.url);
}

void HttpClient::Private::configure(Exchange &exchange) {
    CURL *easy = exchange.easy;
    curl_easy_setopt(easy, CURLOPT_PRIVATE, &exchange);
    if (curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https") != CURLE_OK) {
        // macOS 13 came with a curl that knows the older spelling alone.
        curl_easy_setopt(easy, CURLOPT_PROTOCOLS,
                         static_cast<long>(CURLPROTO_HTTP | CURLPROTO_HTTPS));
    }
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L); // each one is checked here first
    curl_easy_setopt(easy, CURLOPT_PROXY, "");          // whatever the environment says
    curl_easy_setopt(easy, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    if (exchange.request.sink) {
        constexpr long silence = 60; // seconds
        curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
        curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, silence);
        curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT, silence); // that one counts what follows
    } else {
        curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, ""); // all that curl can undo
    }
    // Ending a request must not wait for the resolver's thread; the thread cleans up by itself.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, exchange.request.userAgent.constData());
    if (!exchange.request.acceptLanguage.isEmpty()) {
        const QByteArray line = "Accept-Language: " + exchange.request.acceptLanguage;
        exchange.headers = curl_slist_append(nullptr, line.constData());
        curl_easy_setopt(easy, CURLOPT_HTTPHEADER, exchange.headers);
    }
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &Exchange::onOpenSocket);
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, &exchange);
    curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &Exchange::onReady);
    curl_easy_setopt(easy, CURLOPT_PREREQDATA, &exchange);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &Exchange::onHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &exchange);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Exchange::onBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &exchange);
}

void HttpClient::Private::send(Exchange &exchange, const QUrl &url) {
    if (!mayAsk(exchange, url)) {
        return end(exchange, Outcome::Refused);
    }
    const auto left = exchange.deadline.remainingTime();
    if (left <= 0) {
        return end(exchange, Outcome::TimedOut);
    }
    exchange.response.url = url.adjusted(QUrl::RemoveUserInfo);
    const QByteArray address = exchange.response.url.toEncoded(QUrl::RemoveFragment);
    curl_easy_setopt(exchange.easy, CURLOPT_URL, address.constData());
    curl_easy_setopt(exchange.easy, CURLOPT_TIMEOUT_MS, static_cast<long>(left));
    curl_multi_add_handle(m_multi, exchange.easy);
}

void HttpClient::Private::end(Exchange &exchange, Outcome outcome) {
    curl_multi_remove_handle(m_multi, exchange.easy);
    curl_easy_cleanup(exchange.easy);
    curl_slist_free_all(exchange.headers);
    exchange.response.outcome = outcome;
    exchange.owner = nullptr;
    exchange.ended.fire();
    m_running.erase(exchange.easy); // may be what kept the exchange alive: nothing after this
}

void HttpClient::Private::act(curl_socket_t socket, int events) {
    int running = 0;
    curl_multi_socket_action(m_multi, socket, events, &running);
    collectEnded();
}

void HttpClient::Private::collectEnded() {
    int left = 0;
    while (const CURLMsg *message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg != CURLMSG_DONE) {
            continue;
        }
        const CURLcode result = message->data.result; // gone once the handle is removed
        const auto exchange = m_running.at(message->easy_handle);
        curl_multi_remove_handle(m_multi, exchange->easy);
        conclude(*exchange, result);
    }
}

void HttpClient::Private::conclude(Exchange &exchange, CURLcode result) {
    HttpResponse &response = exchange.response;
    const bool answered = result == CURLE_OK || response.truncated;
    if (!answered) {
        response.body.clear();
        return end(exchange, exchange.addressRefused              ? Outcome::Refused
                             : result == CURLE_OPERATION_TIMEDOUT ? Outcome::TimedOut
                                                                  : Outcome::Failed);
    }
    const char *next = nullptr;
    curl_easy_getinfo(exchange.easy, CURLINFO_REDIRECT_URL, &next);
    if (next != nullptr) {
        if (++exchange.redirects > maxRedirects) {
            return end(exchange, Outcome::Refused);
        }
        const QUrl target = QUrl::fromEncoded(next);
        if (target.host() != response.url.host()) {
            exchange.request.reach = Reach::PublicOnly; // a stranger's word, no longer the user's
        }
        return send(exchange, target);
    }
    long status = 0;
    curl_easy_getinfo(exchange.easy, CURLINFO_RESPONSE_CODE, &status);
    response.status = static_cast<int>(status);
    const char *contentType = nullptr;
    curl_easy_getinfo(exchange.easy, CURLINFO_CONTENT_TYPE, &contentType);
    response.contentType = contentType;
    end(exchange, Outcome::Answered);
}

void HttpClient::Private::watch(curl_socket_t socket, int what) {
    if (what == CURL_POLL_REMOVE) {
        m_watched.drop(socket);
    } else {
        m_watched.follow(socket, (what & CURL_POLL_IN) != 0, (what & CURL_POLL_OUT) != 0);
    }
}

HttpClient::HttpClient(bool allowLoopback, QObject *parent)
    : QObject(parent), m_allowLoopback(allowLoopback) {}

HttpClient::~HttpClient() = default;

Task<HttpResponse> HttpClient::get(HttpRequest request, CancelToken cancel) {
    requireMainThread("vorle/HttpClient");
    cancel.throwIfCancelled();
    const auto exchange = std::make_shared<Private::Exchange>();
    exchange->request = std::move(request);
    if (!d) {
        d = std::make_unique<Private>(m_allowLoopback);
    }
    d->start(exchange);
    // From here on `this` may go: only the exchange is touched.
    const auto registration = cancel.onCancel([exchange] {
        if (exchange->owner != nullptr) {
            exchange->owner->end(*exchange, Outcome::Failed);
        }
    });
    co_await exchange->ended;
    cancel.throwIfCancelled();
    co_return std::move(exchange->response);
}

} // namespace vorle
