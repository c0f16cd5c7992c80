#pragma once

#include <memory>
#include <utility>

namespace Tinkra::System {

/// A value that never changes, so that its copies can share it: copying copies no more than a pointer.
/// Compares as the value does.
template <typename T> class Shared {
public:
    Shared()
        : Shared(T{})
    {
    }
    Shared(T value)
        : m_value(std::make_shared<const T>(std::move(value)))
    {
    }

    const T& operator*() const { return *m_value; }
    const T* operator->() const { return m_value.get(); }

    friend bool operator==(const Shared& left, const Shared& right)
    {
        return left.m_value == right.m_value || *left == *right;
    }

private:
    std::shared_ptr<const T> m_value;
};

}
