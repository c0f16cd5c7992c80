#include "TinkraICalendar/Notices.h"

#include "TinkraICalendar/Encoding.h"

#include <algorithm>
#include <utility>

namespace Tinkra::ICalendar {

namespace {

constexpr std::size_t mostSentences = 100;
constexpr std::size_t longestQuotation = 60;

}

void Notices::add(std::size_t line, std::string_view sentence)
{
    if (m_sentences.size() < mostSentences)
        add("Line " + std::to_string(line) + ": " + std::string{sentence});
    else
        ++m_leftOut;
}

void Notices::add(std::string_view sentence)
{
    if (m_sentences.size() < mostSentences)
        appendUtf8(m_sentences.emplace_back(), sentence);
    else
        ++m_leftOut;
}

std::vector<std::string> Notices::take()
{
    if (m_leftOut > 0)
        m_sentences.push_back(std::to_string(m_leftOut) + " more of the kind were left out.");
    m_leftOut = 0;
    return std::exchange(m_sentences, {});
}

std::string quoted(std::string_view text)
{
    std::string shown;
    appendUtf8(shown, text.substr(0, longestQuotation));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return (c >= '\0' && c < ' ') || c == '\x7F'; }, ' ');
    return '"' + shown + (text.size() > longestQuotation ? "…\"" : "\"");
}

}
