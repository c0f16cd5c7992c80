#include "NotificationDaemon/Log.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {

namespace {

constexpr std::size_t kLongestLine = 1000;
constexpr std::size_t kLongestQuote = 200;

void appendEscaped(std::string& out, char c)
{
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7f && c != '\\') {
        out.push_back(c);
        return;
    }
    std::array<char, 8> escaped{};
    std::snprintf(escaped.data(), escaped.size(), "\\x%02x", byte);
    out += escaped.data();
}

}

std::string inQuotes(std::string_view text)
{
    std::string out = "\"";
    for (const char c : text.substr(0, kLongestQuote))
        appendEscaped(out, c);
    out += text.size() > kLongestQuote ? "\"..." : "\"";
    return out;
}

void log(LogLevel level, const std::string& line)
{
    static const bool isJournal = std::getenv("JOURNAL_STREAM") != nullptr;
    std::string out = isJournal ? "<" + std::to_string(static_cast<int>(level)) + ">" : "tinkra-notifierd: ";
    for (const char c : std::string_view(line).substr(0, kLongestLine)) {
        const auto byte = static_cast<unsigned char>(c);
        out.push_back(byte < 0x20 || byte >= 0x7f ? '?' : c);
    }
    out.push_back('\n');

    // A pipe that is ready for writing takes a line of this size without blocking.
    pollfd ready{STDERR_FILENO, POLLOUT, 0};
    if (poll(&ready, 1, 0) == 1 && (ready.revents & POLLOUT) != 0) {
        [[maybe_unused]] const auto written = write(STDERR_FILENO, out.data(), out.size());
    }
}

}
