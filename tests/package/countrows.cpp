// SPDX-License-Identifier: MIT
/// Prints how many rows a browser shows that is a window of its own: "countrows WINDOW [PICTURE]", with the number that
/// the X server knows the window by. Ends with 1 when there is no picture of it, or when there is ink below a gap.
#include "nodebrowser/rowlayout.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QStringList>

#include <cstdio>

namespace
{

const int gFirstRow = nodebrowser::gListTop + nodebrowser::gTabBarRoom;

/// Whether a row's icon and name are there: points that are far from the colour of the row's last free column.
bool HasInk(const QImage& in_picture, int in_row)
{
    const int top = gFirstRow + in_row * nodebrowser::gRowHeight;
    const int right = in_picture.width() * 3 / 4;
    int points = 0;
    for (int y = top + 2; y < top + nodebrowser::gRowHeight - 2; ++y)
        for (int x = 2; x < right; ++x)
            points += qAbs(qGray(in_picture.pixel(x, y)) - qGray(in_picture.pixel(right, y))) > 60;
    return points > 20;
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const WId window = arguments.value(1).toULongLong();
    const QImage picture = QGuiApplication::primaryScreen()->grabWindow(window).toImage();
    picture.save(arguments.value(2));
    const int all = (picture.height() - gFirstRow) / nodebrowser::gRowHeight;
    if (all < 1)
        return 1;
    int rows = 0;
    while (rows < all && HasInk(picture, rows))
        ++rows;
    for (int below = rows; below < all; ++below)
        if (HasInk(picture, below))
            return 1;
    std::printf("%d\n", rows);
    return 0;
}
