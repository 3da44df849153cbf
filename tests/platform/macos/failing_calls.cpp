#include "tests/platform/macos/failing_calls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro {

using fakes::FakeMac;

void expectNothingHeld(const FakeMac& mac) {
    EXPECT_THAT(mac.held(), testing::IsEmpty());
    EXPECT_THAT(mac.misuse(), testing::IsEmpty());
}

void useWithFailingCalls(const std::function<void(FakeMac&)>& prepare, const std::function<void(FakeMac&)>& use) {
    constexpr std::size_t rounds = 1000;
    FakeMac mac;
    prepare(mac);
    use(mac);
    mac.runLoop.runPending();
    expectNothingHeld(mac);
    std::vector<std::string> functions;
    for (const auto& [function, count] : mac.calls()) {
        functions.push_back(function);
    }
    ASSERT_FALSE(functions.empty());

    for (std::size_t round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
        const std::size_t choice = round % (functions.size() + 2);
        SCOPED_TRACE(choice < functions.size() ? functions[choice] : "all or none");
        mac.failing.clear();
        if (choice < functions.size()) {
            mac.failing.insert(functions[choice]);
        }
        mac.everythingFails = choice == functions.size();
        use(mac);
        mac.everythingFails = false;
        mac.failing.clear();
        mac.runLoop.runPending();
        expectNothingHeld(mac);
    }
}

}  // namespace kestro
