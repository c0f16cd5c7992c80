#pragma once

#include <string>

namespace Tinkra::AppLinks {

/// The product's page: an absolute https address, made on first use. One that is none ends the program.
const std::string& website();

}
