#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <variant>
#include <vector>

/// The little of JSON (RFC 8259) that our records are made of. Which library reads it is Json.cpp's secret.
namespace Tinkra::Json {

struct Member;

/// An object's members in the order of the document. Of two members of one name the last one counts.
using Members = std::vector<Member>;

/// The elements of a list of text; the order has no meaning in our records, and duplicates collapse.
using Strings = std::unordered_set<std::string>;

/// A value of which no record of ours consists: a list that holds more than text, an object too deep.
struct Foreign { };

using Value = std::variant<std::nullptr_t, bool, double, std::string, Strings, Members, Foreign>;

struct Member {
    std::string name;
    Value value;
};

/// How deep our records nest: an object within an object.
inline constexpr std::size_t maximumDepth = 2;

/// Reads a whole document, keeping the members of these names alone, so that neither depth nor width of
/// what we do not know costs memory. Nothing when the document is not JSON in UTF-8 (a byte order mark may
/// precede it), or holds a number beyond the range of double.
std::optional<Value> read(std::string_view document, std::span<const std::string_view> names);

/// The document on one line, without spaces. Numbers read back as exactly the same double, and must be
/// finite. Bytes that are not UTF-8 become U+FFFD.
std::string write(const Members& object);

}
