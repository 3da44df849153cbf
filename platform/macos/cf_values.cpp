#include "platform/macos/cf_values.h"

#include <cassert>

namespace kestro {

namespace {

CFValue numberOf(CFNumberRef number) {
    if (CFNumberIsFloatType(number)) {
        double value = 0;
        return CFNumberGetValue(number, kCFNumberDoubleType, &value) ? CFValue(value) : CFValue();
    }
    std::int64_t value = 0;
    return CFNumberGetValue(number, kCFNumberSInt64Type, &value) ? CFValue(value) : CFValue();
}

CFTypeRef makeNumber(CFNumberType type, const void* value) {
    return CFNumberCreate(kCFAllocatorDefault, type, value);
}

struct ObjectMaker {
    CFTypeRef operator()(std::monostate) const { return nullptr; }
    CFTypeRef operator()(bool flag) const { return CFRetain(flag ? kCFBooleanTrue : kCFBooleanFalse); }
    CFTypeRef operator()(std::int64_t number) const { return makeNumber(kCFNumberSInt64Type, &number); }
    CFTypeRef operator()(double number) const { return makeNumber(kCFNumberDoubleType, &number); }
    CFTypeRef operator()(const std::string& text) const { return makeString(text).take(); }
    CFTypeRef operator()(const std::vector<std::uint8_t>& bytes) const {
        return CFDataCreate(kCFAllocatorDefault, bytes.data(), static_cast<CFIndex>(bytes.size()));
    }
};

}  // namespace

std::optional<std::string> textOf(CFTypeRef object) {
    if (object == nullptr || CFGetTypeID(object) != CFStringGetTypeID()) {
        return std::nullopt;
    }
    const auto string = static_cast<CFStringRef>(object);
    const CFRange whole{0, CFStringGetLength(string)};
    CFIndex size = 0;
    if (CFStringGetBytes(string, whole, kCFStringEncodingUTF8, 0, false, nullptr, 0, &size) != whole.length) {
        return std::nullopt;
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(string, whole, kCFStringEncodingUTF8, 0, false, reinterpret_cast<UInt8*>(text.data()), size,
                     &size);
    return text;
}

CFValue valueOf(CFTypeRef object) {
    if (object == nullptr) {
        return {};
    }
    const CFTypeID type = CFGetTypeID(object);
    if (type == CFBooleanGetTypeID()) {
        return CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0;
    }
    if (type == CFNumberGetTypeID()) {
        return numberOf(static_cast<CFNumberRef>(object));
    }
    if (type == CFDataGetTypeID()) {
        const auto data = static_cast<CFDataRef>(object);
        const UInt8* const bytes = CFDataGetBytePtr(data);
        return std::vector<std::uint8_t>(bytes, bytes + CFDataGetLength(data));
    }
    const auto text = textOf(object);
    return text ? CFValue(*text) : CFValue();
}

CFOwned<CFStringRef> makeString(std::string_view utf8) {
    return CFOwned<CFStringRef>(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(utf8.data()),
                                static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

CFOwned<CFTypeRef> makeObject(const CFValue& value) {
    return CFOwned<CFTypeRef>(std::visit(ObjectMaker{}, value));
}

CFTypeRef valueUnder(CFDictionaryRef dictionary, std::string_view key) {
    const auto name = makeString(key);
    return name ? CFDictionaryGetValue(dictionary, name.get()) : nullptr;
}

CFOwned<CFDictionaryRef> makeDictionary(const std::vector<CFTypeRef>& keys, const std::vector<CFTypeRef>& values) {
    assert(keys.size() == values.size());
    // The function only reads the arrays.
    return CFOwned<CFDictionaryRef>(CFDictionaryCreate(
        kCFAllocatorDefault, const_cast<const void**>(keys.data()), const_cast<const void**>(values.data()),
        static_cast<CFIndex>(keys.size()), &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

}  // namespace kestro
