#pragma once

#include <QtGlobal>

#include <exception>
#include <functional>
#include <memory>

namespace vorle {

/// Thrown by an asynchronous operation whose token was cancelled. It is no failure: callers let it
/// through, and only the one who cancelled catches it.
class Cancelled final : public std::exception {
public:
    const char *what() const noexcept override { return "cancelled"; }
};

namespace detail {
struct CancelState;
}

/// A stop signal handed down every asynchronous call. Copies share one state. Main thread only.
/// A default-made token is never cancelled.
class CancelToken {
public:
    /// Keeps a callback registered while it lives; forgetting it is safe in any order.
    class Registration {
    public:
        Registration() = default;
        Registration(Registration &&other) noexcept;
        Registration &operator=(Registration &&other) noexcept;
        Registration(const Registration &) = delete;
        Registration &operator=(const Registration &) = delete;
        ~Registration();

    private:
        friend class CancelToken;
        std::weak_ptr<detail::CancelState> m_state;
        quint64 m_id = 0;
    };

    CancelToken() = default;

    bool isCancelled() const;
    /// @throws Cancelled once the token is cancelled.
    void throwIfCancelled() const;
    /// Calls `callback` once, on cancellation; at once when the token is cancelled already.
    [[nodiscard]] Registration onCancel(std::function<void()> callback) const;

private:
    friend class CancelSource;
    std::shared_ptr<detail::CancelState> m_state;
};

/// The owner's end of a token.
class CancelSource {
public:
    CancelSource();
    CancelToken token() const;
    /// Runs every registered callback, in the order of registration. Idempotent.
    void cancel();

private:
    std::shared_ptr<detail::CancelState> m_state;
};

} // namespace vorle
