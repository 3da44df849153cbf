#pragma once

#include "tests/desktop/desktop_session.h"

#include <QByteArray>
#include <QString>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kestro {

/// The real program on a private desktop.
class ShellFixture : public testing::Test {
protected:
    explicit ShellFixture(DesktopPanel panel = DesktopPanel::none, QSize screen = DesktopSession::screenSize);

    /// Starts the program and waits until its readout shows figures on the strip or in the panel. Throws what it
    /// printed if it does not, which ends the test.
    void launch(const QStringList& variables = {}, KestroProgram program = KestroProgram::underTest);

    /// The same, and waits until the panel has drawn the item at a place: a click before that meets an empty
    /// panel.
    void launchWithItemAt(QPoint place);

    /// Writes a word into the command file once the previous one has been consumed.
    void command(const QByteArray& word);

    /// Waits until all previous words have been performed.
    void finishCommands();

    /// Unmaps a window without the program's knowledge.
    void unmap(const DesktopWindow& window) const;

    /// Posts a notification as any process of the session can.
    void notify(const QString& member, const QVariantList& arguments = {});

    /// The argument that selects a settings tab.
    static QVariantList atTab(const QVariant& tab);

    /// The visible window with exactly that title; absent if there is none.
    std::optional<DesktopWindow> window(const QString& title) const;
    std::optional<QRect> frame(const QString& title) const;

    bool appears(const QString& title) const;
    bool disappears(const QString& title) const;

    /// Waits until the window has the expected frame, and returns its final frame.
    QRect settledFrame(const QString& title, const QRect& expected) const;

    /// Whether the window has a state that the window manager has set, such as "_NET_WM_STATE_ABOVE".
    bool hasState(const QString& title, const QByteArray& state) const;

    void doubleClick(QPoint position) const;

    /// Presses at one point, moves until the window follows, and releases at another point.
    void drag(const QString& title, QPoint from, QPoint to) const;

    /// Waits for the program to exit; false on a timeout.
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

    /// The state and the output of the program and the panel, and its items.
    std::string whyThereAreNoFigures() const;

    DesktopPanel panel_;
};

}  // namespace kestro
