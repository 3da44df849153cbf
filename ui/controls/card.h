#pragma once

#include <QWidget>

namespace kestro {

/// A card on the glass: the surface colour at 0.93 with the shared outline. A plain container; fill it with a
/// layout or children. Also the background of the dashboard's sections.
class Card : public QWidget {
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Takes ownership of `content` and fills the card with it.
    explicit Card(QWidget* content, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace kestro
