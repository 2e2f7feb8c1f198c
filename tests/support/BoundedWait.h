#pragma once
// Waiting in tests: poll a condition until it holds or the time is up, so that a fault shows as a failed
// expectation instead of a hung run.
//   ASSERT_TRUE(waitFor([&] { return simulation.finished == 2; }));

#include <chrono>
#include <functional>
#include <thread>

namespace tov {
namespace testing {

// True as soon as `condition` holds; false once `timeout` has passed without it.
inline bool waitFor(const std::function<bool()>& condition,
                    std::chrono::milliseconds timeout = std::chrono::milliseconds(5000))
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace testing
} // namespace tov
