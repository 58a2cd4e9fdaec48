#include "tests/support/contrast.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace mact {
namespace {

double Linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double LuminanceOf(const QColor& colour) {
    return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
           0.0722 * Linear(colour.blueF());
}

/// `text` as it looks on `background` if it lets that through.
QColor Blended(const QColor& text, const QColor& background) {
    const float share = text.alphaF();
    const auto mixed = [share](float front, float back) { return front * share + back * (1 - share); };
    return QColor::fromRgbF(mixed(text.redF(), background.redF()), mixed(text.greenF(), background.greenF()),
                            mixed(text.blueF(), background.blueF()));
}

/// Draws everything into a picture, except for texts, which it notes.
class ApartEngine : public QPaintEngine {
public:
    explicit ApartEngine(PaintedWindow& result) : QPaintEngine(AllFeatures), m_result(result) {}

    bool begin(QPaintDevice*) override { return m_painter.begin(&m_result.Background); }
    bool end() override { return m_painter.end(); }
    Type type() const override { return User; }

    void updateState(const QPaintEngineState& now) override {
        m_painter.setTransform(now.transform());
        m_painter.setPen(now.pen());
        m_painter.setBrush(now.brush());
        m_painter.setBrushOrigin(now.brushOrigin());
        m_painter.setOpacity(now.opacity());
        m_painter.setCompositionMode(now.compositionMode());
        m_painter.setRenderHints(m_painter.renderHints(), false);
        m_painter.setRenderHints(now.renderHints());
        if (now.state() & DirtyClipPath) m_painter.setClipPath(now.clipPath(), now.clipOperation());
        if (now.state() & DirtyClipRegion) m_painter.setClipRegion(now.clipRegion(), now.clipOperation());
        if (now.state() & DirtyClipEnabled) m_painter.setClipping(now.isClipEnabled());
    }
    void drawPath(const QPainterPath& path) override {
        InSystemClip([&] { m_painter.drawPath(path); });
    }
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        InSystemClip([&] {
            if (mode == PolylineMode)
                m_painter.drawPolyline(points, count);
            else
                m_painter.drawPolygon(points, count);
        });
    }
    void drawPixmap(const QRectF& to, const QPixmap& pixmap, const QRectF& from) override {
        InSystemClip([&] { m_painter.drawPixmap(to, pixmap, from); });
    }
    void drawImage(const QRectF& to, const QImage& image, const QRectF& from,
                   Qt::ImageConversionFlags flags) override {
        InSystemClip([&] { m_painter.drawImage(to, image, from, flags); });
    }
    void drawTextItem(const QPointF& at, const QTextItem& item) override {
        if (item.text().trimmed().isEmpty()) return;
        const QRectF box(at.x(), at.y() - item.ascent(), item.width(), item.ascent() + item.descent());
        // Without its highest and lowest line, where letters leave room and the outline of a selected line
        // may be.
        QRect place = m_painter.transform().mapRect(box).toAlignedRect().adjusted(0, 1, 0, -1);
        if (m_painter.hasClipping())
            place &= m_painter.transform().map(m_painter.clipRegion()).boundingRect();
        if (!systemClip().isEmpty()) place &= systemClip().boundingRect();
        if (!place.isEmpty()) m_result.Texts.push_back({item.text(), m_painter.pen().color(), place});
    }

private:
    /// The part of the window that the widget may draw into, in the window's coordinates.
    template <class Draw> void InSystemClip(Draw draw) {
        m_painter.save();
        if (const QRegion clip = systemClip(); !clip.isEmpty()) {
            const QTransform transform = m_painter.transform();
            m_painter.resetTransform();
            m_painter.setClipRegion(clip, m_painter.hasClipping() ? Qt::IntersectClip : Qt::ReplaceClip);
            m_painter.setTransform(transform);
        }
        draw();
        m_painter.restore();
    }

    PaintedWindow& m_result;
    QPainter m_painter;
};

class ApartDevice : public QPaintDevice {
public:
    explicit ApartDevice(PaintedWindow& result) : m_result(result), m_engine(result) {}
    QPaintEngine* paintEngine() const override { return &m_engine; }

protected:
    int metric(PaintDeviceMetric metric) const override {
        const QImage& picture = m_result.Background;
        switch (metric) {
        case PdmWidth:
            return picture.width();
        case PdmHeight:
            return picture.height();
        case PdmDpiX:
        case PdmPhysicalDpiX:
            return picture.logicalDpiX();
        case PdmDpiY:
        case PdmPhysicalDpiY:
            return picture.logicalDpiY();
        case PdmDepth:
            return picture.depth();
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return QPaintDevice::metric(metric);
        }
    }

private:
    PaintedWindow& m_result;
    mutable ApartEngine m_engine;
};

} // namespace

double ContrastOf(const QColor& first, const QColor& second) {
    const auto [darker, lighter] = std::minmax({LuminanceOf(first), LuminanceOf(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

PaintedWindow PaintApart(QWidget& window) {
    PaintedWindow result;
    result.Background = QImage(window.size(), QImage::Format_ARGB32_Premultiplied);
    result.Background.fill(window.palette().color(QPalette::Window));
    ApartDevice device(result);
    window.render(&device);
    return result;
}

double ContrastOf(const PaintedText& text, const QImage& background) {
    std::vector<double> ratios;
    const QRect place = text.Place & background.rect();
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x) {
            const QColor behind = background.pixelColor(x, y);
            ratios.push_back(ContrastOf(Blended(text.Colour, behind), behind));
        }
    if (ratios.empty()) return 21; // nothing of it can be seen
    const auto tenth = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 10);
    std::ranges::nth_element(ratios, tenth);
    return *tenth;
}
} // namespace mact
