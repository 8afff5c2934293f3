// SPDX-License-Identifier: MIT
/// The names of the rows as shaped text, for a painter that draws mostly the same rows in each frame.
#pragma once

#include <QFont>
#include <QHash>
#include <QObject>
#include <QRect>
#include <QString>
#include <QTextLayout>

#include <memory>
#include <vector>

class QPainter;

namespace nodebrowser
{

/// Draws the same pixels as QPainter::drawText() with Qt::AlignLeft and Qt::AlignVCenter. A text of the frame before is
/// not shaped again. Shaping is most of the work of drawing, so scrolling by three rows shapes three names. It holds a
/// few screens of texts, and forgets them when the fonts of the system change.
class RowTexts : public QObject
{
    Q_OBJECT

public:
    RowTexts();

    /// Call it before the first text of each frame.
    void BeginFrame(const QPainter& in_painter);

    void Draw(QPainter& io_painter, const QRect& in_rect, const QString& in_text);

    /// How many texts were shaped so far.
    unsigned GetShapings() const { return m_shapings; }

public Q_SLOTS:
    void Clear();

private:
    struct Shaped
    {
        std::shared_ptr<QTextLayout> m_layout;
        unsigned m_frame = 0; ///< the last frame that drew it
    };

    const QTextLayout& Find(const QPainter& in_painter, const QString& in_text);
    void DropUnused();

    double FindTop(QPainter& io_painter, const QRect& in_rect, const QString& in_text, const QTextLine& in_line);

    /// The toolkit's distance from the upper edge of a rectangle to a line of text, for a line and a rectangle of these
    /// heights.
    struct Top
    {
        double m_ascent;
        double m_descent;
        int m_rectHeight;
        double m_top;
    };

    QFont m_font;
    std::vector<Top> m_tops; // mostly one entry
    int m_resolution = 0;    // of the paint device, in dots per inch
    QHash<QString, Shaped> m_texts;
    unsigned m_frame = 0;
    unsigned m_shapings = 0;
};

} // namespace nodebrowser
