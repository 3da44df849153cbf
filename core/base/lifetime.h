#pragma once

#include <memory>

namespace kestro {

/// Lets deferred work check whether its owner still exists. The owner keeps a Lifetime as its last member; the
/// work keeps `watch()` and does nothing once it has expired. Main thread only.
class Lifetime {
public:
    std::weak_ptr<const void> watch() const { return token_; }

private:
    std::shared_ptr<const void> token_ = std::make_shared<char>();
};

}  // namespace kestro
