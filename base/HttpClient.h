#pragma once

#include "base/Async.h"

#include <QByteArray>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>

namespace vorle {

/// Which addresses a request may reach.
enum class Reach {
    PublicOnly, ///< not this machine, nor private, link-local or otherwise reserved networks
    Anywhere    ///< whatever the user typed; once redirected to another host, PublicOnly
};

struct HttpRequest {
    QUrl url; ///< http or https; a user name or password in it is never sent
    QByteArray userAgent;
    QByteArray acceptLanguage;   ///< empty: not sent
    qint64 maxBytes = 3'000'000; ///< of the decompressed body; what follows is not received
    std::chrono::milliseconds deadline{15'000}; ///< for the whole exchange, redirects included
    Reach reach = Reach::PublicOnly;
    /// https alone, redirects included; plain http only of this machine, where it may be reached.
    bool secureOnly = false;
    /// Takes the body of an answer piece by piece, as it was sent (no compression is undone) and
    /// while it arrives, instead of its being kept in `body`; false ends the request as Failed, and
    /// so does a minute in which nothing comes. It must not touch the client.
    std::function<bool(QByteArrayView piece)> sink = {};
    /// Told the length that the server announces, if it does, before the first piece.
    std::function<void(qint64 bytes)> announced = {};
};

struct HttpResponse {
    enum class Outcome {
        Answered, ///< a final status came; `truncated` tells whether the body was cut
        Refused, ///< the address may not be reached (scheme, private network), or redirects 6 times
        Failed,  ///< no name, no connection, broken exchange
        TimedOut
    };
    Outcome outcome = Outcome::Failed;
    int status = 0;         ///< the final HTTP status, 0 unless answered
    QUrl url;               ///< the address that answered, after redirects
    QByteArray contentType; ///< as sent, or empty
    QByteArray body;        ///< at most maxBytes; with a sink, 64 KB of what is no success
    bool truncated = false; ///< the body went on past maxBytes

    bool ok() const { return outcome == Outcome::Answered && status >= 200 && status < 300; }
};

/// GET requests over HTTP(S), guarded: no cookie, no credential, at most 5 redirects, each checked
/// again; the address is checked when the connection is opened and before each request on it, so a
/// name that resolves to a private address is refused whatever it resolved to before. No proxy.
/// Connections are kept and used again. Main thread only, as many requests at once as wanted.
///
/// May be deleted while requests are under way: they end as Failed, and whoever waits for them is
/// resumed from the event loop.
class HttpClient : public QObject {
    Q_OBJECT

public:
    /// `allowLoopback`: Reach::PublicOnly may reach this machine too, and nothing else besides
    /// (development, demonstration).
    explicit HttpClient(bool allowLoopback = false, QObject *parent = nullptr);
    ~HttpClient() override;

    /// One GET. Never throws for what the network does. @throws Cancelled once `cancel` is: the
    /// connection is closed within that call, the caller resumed from the event loop.
    Task<HttpResponse> get(HttpRequest request, CancelToken cancel = {});

private:
    class Private;
    bool m_allowLoopback;
    std::unique_ptr<Private> d; // from the first request on: starting TLS reads files
};

} // namespace vorle
