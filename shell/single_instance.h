#pragma once

namespace kestro {

/// One running instance for each session. Main thread; lives as long as the application.
class SingleInstance {
public:
    virtual ~SingleInstance() = default;

    /// Whether this process is the session's first instance. If not, the first one has been asked to show its
    /// dashboard, and this process has nothing left to do.
    virtual bool isFirst() const = 0;

    /// Lets another process become the first instance from now on.
    virtual void release() = 0;
};

}  // namespace kestro
