#include "TinkraSystemContractTests/DefaultsContract.h"

#include "TinkraSystemMac/DefaultsMac.h"

namespace Tinkra::System {
namespace {

/// The preferences of a home that is the test's own.
struct OfTheUser {
    OfTheUser()
    {
        for (NSString* key in [native dictionaryRepresentation])
            [native removeObjectForKey:key];
    }

    NSUserDefaults* native = NSUserDefaults.standardUserDefaults;
    std::shared_ptr<DefaultsMac> defaults = std::make_shared<DefaultsMac>(native);

    void putSomethingElse(const char* key) const
    {
        [native setObject:@"text" forKey:[NSString stringWithUTF8String:key]];
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, DefaultsContract, OfTheUser);

}
}
