#include "shell/linux/gtk_theme.h"

#include "tests/support/temporary_directory.h"

#include <QDir>
#include <QFile>
#include <QString>

#include <gtest/gtest.h>

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
    install(QStringLiteral("Plain/gtk-3.0/gtk.css"));

    EXPECT_TRUE(isGtkThemeDark(QStringLiteral("Bird"), true));
    EXPECT_FALSE(isGtkThemeDark(QStringLiteral("Bird"), false));
    EXPECT_FALSE(isGtkThemeDark(QStringLiteral("Plain"), true));
}

TEST_F(GtkTheme, IsDarkByItsName) {
    install(QStringLiteral("Bird-Dark/gtk-3.0/gtk.css"));

    EXPECT_TRUE(isGtkThemeDark(QStringLiteral("Bird-Dark"), false));
}

TEST_F(GtkTheme, IsTheLightDefaultWhereItIsNotInstalled) {
    EXPECT_FALSE(isGtkThemeDark(QStringLiteral("Bird-dark"), true));
    EXPECT_FALSE(isGtkThemeDark(QStringLiteral("../themes"), true));
}

TEST_F(GtkTheme, MayBePartOfTheToolkit) {
    for (const char* name : {"", "Adwaita"}) {
        EXPECT_TRUE(isGtkThemeDark(QString::fromLatin1(name), true)) << name;
        EXPECT_FALSE(isGtkThemeDark(QString::fromLatin1(name), false)) << name;
    }
    for (const bool prefersDark : {false, true}) {
        EXPECT_FALSE(isGtkThemeDark(QStringLiteral("HighContrast"), prefersDark));
        EXPECT_TRUE(isGtkThemeDark(QStringLiteral("HighContrastInverse"), prefersDark));
    }
}

}  // namespace
}  // namespace kestro
