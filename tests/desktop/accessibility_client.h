#pragma once

#include "tests/desktop/desktop_session.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QRect>
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
    std::vector<SpokenObject> children;  ///< of an object that shows

    /// The first object below this one whose name starts with `start`.
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

/// A screen reader on the session's accessibility bus, which it starts. Create it before the program starts.
class AccessibilityClient : public QObject {
    Q_OBJECT

public:
    explicit AccessibilityClient(const DesktopSession& session);
    ~AccessibilityClient() override;

    /// Whether there is a bus to listen on.
    bool isConnected() const { return bus().isConnected(); }

    /// Everything that Kestro shows; absent until it has registered.
    std::optional<SpokenObject> program() const;

    /// The visible objects of the window with that title, in reading order.
    std::vector<SpokenObject> shownIn(const QString& window) const;

    /// The object's area on the screen.
    QRect frame(const SpokenObject& object) const;

    /// Performs the object's first action, as a click does.
    void press(const SpokenObject& object) const;

    /// Sets the value of an object such as a slider.
    void setValue(const SpokenObject& object, double value) const;

    /// Starts recording changes of states, names and values.
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
