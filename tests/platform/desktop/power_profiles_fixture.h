#pragma once

#include "platform/desktop/power_profiles.h"
#include "tests/support/event_waiting.h"
#include "tests/support/fake_service.h"
#include "tests/support/places.h"
#include "tests/support/private_bus.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace kestro::test {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

inline const QString newName = QStringLiteral("org.freedesktop.UPower.PowerProfiles");
inline const QString oldName = QStringLiteral("net.hadess.PowerProfiles");
inline constexpr std::string_view header = "System-wide power settings:\nCurrently in use:\n";

inline std::string reportOf(char mode) {
    return std::string(header) + " powermode            " + mode + "\n";
}

/// A daemon whose profile is a variable.
class FakeDaemon {
public:
    FakeDaemon(const QDBusConnection& connection, const QString& name)
        : name_(name),
          service(connection, name,
                  {{QStringLiteral("GetAll"),
                    [this](const QDBusMessage& call) { return call.createReply(properties()); }},
                   {QStringLiteral("Set"), [this](const QDBusMessage& call) {
                        wasInteractive = call.isInteractiveAuthorizationAllowed();
                        setProfile(call.arguments().at(2).value<QDBusVariant>().variant());
                        return call.createReply();
                    }}}) {}

    QVariant profile() const {
        const std::lock_guard lock(mutex_);
        return profile_;
    }
    void setProfile(const QVariant& profile) {
        const std::lock_guard lock(mutex_);
        profile_ = profile;
    }

    /// The profiles that the daemon lists, as dictionaries; by default it lists none.
    void setOffered(const QStringList& names) {
        qDBusRegisterMetaType<QList<QVariantMap>>();
        QList<QVariantMap> list;
        for (const auto& name : names) {
            list.push_back(
                {{QStringLiteral("Profile"), name}, {QStringLiteral("Driver"), QStringLiteral("tuned")}});
        }
        const std::lock_guard lock(mutex_);
        offered_ = QVariant::fromValue(list);
    }

    /// Announces a change, sent by `from`.
    void announce(const QVariantMap& changes, const QStringList& invalidated, const QDBusConnection& from) const {
        auto signal = QDBusMessage::createSignal(
            QLatin1Char('/') + QString(name_).replace(QLatin1Char('.'), QLatin1Char('/')),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
        signal << name_ << changes << invalidated;
        ASSERT_TRUE(from.send(signal));
    }
    void announce(const QVariant& value) const {
        announce({{QStringLiteral("ActiveProfile"), value}}, {}, service.connection());
    }

private:
    QVariantMap properties() const {
        const std::lock_guard lock(mutex_);
        QVariantMap all{{QStringLiteral("ActiveProfile"), profile_}};
        if (offered_.isValid()) {
            all.insert(QStringLiteral("Profiles"), offered_);
        }
        return all;
    }

    QString name_;
    mutable std::mutex mutex_;
    QVariant profile_ = QStringLiteral("balanced");
    QVariant offered_;

public:
    std::atomic<bool> wasInteractive = false;
    FakeService service;
};

/// Power profiles on a private system bus and a simulated kernel.
class PowerProfilesTest : public testing::Test {
protected:
    PowerProfilesTest() {
        paths.root = directory.path().toStdString();
        fs::create_directories(kernelFile().parent_path());
    }

    fs::path kernelFile() const { return fs::path(paths.root) / "sys/firmware/acpi/platform_profile"; }

    void setKernel(const std::string& profile, const std::string& choices) {
        std::ofstream(kernelFile()) << profile << '\n';
        std::ofstream(kernelFile().string() + "_choices") << choices << '\n';
    }

    static std::string contentsOf(const fs::path& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// Replaces pkexec by a script.
    void setPkexec(const std::string& script) {
        const fs::path program = fs::path(paths.root) / "pkexec";
        std::ofstream(program) << "#!/bin/sh\n" << script << '\n';
        fs::permissions(program, fs::perms::owner_all);
        paths.pkexec = program;
    }

    PowerProfiles& profiles() {
        if (!profiles_) {
            profiles_ = std::make_unique<PowerProfiles>(link, paths, timing);
        }
        return *profiles_;
    }

    /// Runs `call` on a background thread while the main thread's event loop keeps running.
    template <typename Call>
    auto inBackground(Call call) {
        auto future = std::async(std::launch::async, std::move(call));
        EXPECT_TRUE(waitUntil([&] { return future.wait_for(0s) == std::future_status::ready; }));
        return future.get();
    }

    std::string report() {
        return inBackground([&profiles = profiles()] { return profiles.pmsetReport(); });
    }

    void select(PowerProfile profile) {
        inBackground([&profiles = profiles(), profile] { profiles.select(profile); });
    }

    bool reports(const std::string& expected) {
        return waitUntil([&] { return report() == expected; });
    }

    bool failsWith(int mode, PowerModeConditions::Failure reason) {
        return waitUntil([&] {
            return profiles().conditions().failedSwitch == PowerModeConditions::FailedSwitch{mode, reason};
        });
    }

    // Beside the test programs, since programs in /tmp may be forbidden.
    QTemporaryDir directory{QString::fromStdString(buildTree()) + QStringLiteral("/power-XXXXXX")};
    PlatformProfile::Paths paths;
    PowerProfiles::Timing timing{20s, 20s};
    PrivateBus bus;
    QDBusConnection system = bus.connect();
    BusLink link{system,
                 [this] {
                     static int count = 0;
                     return QDBusConnection::connectToBus(bus.address(),
                                                          QStringLiteral("profiles-%1").arg(++count));
                 },
                 5ms};

private:
    std::unique_ptr<PowerProfiles> profiles_;
};

}  // namespace kestro::test
