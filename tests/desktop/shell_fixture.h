#pragma once

#include "tests/desktop/desktop_session.h"

#include <QByteArray>
#include <QString>

#include <gtest/gtest.h>

#include <optional>

namespace kestro {

/// The real program on a desktop of its own.
class ShellFixture : public testing::Test {
protected:
    explicit ShellFixture(DesktopPanel panel = DesktopPanel::none);

    /// Starts the program and waits until its readout shows figures on the strip or in the panel.
    void launch(const QStringList& variables = {}, KestroProgram program = KestroProgram::underTest);

    /// Writes a word into the command file, once the word before it is consumed.
    void command(const QByteArray& word);

    /// Waits until every word before has been performed.
    void finishCommands();

    /// Takes a window off the screen behind the program's back.
    void unmap(const DesktopWindow& window) const;

    /// Posts a notification as any process of the session can.
    void notify(const QString& member, const QVariantList& arguments = {});

    /// The argument that names a settings tab.
    static QVariantList atTab(const QVariant& tab);

    /// The visible window with exactly that title; nothing while there is none.
    std::optional<DesktopWindow> window(const QString& title) const;
    std::optional<QRect> frame(const QString& title) const;

    bool appears(const QString& title) const;
    bool disappears(const QString& title) const;

    /// Waits until the window has that frame, and returns the frame that it has in the end.
    QRect settledFrame(const QString& title, const QRect& expected) const;

    /// Whether the window manager has the window in that state, such as "_NET_WM_STATE_ABOVE".
    bool hasState(const QString& title, const QByteArray& state) const;

    void doubleClick(QPoint position) const;

    /// Presses at one point, moves to another and releases there, in steps that a window manager follows.
    void drag(QPoint from, QPoint to) const;

    /// The program's end; false when it does not come.
    bool ends();

    QString preferences() const;

    const QString popover = QStringLiteral("Kestro");
    const QString dashboard = QStringLiteral("Kestro Studio Dashboard");
    const QString settings = QStringLiteral("Kestro Preferences");

    QString commandFile() const { return session.path(QStringLiteral("runtime/.kestro_cmd")); }

    DesktopSession session;
    QProcess* kestro = nullptr;

private:
    /// Whether the readout shows figures, on the strip or in the panel.
    bool showsFigures() const;

    DesktopPanel panel_;
};

}  // namespace kestro
