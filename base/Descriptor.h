#pragma once

#include <utility>

#include <unistd.h>

namespace vorle {

/// An open file's number, closed when it goes. Any thread.
class Descriptor {
public:
    /// Takes what `open` gave; a negative number stands for no file.
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(Descriptor &&other) noexcept {
        std::swap(m_number, other.m_number); // what it held goes with the other
        return *this;
    }
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }

    /// Closes it now, for whoever wants to know how that went: some file systems report a write
    /// that failed only then. Gives what `close` does.
    int close() { return ::close(std::exchange(m_number, -1)); }

private:
    int m_number;
};

} // namespace vorle
