#include "TinkraCore/Models/Json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace Tinkra::Json {

namespace {

/// Builds the value while the library reads the document, event by event: there is no recursion, and no more
/// is kept than `names` ask for.
class Reader final : public nlohmann::json_sax<nlohmann::json> {
public:
    explicit Reader(std::span<const std::string_view> names)
        : m_names(names)
    {
    }

    Value takeRoot() { return std::move(m_root); }

    bool null() override { return place(nullptr); }
    bool boolean(bool value) override { return place(value); }
    bool number_integer(std::int64_t value) override { return place(static_cast<double>(value)); }
    bool number_unsigned(std::uint64_t value) override { return place(static_cast<double>(value)); }
    bool number_float(double value, const std::string&) override { return place(value); }
    bool string(std::string& value) override { return place(std::move(value)); }
    bool binary(nlohmann::json::binary_t&) override { return false; } // only other formats hold any

    bool start_object(std::size_t) override
    {
        return m_open.size() < maximumDepth ? open(Members{}) : open(Foreign{});
    }
    bool key(std::string& name) override
    {
        if (m_ignoredDepth == 0) {
            m_isKeyKnown = std::ranges::find(m_names, name) != m_names.end();
            m_key = std::move(name);
        }
        return true;
    }
    bool end_object() override { return close(); }

    bool start_array(std::size_t) override { return open(Strings{}); }
    bool end_array() override { return close(); }

    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) override
    {
        return false;
    }

private:
    /// Where the next value goes; null when it is not kept. A list that meets anything but text becomes
    /// foreign, and so does everything within it.
    Value* placeFor(const Value& value)
    {
        if (m_open.empty())
            return &m_root;
        if (auto* object = std::get_if<Members>(m_open.back())) {
            if (!m_isKeyKnown)
                return nullptr;
            const auto same = std::ranges::find(*object, m_key, &Member::name);
            return same != object->end() ? &same->value : &object->emplace_back(std::move(m_key)).value;
        }
        if (!std::holds_alternative<std::string>(value))
            *m_open.back() = Foreign{};
        return nullptr;
    }

    bool place(Value value)
    {
        if (m_ignoredDepth > 0)
            return true;
        if (auto* target = placeFor(value))
            *target = std::move(value);
        else if (auto* strings = m_open.empty() ? nullptr : std::get_if<Strings>(m_open.back()))
            strings->insert(std::move(std::get<std::string>(value)));
        return true;
    }

    bool open(Value value)
    {
        auto* target = m_ignoredDepth > 0 ? nullptr : placeFor(value);
        if (target)
            *target = std::move(value);
        if (target && !std::holds_alternative<Foreign>(*target))
            m_open.push_back(target);
        else
            ++m_ignoredDepth;
        return true;
    }

    bool close()
    {
        if (m_ignoredDepth > 0)
            --m_ignoredDepth;
        else
            m_open.pop_back();
        return true;
    }

    std::span<const std::string_view> m_names;
    Value m_root;
    std::vector<Value*> m_open; // the containers that are being filled, the innermost last
    std::size_t m_ignoredDepth = 0; // containers open inside one that is not kept, itself included
    std::string m_key;
    bool m_isKeyKnown = false;
};

nlohmann::ordered_json toLibrary(const Members& object);

nlohmann::ordered_json toLibrary(const Value& value)
{
    if (const auto* flag = std::get_if<bool>(&value))
        return *flag;
    if (const auto* number = std::get_if<double>(&value))
        return *number;
    if (const auto* text = std::get_if<std::string>(&value))
        return *text;
    if (const auto* object = std::get_if<Members>(&value))
        return toLibrary(*object);
    if (const auto* strings = std::get_if<Strings>(&value)) {
        // Sorted, so that equal records give equal documents.
        std::vector<std::string> sorted(strings->begin(), strings->end());
        std::ranges::sort(sorted);
        return sorted;
    }
    return nullptr;
}

nlohmann::ordered_json toLibrary(const Members& object)
{
    auto result = nlohmann::ordered_json::object();
    for (const auto& [name, value] : object)
        result[name] = toLibrary(value);
    return result;
}

}

std::optional<Value> read(std::string_view document, std::span<const std::string_view> names)
{
    // The library takes a NUL for the end of the document, and would accept whatever follows it.
    if (document.find('\0') != std::string_view::npos)
        return std::nullopt;
    Reader reader(names);
    if (!nlohmann::json::sax_parse(document.begin(), document.end(), &reader))
        return std::nullopt;
    return reader.takeRoot();
}

std::string write(const Members& object)
{
    return toLibrary(object).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}
