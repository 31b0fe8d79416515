#pragma once

#include <QIcon>
#include <QQuickImageProvider>

// The symbols the pages name ("checkmark.circle.fill", "xmark", …) as pictures drawn from the
// desktop's icon theme, with a small picture of our own where the theme has none. QML asks for
// "image://symbol/<name>".
class SymbolImageProvider : public QQuickImageProvider {
public:
    static inline const QString providerID = QStringLiteral("symbol");

    SymbolImageProvider();

    // The theme's icon for the symbol, or ours; a null icon for a name that isn't a symbol.
    static QIcon icon(const QString& symbol);

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;
};
