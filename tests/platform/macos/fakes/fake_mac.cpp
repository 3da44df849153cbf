#include "tests/platform/macos/fakes/fake_mac.h"

#include <cassert>

namespace kestro::fakes {

namespace {
FakeMac* existing = nullptr;
}

FakeMac::FakeMac() {
    assert(existing == nullptr);
    existing = this;
}

FakeMac::~FakeMac() {
    existing = nullptr;
}

FakeMac& FakeMac::current() {
    assert(existing != nullptr);
    return *existing;
}

bool FakeMac::fails(std::string_view function) {
    ++calls_[std::string(function)];
    return everythingFails || failing.contains(function);
}

std::vector<std::string> FakeMac::held() const {
    std::vector<std::string> all;
    if (objects.alive() > 0) {
        all.push_back(std::to_string(objects.alive()) + " Core Foundation objects");
    }
    kernel.appendHeld(all);
    ioKit.appendHeld(all);
    dispatch.appendHeld(all);
    runLoop.appendHeld(all);
    return all;
}

std::vector<std::string> FakeMac::misuse() const {
    std::vector<std::string> all = objects.misuse();
    for (const auto* part : {&kernel.misuse, &ioKit.misuse, &dispatch.misuse, &runLoop.misuse}) {
        all.insert(all.end(), part->begin(), part->end());
    }
    return all;
}

}  // namespace kestro::fakes
