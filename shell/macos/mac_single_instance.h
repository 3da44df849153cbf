#pragma once

#include "shell/single_instance.h"

#include <QLockFile>
#include <QString>

#include <chrono>
#include <functional>

namespace kestro {

/// One instance for each user: the first one holds a lock file, which does not outlive its process. The system
/// starts only one process of a bundle, but a program can also be started by its path. Where the file cannot be
/// written, every instance is the first. Main thread.
class MacSingleInstance final : public SingleInstance {
public:
    /// Calls `showDashboard` if another instance holds the lock. That one may be about to end and no longer
    /// listen, so this one then takes its place if it gets the lock within `patience`.
    MacSingleInstance(const QString& lockFile, const std::function<void()>& showDashboard,
                      std::chrono::milliseconds patience = std::chrono::seconds(1));

    /// The user's lock file. Creates its folder.
    static QString defaultLockFile();

    bool isFirst() const override { return isFirst_; }
    void release() override { lock_.unlock(); }

private:
    bool take(std::chrono::milliseconds patience);

    QLockFile lock_;
    bool isFirst_ = false;
};

}  // namespace kestro
