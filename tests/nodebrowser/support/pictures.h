// SPDX-License-Identifier: MIT
/// What widgets look like, pixel by pixel.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QRect>
#include <QStyle>
#include <QWidget>

/// A widget as it paints itself, together with the widgets on it.
inline QImage Picture(QWidget& in_widget)
{
    QImage picture(in_widget.size(), QImage::Format_RGB32);
    picture.fill(0);
    in_widget.render(&picture);
    return picture;
}

/// A widget as it paints itself, without the widgets on it.
inline QImage PictureWithoutChildren(QWidget& in_widget)
{
    QImage picture(in_widget.size(), QImage::Format_RGB32);
    picture.fill(0);
    in_widget.render(&picture, QPoint(), QRegion(), QWidget::RenderFlags(QWidget::DrawWindowBackground));
    return picture;
}

/// The smallest rectangle that holds every pixel of an area in which two pictures of one size differ.
inline QRect Difference(const QImage& in_left, const QImage& in_right, const QRect& in_area)
{
    QRect difference;
    const QRect area = in_area & in_left.rect() & in_right.rect();
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (in_left.pixel(x, y) != in_right.pixel(x, y))
                difference |= QRect(x, y, 1, 1);
    return difference;
}

inline QRect Difference(const QImage& in_left, const QImage& in_right)
{
    return Difference(in_left, in_right, in_left.rect());
}

/// How many pixels of an area have a colour.
inline int CountPixels(const QImage& in_picture, const QRect& in_area, QRgb in_colour)
{
    int count = 0;
    const QRect area = in_area & in_picture.rect();
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (in_picture.pixel(x, y) == in_colour)
                ++count;
    return count;
}

/// The colour of the band below the selected row.
inline QColor BandColour(const QWidget& in_widget)
{
    return in_widget.style()->standardPalette().color(QPalette::Active, QPalette::Highlight);
}

/// Gives a widget plain colours: black text on a ground that nothing else has the colour of. What a selection looks
/// like elsewhere in the window gets colours that no row may show.
inline void UsePlainColours(QWidget& in_widget)
{
    QPalette palette = in_widget.palette();
    palette.setColor(QPalette::Window, QColor(250, 250, 210));
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(255, 0, 255));
    palette.setColor(QPalette::HighlightedText, QColor(255, 0, 0));
    in_widget.setPalette(palette);
}
