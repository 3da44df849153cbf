#pragma once

#include <QWidget>

namespace kestro {

/// A well laid on the glass: the surface at 0.93 with the shared outline. A plain container; fill it with a
/// layout or children. Also the ground of the dashboard's sections.
class Card : public QWidget {
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Takes `content` over and fills the card with it.
    explicit Card(QWidget* content, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace kestro
