#include "AlarmInfrastructure/AlarmPayload.h"

#include "TinkraCore/Models/Coding.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace Tinkra {

namespace {

using Json = nlohmann::json;

const Json& required(const Json& object, const char* key, bool (Json::*isOfType)() const noexcept)
{
    const auto found = object.find(key);
    if (found == object.end() || !((*found).*isOfType)())
        throw DecodingError(std::string("\"") + key + "\" is missing or of another type");
    return *found;
}

std::size_t combined(std::size_t seed, std::size_t hash)
{
    return seed ^ (hash + 0x9e3779b97f4a7c15U + (seed << 6U) + (seed >> 2U));
}

}

std::string encode(const AlarmPayload& payload)
{
    const double start = secondsSince1970(payload.meetingStart);
    if (!std::isfinite(start))
        throw EncodingError("\"meetingStart\" is not a finite number");
    const Json object{{"id", payload.id.utf8()}, {"title", payload.title.utf8()}, {"meetingStart", start}};
    return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

AlarmPayload decodeAlarmPayload(std::string_view document)
{
    const auto object = Json::parse(document, nullptr, /* allow_exceptions */ false);
    if (!object.is_object())
        throw DecodingError("an alarm payload is a JSON object");
    return {
        .id = required(object, "id", &Json::is_string).get<std::string>(),
        .title = required(object, "title", &Json::is_string).get<std::string>(),
        .meetingStart = instantAt(required(object, "meetingStart", &Json::is_number).get<double>()),
    };
}

}

std::size_t std::hash<Tinkra::AlarmPayload>::operator()(const Tinkra::AlarmPayload& payload) const
{
    std::size_t seed = Tinkra::combined(0, std::hash<Tinkra::Text>{}(payload.id));
    seed = Tinkra::combined(seed, std::hash<Tinkra::Text>{}(payload.title));
    return Tinkra::combined(seed, std::hash<double>{}(Tinkra::secondsSince1970(payload.meetingStart)));
}
