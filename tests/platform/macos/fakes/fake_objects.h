#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kestro::fakes {

/// A value that a test gives to a fake or finds in one; becomes Core Foundation objects on the way.
struct FakeValue;
using FakeList = std::vector<FakeValue>;
using FakeDictionary = std::map<std::string, FakeValue, std::less<>>;

/// Text with half a surrogate pair, which UTF-8 cannot express.
struct UnpairedSurrogate {};

/// An object of a kind that no port knows, such as a date.
struct OddObject {};

struct FakeValue {
    std::variant<OddObject, bool, std::int64_t, double, std::string, std::vector<std::uint8_t>, UnpairedSurrogate,
                 FakeList, FakeDictionary>
        content;
};

enum class FakeType : CFTypeID {
    odd = 1,
    string,
    number,
    boolean,
    data,
    array,
    dictionary,
    timer,
    source,
    hidClient,
    hidService,
    hidEvent,
};

/// A reference-counted object behind a Core Foundation pointer.
struct FakeObject {
    FakeType type = FakeType::odd;
    std::int64_t references = 1;
    bool isConstant = false;

    std::variant<std::monostate, bool, std::int64_t, double, std::string, std::vector<std::uint8_t>> value;
    bool hasUnpairedSurrogate = false;
    std::vector<const FakeObject*> children;  ///< retained: elements, or keys and values in turn
    std::size_t index = 0;                    ///< of a sensor, timer or source in its fake
};

/// Every object of one test. Remembers released ones for a while, so that a later use is noticed.
class FakeObjects {
public:
    FakeObjects();
    ~FakeObjects();
    FakeObjects(const FakeObjects&) = delete;
    FakeObjects& operator=(const FakeObjects&) = delete;

    FakeObject* make(FakeType type);
    FakeObject* makeString(std::string_view utf8);
    FakeObject* makeValue(const FakeValue& value);
    static FakeValue valueOf(const FakeObject& object);

    /// The object behind a pointer, which must be alive; of `type`, unless that is odd.
    FakeObject& use(CFTypeRef object, FakeType type = FakeType::odd);

    void retain(CFTypeRef object);
    void release(CFTypeRef object);

    /// The system's two booleans, whose references are not counted.
    static FakeObject* constant(bool flag);

    /// Number of objects that the program has not released.
    std::size_t alive() const { return alive_.size(); }

    /// Descriptions of misuse: uses and releases of dead objects, and objects of another type than expected.
    const std::vector<std::string>& misuse() const { return misuse_; }

private:
    FakeObject misused_;  ///< in place of whatever is not usable
    std::map<CFTypeRef, std::unique_ptr<FakeObject>> alive_;
    std::deque<std::unique_ptr<FakeObject>> dead_;
    std::vector<std::string> misuse_;
};

}  // namespace kestro::fakes
