#include "DefaultsContract.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include "TinkraSystemLinux/DefaultsLinux.h"
#include "TinkraTestSupport/FakeDefaults.h"

#include <sys/stat.h>

namespace Tinkra::System {
namespace {

struct InMemory {
    std::shared_ptr<FakeDefaults> defaults = std::make_shared<FakeDefaults>();

    void putSomethingElse(const char* key) const { defaults->setSomethingElse(key); }
};

struct OnDisk {
    TemporaryFolder folder;
    std::shared_ptr<DefaultsLinux> defaults = std::make_shared<DefaultsLinux>(folder.path());

    void putSomethingElse(const char* key) const
    {
        ASSERT_EQ(::mkfifo((folder.path() / key).c_str(), 0600), 0);
    }
};

using Kinds = testing::Types<InMemory, OnDisk>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, DefaultsContract, Kinds);

}
}
