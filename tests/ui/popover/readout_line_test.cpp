#include "ui/popover/readout_line.h"

#include <QApplication>
#include <QPaintEvent>

#include <gtest/gtest.h>

namespace kestro {
namespace {

/// Records the region that the line repaints.
class RecordingLine : public ReadoutLine {
public:
    using ReadoutLine::ReadoutLine;
    QRegion painted;

protected:
    void paintEvent(QPaintEvent* event) override {
        painted += event->region();
        ReadoutLine::paintEvent(event);
    }
};

class ReadoutLineTest : public testing::Test {
protected:
    ReadoutLineTest() {
        line.resize(200, 14);
        line.setSymbol(QStringLiteral("fanblades"), KestroTheme::textPrimary);
        line.setLabel(QStringLiteral("Left Fan"));
        line.setValue(QStringLiteral("1.4k"));
        line.show();
        settle();
    }

    void settle() {
        QApplication::processEvents();
        QApplication::sendPostedEvents();
    }

    QRect repainted() {
        settle();
        const QRect bounds = line.painted.boundingRect();
        line.painted = {};
        return bounds;
    }

    RecordingLine line{ReadoutLine::Style{
        9, {10, 14, QFont::Medium, 0, Ink(Qt::gray)}, {11, 14, QFont::DemiBold, 0, Ink(Qt::white)}}};
};

TEST_F(ReadoutLineTest, RepaintsOnlyTheValueThatChanged) {
    repainted();
    line.setValue(QStringLiteral("1.5k"));

    const QRect area = repainted();

    EXPECT_FALSE(area.isEmpty());
    EXPECT_GE(area.left(), 165);
}

TEST_F(ReadoutLineTest, RepaintsNothingForTheSameValue) {
    repainted();
    line.setValue(QStringLiteral("1.4k"));
    line.setLabel(QStringLiteral("Left Fan"));
    line.setValueInk(Ink(Qt::white));
    line.setSymbol(QStringLiteral("fanblades"), KestroTheme::textPrimary);

    EXPECT_TRUE(repainted().isEmpty());
}

TEST_F(ReadoutLineTest, RepaintsTheLabelWhenTheValueTakesItsRoom) {
    line.setLabel(QStringLiteral("A fan with a very long name indeed"));
    repainted();
    line.setValue(QStringLiteral("7,733 RPM"));

    EXPECT_LT(repainted().left(), 60);
}

TEST_F(ReadoutLineTest, RepaintsOnlyTheValueBesideALabelThatFillsItsRoom) {
    const TextStyle style{9, 14, QFont::Medium, 0, Ink(Qt::gray)};
    RecordingLine limited{ReadoutLine::Style{0, style, style, 60}};
    limited.resize(300, 14);
    limited.setLabel(QStringLiteral("A cluster with a very long name indeed"));
    limited.setValue(QStringLiteral("12%"));
    limited.show();
    settle();
    limited.painted = {};

    limited.setValue(QStringLiteral("14%"));
    settle();

    EXPECT_FALSE(limited.painted.isEmpty());
    EXPECT_GT(limited.painted.boundingRect().left(), 60);
}

TEST_F(ReadoutLineTest, ExposesPrefixLabelAndValue) {
    line.setSpokenPrefix(QStringLiteral("Cooling"));

    EXPECT_EQ(line.accessibleInfo().name, QStringLiteral("Cooling, Left Fan, 1.4k"));
}

TEST_F(ReadoutLineTest, OmitsAbsentPartsFromItsAccessibleName) {
    line.setLabel({});

    EXPECT_EQ(line.accessibleInfo().name, QStringLiteral("1.4k"));
}

}  // namespace
}  // namespace kestro
