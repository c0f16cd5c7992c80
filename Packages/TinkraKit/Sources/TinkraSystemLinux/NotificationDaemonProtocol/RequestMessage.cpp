#include "NotificationDaemonProtocol/RequestMessage.h"

#include "NotificationDaemonProtocol/Names.h"

#include <sdbus-c++/Error.h>
#include <sdbus-c++/Types.h>

#include <array>

namespace Tinkra::NotificationDaemonProtocol {

namespace {

[[noreturn]] void refuse(const std::string& what)
{
    throw sdbus::Error(Error::kInvalidArgs, what);
}

template <typename Write>
void writeEntry(sdbus::Message& message, const std::string& key, const std::string& signature, Write write)
{
    message.openDictEntry("sv");
    message << key;
    message.openVariant(signature);
    write();
    message.closeVariant();
    message.closeDictEntry();
}

template <typename Value> void writeEntry(sdbus::Message& message, const std::string& key, const Value& value)
{
    writeEntry(message, key, sdbus::signature_of<Value>::str(), [&] { message << value; });
}

void writeUserInfo(sdbus::Message& message, const UserInfo& userInfo)
{
    message.openContainer("{sv}");
    for (const auto& [key, value] : userInfo)
        std::visit([&, &key = key](const auto& held) { writeEntry(message, key, held); }, value);
    message.closeContainer();
}

void writeComponents(sdbus::Message& message, const WallClock& clock)
{
    message.openStruct("iiiiii");
    message << clock.year << clock.month << clock.day << clock.hour << clock.minute << clock.second;
    message.closeStruct();
}

/// The signature of the variant that comes next.
std::string nextSignature(sdbus::Message& message)
{
    std::string type;
    std::string contents;
    message.peekType(type, contents);
    return contents;
}

/// Calls `read(key)` for each entry of an a{sv}; `read` has to take the variant. False at the end of an array
/// of dictionaries.
template <typename Read> bool readDictionary(sdbus::Message& message, Read read)
{
    if (!message.enterContainer("{sv}"))
        return false;
    while (message.enterDictEntry("sv")) {
        std::string key;
        message >> key;
        read(key);
        message.exitDictEntry();
    }
    message.clearFlags();
    message.exitContainer();
    return true;
}

void skip(sdbus::Message& message)
{
    sdbus::Variant ignored;
    message >> ignored;
}

template <typename Value> void readValue(sdbus::Message& message, const std::string& key, Value& value)
{
    const auto wanted = sdbus::signature_of<Value>::str();
    if (nextSignature(message) != wanted)
        refuse("\"" + key + "\" must have the type " + wanted);
    message.enterVariant(wanted);
    message >> value;
    message.exitVariant();
}

void readUserInfo(sdbus::Message& message, UserInfo& userInfo)
{
    if (nextSignature(message) != "a{sv}")
        refuse("\"userInfo\" must have the type a{sv}");
    message.enterVariant("a{sv}");
    userInfo.clear();
    readDictionary(message, [&](const std::string& key) {
        const auto signature = nextSignature(message);
        if (signature == "s") {
            std::string text;
            readValue(message, key, text);
            userInfo[key] = std::move(text);
        } else if (signature == "d") {
            double number = 0;
            readValue(message, key, number);
            userInfo[key] = number;
        } else {
            refuse("the values of \"userInfo\" must have the type s or d");
        }
    });
    message.exitVariant();
}

void readComponents(sdbus::Message& message, WallClock& clock)
{
    if (nextSignature(message) != "(iiiiii)")
        refuse("\"components\" must have the type (iiiiii)");
    message.enterVariant("(iiiiii)");
    message.enterStruct("iiiiii");
    message >> clock.year >> clock.month >> clock.day >> clock.hour >> clock.minute >> clock.second;
    message.exitStruct();
    message.exitVariant();
    if (!isValid(clock))
        refuse("\"components\" is no date and time of the calendar");
}

Sound soundNamed(const std::string& name)
{
    if (name == "default")
        return Sound::Default;
    if (name == "none")
        return Sound::None;
    refuse("\"sound\" must be \"default\" or \"none\"");
}

}

sdbus::Message& operator<<(sdbus::Message& message, const Request& request)
{
    message.openContainer("{sv}");
    writeEntry(message, "identifier", request.identifier);
    writeEntry(message, "title", request.title);
    writeEntry(message, "body", request.body);
    writeEntry(message, "sound", std::string(request.sound == Sound::Default ? "default" : "none"));
    writeEntry(message, "interruptionLevel", request.interruptionLevel);
    writeEntry(message, "userInfo", "a{sv}", [&] { writeUserInfo(message, request.userInfo); });
    writeEntry(message, "components", "(iiiiii)", [&] { writeComponents(message, request.components); });
    writeEntry(message, "repeats", request.repeats);
    message.closeContainer();
    return message;
}

sdbus::Message& operator>>(sdbus::Message& message, Request& request)
{
    request = {};
    bool hasComponents = false;
    const bool found = readDictionary(message, [&](const std::string& key) {
        if (key == "identifier") {
            readValue(message, key, request.identifier);
        } else if (key == "title") {
            readValue(message, key, request.title);
        } else if (key == "body") {
            readValue(message, key, request.body);
        } else if (key == "sound") {
            std::string name;
            readValue(message, key, name);
            request.sound = soundNamed(name);
        } else if (key == "interruptionLevel") {
            readValue(message, key, request.interruptionLevel);
            if (request.interruptionLevel < 0 || request.interruptionLevel > 3)
                refuse("\"interruptionLevel\" must be 0, 1, 2 or 3");
        } else if (key == "userInfo") {
            readUserInfo(message, request.userInfo);
        } else if (key == "components") {
            readComponents(message, request.components);
            hasComponents = true;
        } else if (key == "repeats") {
            readValue(message, key, request.repeats);
        } else {
            skip(message);
        }
    });
    if (found && !hasComponents)
        refuse("\"components\" is missing");
    return message;
}

}
