#pragma once

#include <string>
#include <string_view>

namespace Tinkra {

/// What a user is greeted with: the full name up to its first white space (any that Unicode knows), or
/// "there" when the name is empty or blank.
std::string firstName(std::string_view fullNameUtf8);

}
