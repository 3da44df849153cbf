#pragma once

#include "tests/desktop/desktop_session.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <optional>
#include <vector>

namespace kestro {

/// One object of a program as a screen reader sees it.
struct SpokenObject {
    QString service;
    QString path;
    QString role;
    QString name;
    bool isShowing = false;
    bool isChecked = false;
    bool isFocusable = false;
    std::vector<SpokenObject> children;

    /// The first object below this one whose name starts with that.
    const SpokenObject* find(const QString& start) const;

    /// This object and all below it, in reading order.
    std::vector<const SpokenObject*> all() const;
};

/// A change that a program announced: a state such as "checked", now on or off, or a property such as
/// "accessible-value".
struct ChangeAnnouncement {
    QString path;
    QString detail;
    bool isOn = false;
};

/// A screen reader on the session's accessibility bus, which it starts. Make it before the program starts.
class AccessibilityClient : public QObject {
    Q_OBJECT

public:
    explicit AccessibilityClient(const DesktopSession& session);
    ~AccessibilityClient() override;

    /// Whether there is a bus to listen on.
    bool isConnected() const { return bus().isConnected(); }

    /// Everything that Kestro shows; nothing while it has not said that it is there.
    std::optional<SpokenObject> program() const;

    /// Does the object's first action, as a click does.
    void press(const SpokenObject& object) const;

    /// Moves an object with a value, as a slider, to that one.
    void setValue(const SpokenObject& object, double value) const;

    /// From now on changes of states and of values are heard.
    void listen();
    const std::vector<ChangeAnnouncement>& heard() const { return heard_; }

private Q_SLOTS:
    void onChange(const QDBusMessage& event);

private:
    QDBusConnection bus() const { return QDBusConnection(connectionName_); }
    QDBusMessage call(const QString& service, const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments = {}) const;
    SpokenObject read(const QString& service, const QString& path) const;
    std::vector<SpokenObject> readChildren(const QString& service, const QString& path) const;

    QString connectionName_;
    std::vector<ChangeAnnouncement> heard_;
};

}  // namespace kestro
