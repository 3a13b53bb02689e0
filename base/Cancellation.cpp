#include "base/Cancellation.h"

#include <map>
#include <utility>

namespace vorle {

namespace detail {
struct CancelState {
    bool cancelled = false;
    quint64 lastId = 0;
    std::map<quint64, std::function<void()>> callbacks;
};
} // namespace detail

CancelToken::Registration::Registration(Registration &&other) noexcept
    : m_state(std::exchange(other.m_state, {})), m_id(std::exchange(other.m_id, 0)) {}

CancelToken::Registration &CancelToken::Registration::operator=(Registration &&other) noexcept {
    std::swap(m_state, other.m_state);
    std::swap(m_id, other.m_id);
    return *this;
}

CancelToken::Registration::~Registration() {
    if (const auto state = m_state.lock()) {
        state->callbacks.erase(m_id);
    }
}

bool CancelToken::isCancelled() const { return m_state && m_state->cancelled; }

void CancelToken::throwIfCancelled() const {
    if (isCancelled()) {
        throw Cancelled();
    }
}

CancelToken::Registration CancelToken::onCancel(std::function<void()> callback) const {
    Registration registration;
    if (!m_state) {
        return registration;
    }
    if (m_state->cancelled) {
        callback();
        return registration;
    }
    registration.m_state = m_state;
    registration.m_id = ++m_state->lastId;
    m_state->callbacks.emplace(registration.m_id, std::move(callback));
    return registration;
}

CancelSource::CancelSource() : m_state(std::make_shared<detail::CancelState>()) {}

CancelToken CancelSource::token() const {
    CancelToken token;
    token.m_state = m_state;
    return token;
}

void CancelSource::cancel() {
    const auto state = m_state;
    state->cancelled = true;
    // A callback may unregister others or itself: take them out one at a time.
    while (!state->callbacks.empty()) {
        auto node = state->callbacks.extract(state->callbacks.begin());
        node.mapped()();
    }
}

} // namespace vorle
