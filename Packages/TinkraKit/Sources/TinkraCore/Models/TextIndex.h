#pragma once

#include "TinkraCore/Models/FetchAhead.h"
#include "TinkraCore/Models/Text.h"

#include <bit>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace Tinkra {

/// Finds texts that somebody else keeps, by the place that each has there. One table of a size that is known
/// beforehand and no allocation for each text, which makes it several times as fast as a map of nodes.
class TextIndex {
public:
    /// Room for `capacity` texts.
    explicit TextIndex(std::size_t capacity)
        : m_slots(std::bit_ceil(2 * capacity + 1))
    {
    }

    /// Enters the text, which must stay where it is, unless an equal one is there. Gives the place of the one
    /// that is there then: `place` itself when the text is new.
    std::size_t insert(const Text& text, std::size_t place)
    {
        const auto hash = std::hash<Text>{}(text);
        auto& slot = m_slots[slotOf(text, hash)];
        if (!slot.text)
            slot = {hash, &text, place};
        return slot.place;
    }

    /// `hash` is that of `text`.
    std::optional<std::size_t> placeOf(const Text& text, std::size_t hash) const
    {
        const auto& slot = m_slots[slotOf(text, hash)];
        return slot.text ? std::optional(slot.place) : std::nullopt;
    }

    /// Has the memory fetch what a search for this hash will look at: its slot, and some turns later the text
    /// that the slot refers to.
    void fetchSlotAhead(std::size_t hash) const { __builtin_prefetch(&m_slots[hash & (m_slots.size() - 1)]); }
    void fetchTextAhead(std::size_t hash) const
    {
        if (const auto* text = m_slots[hash & (m_slots.size() - 1)].text)
            fetchAhead(*text);
    }

private:
    struct Slot {
        std::size_t hash = 0;
        const Text* text = nullptr;
        std::size_t place = 0;
    };

    /// Where an equal text is, or where it would go. At least half of the slots stay empty: the search ends.
    std::size_t slotOf(const Text& text, std::size_t hash) const
    {
        const auto mask = m_slots.size() - 1;
        auto at = hash & mask;
        while (m_slots[at].text && (m_slots[at].hash != hash || *m_slots[at].text != text))
            at = (at + 1) & mask;
        return at;
    }

    std::vector<Slot> m_slots;
};

}
