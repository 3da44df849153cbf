#pragma once

#include "tests/platform/macos/fakes/fake_dispatch.h"
#include "tests/platform/macos/fakes/fake_io_kit.h"
#include "tests/platform/macos/fakes/fake_kernel.h"
#include "tests/platform/macos/fakes/fake_objects.h"
#include "tests/platform/macos/fakes/fake_run_loop.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kestro::fakes {

/// The faked system of one test. The functions of the system act on the one that exists.
class FakeMac {
public:
    FakeMac();
    ~FakeMac();
    FakeMac(const FakeMac&) = delete;
    FakeMac& operator=(const FakeMac&) = delete;

    static FakeMac& current();

    std::set<std::string, std::less<>> failing;  ///< functions that fail
    bool everythingFails = false;

    /// Records a call of a function that can fail. True: it does.
    bool fails(std::string_view function);

    /// The functions that can fail and have been called, with the number of calls.
    const std::map<std::string, std::int64_t, std::less<>>& calls() const { return calls_; }

    FakeObjects objects;
    FakeKernel kernel;
    FakeIOKit ioKit;
    FakeDispatch dispatch;
    FakeRunLoop runLoop;

    /// What the program holds of the system: objects, ports, arrays, connections, registrations. Empty: nothing.
    std::vector<std::string> held() const;

    /// Releases of what is not held, wrong sizes, uses of the dead.
    std::vector<std::string> misuse() const;

private:
    std::map<std::string, std::int64_t, std::less<>> calls_;
};

}  // namespace kestro::fakes
