#include "SelectionText.h"

namespace Tinkra {

std::string selectionText(std::size_t chosen, std::size_t all)
{
    return std::to_string(chosen) + " of " + std::to_string(all);
}

}
