#pragma once

#include <QProxyStyle>

namespace kestro {

/// Measures and paints the rows of PopupMenu. Rows are 24 high, separators 9; the check is at x = 10–26, the text
/// starts at 30.
class MenuStyle : public QProxyStyle {
    Q_OBJECT

public:
    /// Properties of a menu's actions. The plain title is the action's data.
    static constexpr const char* headerProperty = "kestroMenuHeader";
    static constexpr const char* shortcutProperty = "kestroMenuShortcut";

    /// On an action: its symbol's name. On a menu: true when any entry has a symbol.
    static constexpr const char* symbolProperty = "kestroMenuSymbol";

    static constexpr double cornerRadius = 8;

    /// The width that an entry needs from edge to edge. A shortcut needs room only beside its own title.
    static int rowWidth(const QString& title, const QString& shortcut, bool hasSymbols);

    /// The shared instance; destroyed with the application.
    static MenuStyle& shared();

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;

private:
    MenuStyle();
};

}  // namespace kestro
