#include "shell/linux/gtk_theme.h"

#include "tests/support/temporary_directory.h"

#include <QDir>
#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <optional>

namespace kestro {
namespace {

class GtkTheme : public testing::Test {
protected:
    GtkTheme() { qputenv("XDG_DATA_DIRS", QByteArray::fromStdString(data_.path())); }
    ~GtkTheme() override { qputenv("XDG_DATA_DIRS", before_); }

    void install(const QString& file) {
        const QString path = QString::fromStdString(data_ / "themes") + QLatin1Char('/') + file;
        QDir().mkpath(path.section(QLatin1Char('/'), 0, -2));
        QFile style(path);
        ASSERT_TRUE(style.open(QIODevice::WriteOnly));
    }

private:
    const TemporaryDirectory data_;
    const QByteArray before_ = qgetenv("XDG_DATA_DIRS");
};

TEST_F(GtkTheme, HasADarkVariantWhereItsStyleExists) {
    install(QStringLiteral("Bird/gtk-3.0/gtk.css"));
    install(QStringLiteral("Bird/gtk-3.20/gtk-dark.css"));

    EXPECT_EQ(isGtkThemeDark(QStringLiteral("Bird"), true), true);
    EXPECT_EQ(isGtkThemeDark(QStringLiteral("Bird"), false), false);
}

TEST_F(GtkTheme, DoesNotTellWithoutAVariant) {
    install(QStringLiteral("Plain/gtk-3.0/gtk.css"));

    EXPECT_EQ(isGtkThemeDark(QStringLiteral("Plain"), true), std::nullopt);
    EXPECT_EQ(isGtkThemeDark(QStringLiteral("Plain"), false), std::nullopt);
}

TEST_F(GtkTheme, IsDarkByItsName) {
    install(QStringLiteral("Bird-Dark/gtk-3.0/gtk.css"));

    EXPECT_EQ(isGtkThemeDark(QStringLiteral("Bird-Dark"), false), true);
}

TEST_F(GtkTheme, IsTheLightDefaultWhereItIsNotInstalled) {
    EXPECT_EQ(isGtkThemeDark(QStringLiteral("Bird-dark"), true), false);
    EXPECT_EQ(isGtkThemeDark(QStringLiteral("../themes"), true), false);
}

TEST_F(GtkTheme, MayBePartOfTheToolkit) {
    for (const char* name : {"", "Adwaita"}) {
        EXPECT_EQ(isGtkThemeDark(QString::fromLatin1(name), true), true) << name;
        EXPECT_EQ(isGtkThemeDark(QString::fromLatin1(name), false), false) << name;
    }
    for (const bool prefersDark : {false, true}) {
        EXPECT_EQ(isGtkThemeDark(QStringLiteral("HighContrast"), prefersDark), false);
        EXPECT_EQ(isGtkThemeDark(QStringLiteral("HighContrastInverse"), prefersDark), true);
    }
}

TEST_F(GtkTheme, IsNamedByTheSettingsFile) {
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    const TemporaryDirectory config;
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(config.path()));
    config.write("gtk-3.0/settings.ini", "[Settings]\ngtk-theme-name=Bird\ngtk-font-name=Sans 10\n");

    EXPECT_EQ(themeOfGtkSettingsFile(), QStringLiteral("Bird"));

    qputenv("XDG_CONFIG_HOME", before);
}

}  // namespace
}  // namespace kestro
