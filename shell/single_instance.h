#pragma once

#include <functional>

namespace kestro {

/// One running instance for each session. Main thread; lives as long as the application.
class SingleInstance {
public:
    virtual ~SingleInstance() = default;

    /// Whether this process is the session's first instance.
    virtual bool isFirst() const = 0;

    /// Makes the first instance show its dashboard. `post` posts the notification for that, where one reaches the
    /// first instance. Returns once the request has been sent.
    virtual void callFirst(const std::function<void()>& post) = 0;

    /// Lets another process become the first instance from now on.
    virtual void release() = 0;
};

}  // namespace kestro
