#pragma once

#include "tests/desktop/desktop_session.h"
#include "tests/drills/machine_troubles.h"

#include <QStringList>

#include <chrono>

namespace kestro::drills {

/// Troubles for the programs of a session that are started with `variables`. The folder of preferences is the one
/// whose disk fails. The session outlives this object.
class TroubledSession {
public:
    explicit TroubledSession(const DesktopSession& session);
    ~TroubledSession();
    TroubledSession(const TroubledSession&) = delete;
    TroubledSession& operator=(const TroubledSession&) = delete;

    /// The environment of a program that has the troubles.
    const QStringList& variables() const { return variables_; }

    void setDisk(DiskTrouble trouble, std::chrono::milliseconds delay = {});

    /// What a suspended machine's clocks show when it wakes.
    void suspend(std::chrono::seconds time);

    /// Sets the wall clock forward or back.
    void setWall(std::chrono::seconds shift);

private:
    MachineTroubles* troubles_;
    QStringList variables_;
};

}  // namespace kestro::drills
