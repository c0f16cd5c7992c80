#pragma once

#include <cstddef>
#include <string>

namespace Tinkra {

/// How many calendars of an account are chosen: "1 of 3".
std::string selectionText(std::size_t chosen, std::size_t all);

}
