#pragma once

#include <unistd.h>

#include <utility>

namespace Tinkra::WakeHelper {

/// Owns one file descriptor; a negative one is none.
class Descriptor {
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    int get() const { return m_descriptor; }
    explicit operator bool() const { return m_descriptor >= 0; }

private:
    int m_descriptor;
};

}
