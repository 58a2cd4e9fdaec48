#include "dialogs/pictures.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

#include <span>

// A static library's resources are missing without this call; the macro works only at global scope.
static void LoadPictures() {
    Q_INIT_RESOURCE(mact_pictures);
}

namespace mact {
namespace {

/// The accent colour of a drawing, for light and for dark windows.
constexpr QRgb Accents[] = {0xff1f7a8c, 0xff5cc3d8};

/// The file of a picture that make_pictures.sh has made.
QString PictureFile(const QString& name) {
    LoadPictures();
    return QStringLiteral(":/pictures/made/") + name + QStringLiteral(".png");
}

int Mix(int from, int to, int share) {
    return from + (to - from) * share / 255;
}

/// The mask in the current palette's colours: its opacity stays, its brightness is the share of the accent.
QImage Coloured(QImage mask, QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    const bool isDisabled = mode == QIcon::Disabled;
    const QRgb line =
        palette.color(isDisabled ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText).rgb();
    const bool isDark = palette.color(QPalette::Button).lightness() < 128;
    const QRgb accent = isDisabled ? line : Accents[isDark ? 1 : 0];
    for (int y = 0; y < mask.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(mask.scanLine(y));
        for (QRgb& pixel : std::span(row, static_cast<std::size_t>(mask.width()))) {
            const int share = qRed(pixel);
            pixel = qRgba(Mix(qRed(line), qRed(accent), share), Mix(qGreen(line), qGreen(accent), share),
                          Mix(qBlue(line), qBlue(accent), share), qAlpha(pixel));
        }
    }
    return mask;
}

/// Colours the mask anew each time, so that icons follow a change of the palette.
class LineIconEngine : public QIconEngine {
public:
    explicit LineIconEngine(const QString& file)
        : m_mask(QImage(file).convertToFormat(QImage::Format_ARGB32_Premultiplied)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QSize pixels = (QSizeF(rect.size()) * painter->device()->devicePixelRatioF()).toSize();
        const QImage mask = m_mask.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        painter->drawImage(rect, Coloured(mask.convertToFormat(QImage::Format_ARGB32), mode));
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
    QImage m_mask;
};

} // namespace

QIcon LineIcon(const QString& name) {
    return QIcon(new LineIconEngine(PictureFile(name)));
}

QIcon ColouredIcon(const QString& name) {
    return QIcon(PictureFile(name));
}

QIcon EmblemIcon() {
    QIcon icon;
    for (const char* size : {"16", "20", "24", "32", "40", "48", "64", "96", "128", "256"})
        icon.addFile(PictureFile(QStringLiteral("mact_") + QLatin1String(size)));
    return icon;
}

QIcon MainPicture() {
    QIcon icon;
    for (const char* times : {"1", "2", "3"})
        icon.addFile(PictureFile(QStringLiteral("picture_") + QLatin1String(times)));
    return icon;
}

void PictureView::SetPicture(const QIcon& picture) {
    m_picture = picture;
    update();
}

void PictureView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    m_picture.paint(&painter, rect());
}
} // namespace mact
