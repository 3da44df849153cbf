#pragma once

#include "core/base/published.h"

namespace kestro::test {

/// A published value that a test may assign.
template <typename T>
class Assignable : public Published<T, Assignable<T>> {
    using Base = Published<T, Assignable<T>>;

public:
    using Base::Base;
    using Base::set;
    using Base::swapIn;
};

}  // namespace kestro::test
