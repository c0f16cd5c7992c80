// Any bytes either are refused or decode to a configuration that survives its own encoding.

#include "TinkraCore/Models/Coding.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    try {
        const auto configuration = Tinkra::decode<Tinkra::TinkraConfiguration>(document);
        if (Tinkra::decode<Tinkra::TinkraConfiguration>(Tinkra::encode(configuration)) != configuration)
            std::abort();
    } catch (const Tinkra::DecodingError&) {
        return 0;
    }
    return 0;
}
