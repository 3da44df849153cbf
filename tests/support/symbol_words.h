#pragma once

#include "tests/support/places.h"
#include "ui/symbols/symbol_painter.h"

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QString>

#include <gtest/gtest.h>

namespace kestro {

/// Words by the path of their file, relative to the root.
using WordsByFile = QMap<QString, QSet<QString>>;

/// The single-word string literals in the sources of a folder, by file path relative to the root.
inline WordsByFile wordsBelow(const QString& folder) {
    WordsByFile words;
    const QRegularExpression word(QStringLiteral("\"([a-z][A-Za-z0-9.]*)\""));
    const QString root = QString::fromStdString(sourceTree() + "/");
    QDirIterator files(root + folder, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        static const QRegularExpression include(QStringLiteral("^#include .*$"),
                                                QRegularExpression::MultilineOption);
        auto matches = word.globalMatch(QString::fromUtf8(file.readAll()).remove(include));
        while (matches.hasNext()) {
            words[file.fileName().sliced(root.size())].insert(matches.next().captured(1));
        }
    }
    return words;
}

/// A missing drawing is noticed only on the screen, so every word that looks like a symbol name must have one: in
/// the files below `folder` except for `otherWords`; the words of the files in `foreign` are identifiers of other
/// programs, none of which may be a symbol name.
inline void expectOnlySymbolNames(const QString& folder, const WordsByFile& otherWords,
                                  const QSet<QString>& foreign) {
    const WordsByFile words = wordsBelow(folder);
    for (auto file = words.begin(); file != words.end(); ++file) {
        const bool isForeign = foreign.contains(file.key());
        for (const QString& word : file.value() - otherWords.value(file.key())) {
            EXPECT_EQ(SymbolPainter::contains(word), !isForeign)
                << file.key().toStdString() << " names " << word.toStdString();
        }
    }
}

}  // namespace kestro
