#include "tests/platform/macos/fakes/fake_objects.h"

#include <type_traits>

namespace kestro::fakes {

namespace {

constexpr std::size_t remembered = 5000;

template <typename... Kinds>
struct Overloaded : Kinds... {
    using Kinds::operator()...;
};
template <typename... Kinds>
Overloaded(Kinds...) -> Overloaded<Kinds...>;

FakeObject constantBoolean(bool flag) {
    FakeObject object;
    object.type = FakeType::boolean;
    object.isConstant = true;
    object.value = flag;
    return object;
}

}  // namespace

FakeObjects::FakeObjects() = default;

FakeObjects::~FakeObjects() = default;

FakeObject* FakeObjects::constant(bool flag) {
    static FakeObject constantTrue = constantBoolean(true);
    static FakeObject constantFalse = constantBoolean(false);
    return flag ? &constantTrue : &constantFalse;
}

FakeObject* FakeObjects::make(FakeType type) {
    auto object = std::make_unique<FakeObject>();
    object->type = type;
    auto* const pointer = object.get();
    alive_.emplace(pointer, std::move(object));
    return pointer;
}

FakeObject* FakeObjects::makeString(std::string_view utf8) {
    auto* const object = make(FakeType::string);
    object->value = std::string(utf8);
    return object;
}

FakeObject* FakeObjects::makeValue(const FakeValue& value) {
    const auto simple = [this](FakeType type, const auto& content) {
        auto* const object = make(type);
        object->value = content;
        return object;
    };
    return std::visit(Overloaded{
                          [&](OddObject) { return make(FakeType::odd); },
                          [&](bool flag) { return constant(flag); },
                          [&](std::int64_t number) { return simple(FakeType::number, number); },
                          [&](double number) { return simple(FakeType::number, number); },
                          [&](const std::string& text) { return simple(FakeType::string, text); },
                          [&](const std::vector<std::uint8_t>& bytes) { return simple(FakeType::data, bytes); },
                          [&](UnpairedSurrogate) {
                              auto* const object = makeString("?");
                              object->hasUnpairedSurrogate = true;
                              return object;
                          },
                          [&](const FakeList& list) {
                              auto* const object = make(FakeType::array);
                              for (const auto& element : list) {
                                  object->children.push_back(makeValue(element));
                              }
                              return object;
                          },
                          [&](const FakeDictionary& dictionary) {
                              auto* const object = make(FakeType::dictionary);
                              for (const auto& [key, element] : dictionary) {
                                  object->children.push_back(makeString(key));
                                  object->children.push_back(makeValue(element));
                              }
                              return object;
                          },
                      },
                      value.content);
}

FakeValue FakeObjects::valueOf(const FakeObject& object) {
    FakeValue result;
    std::visit(
        [&result](const auto& content) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(content)>, std::monostate>) {
                result.content = content;
            }
        },
        object.value);
    if (object.type == FakeType::dictionary) {
        FakeDictionary dictionary;
        for (std::size_t index = 0; index + 1 < object.children.size(); index += 2) {
            dictionary[std::get<std::string>(object.children[index]->value)] =
                valueOf(*object.children[index + 1]);
        }
        result.content = std::move(dictionary);
    }
    return result;
}

FakeObject& FakeObjects::use(CFTypeRef object, FakeType type) {
    auto* const known = static_cast<const FakeObject*>(object);
    if (known != constant(true) && known != constant(false) && !alive_.contains(object)) {
        misuse_.emplace_back("uses an object that is not alive");
        return misused_ = FakeObject();
    }
    if (type != FakeType::odd && known->type != type) {
        misuse_.push_back("uses an object of type " + std::to_string(static_cast<int>(known->type)) + " as " +
                          std::to_string(static_cast<int>(type)));
        return misused_ = FakeObject();
    }
    return const_cast<FakeObject&>(*known);
}

void FakeObjects::retain(CFTypeRef object) {
    ++use(object).references;
}

void FakeObjects::release(CFTypeRef object) {
    FakeObject& used = use(object);
    if (used.isConstant || --used.references > 0 || &used == &misused_) {
        return;
    }
    const auto children = std::move(used.children);
    auto found = alive_.find(object);
    dead_.push_back(std::move(found->second));
    alive_.erase(found);
    for (const auto* child : children) {
        release(child);
    }
    if (dead_.size() > remembered) {
        dead_.pop_front();
    }
}

}  // namespace kestro::fakes
