#include "core/base/text.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <variant>

namespace kestro::fakes {

namespace {

FakeObjects& objects() {
    return FakeMac::current().objects;
}

bool fails(const char* function) {
    return FakeMac::current().fails(function);
}

template <typename Reference>
Reference as(const FakeObject* object) {
    return reinterpret_cast<Reference>(object);
}

const std::string& textOf(CFStringRef string) {
    static const std::string none;
    const auto* const text = std::get_if<std::string>(&objects().use(string, FakeType::string).value);
    return text != nullptr ? *text : none;
}

/// Length in UTF-16 units.
CFIndex unitsIn(std::string_view utf8) {
    CFIndex units = 0;
    while (!utf8.empty()) {
        const auto length = utf8SequenceLength(utf8);
        units += length == 4 ? 2 : 1;
        utf8.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return units;
}

const FakeObject* valueUnderKey(const FakeObject& dictionary, std::string_view key) {
    for (std::size_t index = 0; index + 1 < dictionary.children.size(); index += 2) {
        const auto* const name = std::get_if<std::string>(&dictionary.children[index]->value);
        if (name != nullptr && *name == key) {
            return dictionary.children[index + 1];
        }
    }
    return nullptr;
}

}  // namespace

}  // namespace kestro::fakes

using namespace kestro;
using namespace kestro::fakes;

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = as<CFBooleanRef>(FakeObjects::constant(true));
const CFBooleanRef kCFBooleanFalse = as<CFBooleanRef>(FakeObjects::constant(false));
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeRef CFRetain(CFTypeRef object) {
    objects().retain(object);
    return object;
}

void CFRelease(CFTypeRef object) {
    objects().release(object);
}

CFTypeID CFGetTypeID(CFTypeRef object) {
    return static_cast<CFTypeID>(objects().use(object).type);
}

CFTypeID CFStringGetTypeID() {
    return static_cast<CFTypeID>(FakeType::string);
}

CFTypeID CFNumberGetTypeID() {
    return static_cast<CFTypeID>(FakeType::number);
}

CFTypeID CFBooleanGetTypeID() {
    return static_cast<CFTypeID>(FakeType::boolean);
}

CFTypeID CFDataGetTypeID() {
    return static_cast<CFTypeID>(FakeType::data);
}

CFTypeID CFArrayGetTypeID() {
    return static_cast<CFTypeID>(FakeType::array);
}

CFTypeID CFDictionaryGetTypeID() {
    return static_cast<CFTypeID>(FakeType::dictionary);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count, CFStringEncoding encoding,
                                    Boolean) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
    if (fails("CFStringCreateWithBytes") || encoding != kCFStringEncodingUTF8 || !isValidUtf8(text)) {
        return nullptr;
    }
    return as<CFStringRef>(objects().makeString(text));
}

CFIndex CFStringGetLength(CFStringRef string) {
    return unitsIn(textOf(string));
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding, UInt8, Boolean, UInt8* buffer,
                         CFIndex capacity, CFIndex* usedLength) {
    const std::string& text = textOf(string);
    *usedLength = 0;
    if (fails("CFStringGetBytes") || objects().use(string).hasUnpairedSurrogate || range.location != 0 ||
        range.length != unitsIn(text)) {
        return 0;
    }
    *usedLength = static_cast<CFIndex>(text.size());
    if (buffer != nullptr) {
        *usedLength = std::min(*usedLength, capacity);
        std::memcpy(buffer, text.data(), static_cast<std::size_t>(*usedLength));
    }
    return range.length;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    if (fails("CFNumberCreate")) {
        return nullptr;
    }
    if (type == kCFNumberDoubleType) {
        return as<CFNumberRef>(objects().makeValue({*static_cast<const double*>(value)}));
    }
    return as<CFNumberRef>(objects().makeValue({*static_cast<const std::int64_t*>(value)}));
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
    return std::holds_alternative<double>(objects().use(number, FakeType::number).value);
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    const FakeObject& object = objects().use(number, FakeType::number);
    if (fails("CFNumberGetValue")) {
        return false;
    }
    if (const auto* const fraction = std::get_if<double>(&object.value)) {
        std::memcpy(value, fraction, sizeof *fraction);
        return type == kCFNumberDoubleType;
    }
    const auto integer = std::get<std::int64_t>(object.value);
    std::memcpy(value, &integer, sizeof integer);
    return type == kCFNumberSInt64Type;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    return std::get<bool>(objects().use(boolean, FakeType::boolean).value);
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
    if (fails("CFDataCreate")) {
        return nullptr;
    }
    return as<CFDataRef>(objects().makeValue({std::vector<std::uint8_t>(bytes, bytes + length)}));
}

CFIndex CFDataGetLength(CFDataRef data) {
    return std::ssize(std::get<std::vector<std::uint8_t>>(objects().use(data, FakeType::data).value));
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    return std::get<std::vector<std::uint8_t>>(objects().use(data, FakeType::data).value).data();
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    return std::ssize(objects().use(array, FakeType::array).children);
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    return objects().use(array, FakeType::array).children.at(static_cast<std::size_t>(index));
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
    if (fails("CFDictionaryCreate")) {
        return nullptr;
    }
    auto* const dictionary = objects().make(FakeType::dictionary);
    if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks || valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
        return as<CFDictionaryRef>(dictionary);  // would not retain anything
    }
    for (CFIndex index = 0; index < count; ++index) {
        for (const void* object : {keys[index], values[index]}) {
            objects().retain(object);
            dictionary->children.push_back(&objects().use(object));
        }
    }
    return as<CFDictionaryRef>(dictionary);
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
    return std::ssize(objects().use(dictionary, FakeType::dictionary).children) / 2;
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    return valueUnderKey(objects().use(dictionary, FakeType::dictionary), textOf(static_cast<CFStringRef>(key)));
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
    const auto& children = objects().use(dictionary, FakeType::dictionary).children;
    for (std::size_t index = 0; index + 1 < children.size(); index += 2) {
        keys[index / 2] = children[index];
        values[index / 2] = children[index + 1];
    }
}

}  // extern "C"
