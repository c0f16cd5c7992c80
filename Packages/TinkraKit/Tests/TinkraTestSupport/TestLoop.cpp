#include "TinkraTestSupport/TestLoop.h"

#include <chrono>

namespace Tinkra {

void TestLoop::drain()
{
    m_context.restart();
    m_context.poll();
}

void TestLoop::waitFor(const bool& isDone)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    m_context.restart();
    while (!isDone && m_context.run_one_until(end) > 0) { }
}

}
