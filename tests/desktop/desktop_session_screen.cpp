#include "tests/desktop/desktop_session.h"
#include "tests/desktop/sway.h"
#include "tests/support/places.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <stdexcept>

namespace kestro {

bool DesktopSession::startCompositor(QSize screen) {
    failure_ = Sway::missing();
    if (!failure_.isEmpty()) {
        return false;
    }
    sway_ = std::make_unique<Sway>(screen, environment_);
    failure_ = sway_->failure();
    if (!failure_.isEmpty()) {
        return false;
    }
    environment_.insert(sway_->clientVariables());
    if (panel_ == DesktopPanel::waybarBesideX11) {
        const QString display = sway_->display();
        environment_.insert(QStringLiteral("DISPLAY"), display);
        failure_ = display.isEmpty() ? QStringLiteral("sway offers no X server") : QString();
    }
    return failure_.isEmpty();
}

QImage DesktopSession::screenshot(const QString& name) const {
    const QString file = path(QStringLiteral("screenshot.png"));
    QFile::remove(file);
    if (sway_) {
        output(QStringLiteral("grim"), {file});
    } else {
        output(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"), file});
    }
    const QImage picture(file);
    if (picture.isNull()) {
        throw std::runtime_error("no picture of the screen: " + name.toStdString());
    }
    QFile::remove(file);
    const QString folder = QString::fromStdString(buildTree() + "/tests/pictures");
    QDir().mkpath(folder);
    picture.save(folder + QLatin1Char('/') + name + QStringLiteral(".png"));
    return picture;
}

bool DesktopSession::showsAnItemAt(QPoint place) const {
    const QRect area(place - QPoint(15, 8), QSize(30, 16));
    const QImage part = screenshot(QStringLiteral("panel-item")).copy(area);
    for (int row = 0; row < part.height(); ++row) {
        for (int column = 1; column < part.width(); ++column) {
            if (part.pixel(column, row) != part.pixel(0, row)) {
                return true;
            }
        }
    }
    return false;
}

void DesktopSession::moveTo(QPoint position) const {
    output(QStringLiteral("xdotool"),
           {QStringLiteral("mousemove"), QString::number(position.x()), QString::number(position.y())});
}

void DesktopSession::click(QPoint position, int button) const {
    moveTo(position);
    output(QStringLiteral("xdotool"), {QStringLiteral("click"), QString::number(button)});
}

void DesktopSession::key(const QString& name) const {
    output(QStringLiteral("xdotool"), {QStringLiteral("key"), name});
}

std::vector<DesktopWindow> DesktopSession::windows() const {
    std::vector<DesktopWindow> found;
    if (sway_) {
        for (const Sway::Window& window : sway_->windows()) {
            if (kestro_ != nullptr && window.pid == kestro_->processId()) {
                found.push_back({QString(), window.title, window.frame});
            }
        }
        return found;
    }
    const QByteArray identifiers =
        output(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                           QStringLiteral("--class"), QStringLiteral("^kestro$")});
    for (const QByteArray& identifier : identifiers.split('\n')) {
        if (identifier.isEmpty()) {
            continue;
        }
        const QString window = QString::fromLatin1(identifier);
        const QByteArray title = output(QStringLiteral("xdotool"), {QStringLiteral("getwindowname"), window});
        const QByteArray geometry = output(
            QStringLiteral("xdotool"), {QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window});
        const auto value = [&](const char* name) {
            const QRegularExpression line(QString::fromLatin1(name) + QStringLiteral("=(-?\\d+)"));
            return line.match(QString::fromLatin1(geometry)).captured(1).toInt();
        };
        found.push_back({window, QString::fromUtf8(title).trimmed(),
                         QRect(value("X"), value("Y"), value("WIDTH"), value("HEIGHT"))});
    }
    return found;
}

std::optional<DesktopWindow> DesktopSession::strip() const {
    static const QRegularExpression figure(QStringLiteral("\\d%"));
    for (const DesktopWindow& window : windows()) {
        if (figure.match(window.title).hasMatch()) {
            return window;
        }
    }
    return std::nullopt;
}

QString DesktopSession::windowProperty(const DesktopWindow& window, const QString& name) const {
    const QByteArray line = output(QStringLiteral("xprop"), {QStringLiteral("-id"), window.identifier, name});
    return QString::fromUtf8(line.mid(line.indexOf('=') + 1)).trimmed();
}

}  // namespace kestro
