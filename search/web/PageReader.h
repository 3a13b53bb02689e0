#pragma once

#include "base/HttpClient.h"
#include "search/web/PageText.h"

#include <chrono>
#include <functional>
#include <memory>

namespace vorle {

/// A page as it was read. Every failure (an address that may not be reached, no answer, a status
/// outside 200-299, bytes that are no text) reads as ReadLevel::None.
struct ReadPage : PageText {
    QString finalUrl; ///< the address that answered, after redirects; the prepared link otherwise
    HttpResponse::Outcome outcome = HttpResponse::Outcome::Refused; ///< of the exchange
    int status = 0; ///< the HTTP status, 0 when none came

    bool operator==(const ReadPage &) const = default;
};

/// Fetches pages and reads them: at most 16 at a time, 4 a host, so that a slow host never holds
/// every permit. Main thread; the extraction runs on the thread pool. May be deleted while reads
/// are under way: they go on by themselves, and read as ReadLevel::None when the client is gone.
class PageReader {
public:
    /// Where an address is really asked for: tests send all of them to one machine.
    using Route = std::function<QUrl(const QUrl &)>;

    /// `deadline` is for one exchange, from the moment it starts.
    explicit PageReader(HttpClient &http,
                        std::chrono::milliseconds deadline = std::chrono::seconds(20),
                        Route route = {});
    ~PageReader();
    PageReader(const PageReader &) = delete;
    PageReader &operator=(const PageReader &) = delete;

    /// Reads one link, prepared first (see readableLink); where its site offers the same thing as
    /// JSON (see twinOf), that, else the page. What nobody sees is left out. Never throws for what
    /// the network or the page does. `reach` is Anywhere only for a link the user typed. @throws
    /// Cancelled
    Task<ReadPage> read(QString link, CancelToken cancel = {}, Reach reach = Reach::PublicOnly);

private:
    class Shared;
    std::shared_ptr<Shared> m_shared;
};

} // namespace vorle
