#pragma once

#include "TinkraSystem/Observation.h"

#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace Tinkra {

/// Tells observers which property has changed, in the order in which they came. One thread.
template <typename Property> class ChangeNotices {
public:
    using Observer = std::function<void(Property)>;

    /// Until the result is dropped, which may happen during a notice and after these notices are gone.
    [[nodiscard]] System::Observation observe(Observer observer)
    {
        const auto number = m_list->next++;
        m_list->byNumber.emplace(number, std::move(observer));
        return {nullptr, [weak = std::weak_ptr(m_list), number](void*) {
                    if (const auto list = weak.lock())
                        list->byNumber.erase(number);
                }};
    }

    void notify(Property property) const
    {
        const auto observers = m_list->byNumber; // an observer may add or drop others
        for (const auto& [number, observer] : observers) {
            if (m_list->byNumber.contains(number))
                observer(property);
        }
    }

private:
    struct List {
        std::map<int, Observer> byNumber;
        int next = 0;
    };

    std::shared_ptr<List> m_list = std::make_shared<List>();
};

}
