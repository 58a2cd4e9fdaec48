#include "dialogs/pictures.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

// A static library's resources are missing without this call; the macro works only at global scope.
static void LoadPictures() {
    Q_INIT_RESOURCE(mact_pictures);
}

namespace mact {
namespace {

/// The accent colour of a drawing, for light and for dark windows.
constexpr const char* Accents[] = {"#1f7a8c", "#5cc3d8"};

/// The drawing in the current palette's colours.
QByteArray Coloured(QByteArray drawing, QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    const bool isDisabled = mode == QIcon::Disabled;
    const QColor line =
        palette.color(isDisabled ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText);
    const bool isDark = palette.color(QPalette::Button).lightness() < 128;
    const QByteArray accent = isDisabled ? line.name().toLatin1() : QByteArray(Accents[isDark ? 1 : 0]);
    drawing.replace("currentColor", line.name().toLatin1());
    drawing.replace("accentColor", accent);
    return drawing;
}

/// Draws anew each time, so that icons follow a change of the palette.
class LineIconEngine : public QIconEngine {
public:
    explicit LineIconEngine(QByteArray drawing) : m_drawing(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        QSvgRenderer renderer(Coloured(m_drawing, mode));
        renderer.render(painter, rect);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new LineIconEngine(*this); }

private:
    QByteArray m_drawing;
};

} // namespace

QString PictureFile(const QString& name) {
    LoadPictures();
    return QStringLiteral(":/pictures/") + name + QStringLiteral(".svg");
}

QIcon LineIcon(const QString& name) {
    QFile file(PictureFile(name));
    const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isOpen);
    return isOpen ? QIcon(new LineIconEngine(file.readAll())) : QIcon();
}

QIcon EmblemIcon() {
    return QIcon(PictureFile(QStringLiteral("mact")));
}
} // namespace mact
