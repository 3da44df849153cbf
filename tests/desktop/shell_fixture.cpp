#include "tests/desktop/shell_fixture.h"

#include "tests/desktop/status_item_client.h"

#include <QDBusVariant>
#include <QFile>
#include <QThread>
#include <QVariantMap>

#include <stdexcept>

namespace kestro {

ShellFixture::ShellFixture(DesktopPanel panel, QSize screen) : session(panel, screen), panel_(panel) {}

void ShellFixture::launch(const QStringList& variables, KestroProgram program) {
    if (!session.failure().isEmpty()) {
        throw std::runtime_error(session.failure().toStdString());
    }
    kestro = &session.startKestro(variables, program);
    const auto hasEnded = [&] { return kestro->state() == QProcess::NotRunning; };
    if (!session.waitFor([&] { return showsFigures() || hasEnded(); }) || hasEnded()) {
        throw std::runtime_error(whyThereAreNoFigures());
    }
}

void ShellFixture::launchWithItemAt(QPoint place) {
    launch();
    if (!session.waitFor([&] { return session.showsAnItemAt(place); })) {
        throw std::runtime_error("the panel draws no item");
    }
}

std::string ShellFixture::whyThereAreNoFigures() const {
    std::string why = "Kestro shows no figures\nKestro " +
                      std::string(kestro->state() == QProcess::Running ? "runs: " : "has ended: ") +
                      kestro->readAll().toStdString();
    if (panel_ == DesktopPanel::none) {
        return why;
    }
    const StatusItemClient client(session);
    why += "\npanel: " + session.panelReport().toStdString() + "\nhost: " + (client.hasHost() ? "yes" : "no");
    for (const QString& item : client.items()) {
        why += "\nitem " + item.toStdString() + ' ' +
               client.property(item, QStringLiteral("Id")).toString().toStdString() + " \"" +
               client.label(item).toStdString() + '"';
    }
    return why;
}

bool ShellFixture::showsFigures() const {
    if (panel_ == DesktopPanel::none) {
        return session.strip().has_value();
    }
    // A panel that is starting may lose its items once and get new ones.
    const StatusItemClient client(session);
    const auto item = client.item(QStringLiteral("kestro-main"));
    return item && client.label(*item).contains(QLatin1Char('%'));
}

void ShellFixture::command(const QByteArray& word) {
    QFile file(commandFile());
    ASSERT_TRUE(session.waitFor([&] { return file.size() == 0; })) << "the previous word was not consumed";
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(word);
}

void ShellFixture::finishCommands() {
    // A word is consumed before it is performed, but after the preceding ones were performed.
    command("no command");
    ASSERT_TRUE(session.waitFor([&] { return QFile(commandFile()).size() == 0; }));
}

void ShellFixture::unmap(const DesktopWindow& window) const {
    session.output(QStringLiteral("xdotool"), {QStringLiteral("windowunmap"), window.identifier});
}

void ShellFixture::notify(const QString& member, const QVariantList& arguments) {
    QDBusMessage signal =
        QDBusMessage::createSignal(QStringLiteral("/kestro/notify"), QStringLiteral("kestro.notify"), member);
    signal.setArguments(arguments);
    session.bus().send(signal);
}

QVariantList ShellFixture::atTab(const QVariant& tab) {
    return {QVariantMap{{QStringLiteral("tab"), tab}}};
}

std::optional<DesktopWindow> ShellFixture::window(const QString& title) const {
    for (const DesktopWindow& window : session.windows()) {
        if (window.title == title) {
            return window;
        }
    }
    return std::nullopt;
}

std::optional<QRect> ShellFixture::frame(const QString& title) const {
    const auto found = window(title);
    return found ? std::optional(found->frame) : std::nullopt;
}

bool ShellFixture::appears(const QString& title) const {
    return session.waitFor([&] { return window(title).has_value(); });
}

bool ShellFixture::disappears(const QString& title) const {
    return session.waitFor([&] { return !window(title).has_value(); });
}

QRect ShellFixture::settledFrame(const QString& title, const QRect& expected) const {
    waitUntil([&] { return frame(title) == expected; });
    return frame(title).value_or(QRect());
}

bool ShellFixture::hasState(const QString& title, const QByteArray& state) const {
    const auto found = window(title);
    return found &&
           session.windowProperty(*found, QStringLiteral("_NET_WM_STATE")).contains(QString::fromLatin1(state));
}

void ShellFixture::doubleClick(QPoint position) const {
    session.moveTo(position);
    session.output(QStringLiteral("xdotool"),
                   {QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
                    QStringLiteral("--delay"), QStringLiteral("60"), QStringLiteral("1")});
}

void ShellFixture::drag(const QString& title, QPoint from, QPoint to) const {
    const auto before = frame(title);
    session.moveTo(from);
    session.output(QStringLiteral("xdotool"), {QStringLiteral("mousedown"), QStringLiteral("1")});
    // The window manager misses what the pointer does before it has grabbed it.
    waitUntil([&, steps = 0]() mutable {
        session.moveTo(from + QPoint(4, 4) * (1 + steps++ % 2));
        return frame(title) != before;
    });
    session.moveTo(to);
    session.output(QStringLiteral("xdotool"), {QStringLiteral("mouseup"), QStringLiteral("1")});
}

bool ShellFixture::ends() {
    return waitUntil([&] { return kestro->state() == QProcess::NotRunning; });
}

QString ShellFixture::preferences() const {
    QFile file(session.path(QStringLiteral("config/kestro/preferences.json")));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace kestro
