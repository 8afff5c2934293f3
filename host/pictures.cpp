// SPDX-License-Identifier: MIT
/// Takes the pictures of the manual: the window of the reference host with its sample library, and what opens from it.
///
///     nodebrowser-pictures FOLDER [LIBRARY SEARCH NODE…]
///
/// With a library of documents it also takes the window with that one: with what is found for a search, and some of its
/// nodes in the graph.
///
/// Style, colours and font are those of the toolkit itself, so that the pictures are the same on each machine that has
/// the same toolkit.

#include "host/graphcanvas.h"
#include "host/librarybrowser.h"
#include "host/mainwindow.h"
#include "host/samplelibrary.h"
#include "host/theme.h"
#include "host/versionfollower.h"
#include "memorymodel/datalayer.h"
#include "nodebrowser/dragformat.h"
#include "nodebrowser/rowlayout.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <iterator>

using vireo::datamodel::ItemID;

namespace
{

const QSize gWindowSize(1000, 640);
const QSize gBrowserSize(300, 331); // twelve rows
const QSize gMenuSize(440, 331);
const int gListTop = nodebrowser::gListTop + nodebrowser::gTabBarRoom;
const int gPollInterval = 10; // milliseconds
const int gPatience = 1000;   // polls

const QPoint gPositions[] = {QPoint(170, 170), QPoint(170, 350), QPoint(470, 230), QPoint(470, 400)};

/// The window, and a person who works with it.
class Photographer
{
public:
    Photographer(const QDir& in_folder) : m_folder(in_folder), m_window(m_layer, host::AddSampleLibrary(m_layer))
    {
        m_window.resize(gWindowSize);
        m_window.show();
        Settle();
    }

    /// \return whether all pictures could be taken and written
    bool TakeAll()
    {
        FillGraph({QStringLiteral("Fractal Noise"), QStringLiteral("Cell Noise 2D"), QStringLiteral("Blend"),
                   QStringLiteral("Pi")});
        SearchFor(QStringLiteral("noise"));
        Save("host", m_window.grab());
        Save("search", GrabBrowser());
        TakeMenu();
        TakeDialogs();

        const QPalette light = QApplication::palette();
        QApplication::setPalette(host::DarkPalette());
        SearchFor(QStringLiteral("noise"));
        Save("dark", m_window.grab());
        QApplication::setPalette(light);
        return m_good;
    }

    /// \return whether the picture could be taken and written
    bool TakeLibrary(const QString& in_path, const QString& in_search, const QStringList& in_nodes)
    {
        QString error;
        if (!m_window.Open(in_path, &error))
        {
            Fail(error);
            return false;
        }
        FillGraph(in_nodes);
        SearchFor(in_search);
        host::WaitForStates(m_window.GetLibrary());
        Save("library", m_window.grab());
        return m_good;
    }

private:
    host::LibraryBrowser& GetBrowser() { return m_window.GetBrowser(); }

    QPixmap GrabBrowser() { return GetBrowser().grab(QRect(QPoint(), gBrowserSize)); }

    /// Lets the window paint itself, with the states that it asked for.
    void Settle()
    {
        QApplication::processEvents();
        m_layer.GetSourceControl().DeliverRequestedStates();
        QApplication::processEvents();
    }

    void FillGraph(const QStringList& in_nodes)
    {
        host::GraphCanvas* const canvas = m_window.findChild<host::GraphCanvas*>();
        const QPoint* position = std::begin(gPositions);
        for (const QString& node : in_nodes)
        {
            const ItemID item = m_window.GetLibrary().FindByName(node.toLatin1().constData());
            if (!item.IsValid() || position == std::end(gPositions))
                return Fail(QStringLiteral("there is no \"%1\", or no room for it").arg(node));
            QMimeData data;
            data.setData(nodebrowser::GetDragFormat(), nodebrowser::EncodeDrag(item));
            QDragEnterEvent enter(*position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(canvas->viewport(), &enter);
            QDropEvent drop(*position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(canvas->viewport(), &drop);
            ++position;
        }
    }

    QPoint PositionOfRow(int in_row) const
    {
        return QPoint(120, gListTop + in_row * nodebrowser::gRowHeight + nodebrowser::gRowHeight / 2);
    }

    void Press(int in_row, Qt::MouseButton in_button)
    {
        const QPoint position = PositionOfRow(in_row);
        QMouseEvent press(QEvent::MouseButtonPress, position, GetBrowser().mapToGlobal(position), in_button, in_button,
                          Qt::NoModifier);
        QApplication::sendEvent(&GetBrowser(), &press);
        Settle();
    }

    void SearchFor(const QString& in_text)
    {
        GetBrowser().SelectTab(2);
        GetBrowser().Search(in_text);
        Settle();
        Press(0, Qt::LeftButton);
    }

    /// The context menu, over the browser that it belongs to.
    void TakeMenu()
    {
        const int row = 0;
        const QPoint corner = GetBrowser().mapTo(&m_window, QPoint());
        QPixmap picture = m_window.grab(QRect(corner, gMenuSize));
        WhenOpen(QApplication::activePopupWidget, [&](QWidget& in_menu) {
            QPainter(&picture).drawPixmap(PositionOfRow(row), in_menu.grab());
            in_menu.close();
        });
        Press(row, Qt::RightButton);
        Save("menu", picture);
    }

    void TakeDialogs()
    {
        GetBrowser().SelectTab(0);
        GetBrowser().Search(QStringLiteral("clouds"));
        Settle();
        Press(0, Qt::LeftButton);
        TakeDialog("newcompound", GetBrowser(), "OnNewCompound");
        TakeDialog("rename", GetBrowser(), "OnRenameItem");
        TakeDialog("tags", GetBrowser(), "OnEditItemTags");
        TakeDialog("typeselector", m_window, "OnChooseType");
    }

    void TakeDialog(const char* in_name, QObject& in_receiver, const char* in_slot)
    {
        QPixmap picture;
        WhenOpen(QApplication::activeModalWidget, [&](QWidget& in_dialog) {
            Settle();
            picture = in_dialog.grab();
            static_cast<QDialog&>(in_dialog).reject();
        });
        QMetaObject::invokeMethod(&in_receiver, in_slot);
        Save(in_name, picture);
    }

    /// Waits for a window inside its own event loop.
    static void WhenOpen(const std::function<QWidget*()>& in_find, const std::function<void(QWidget&)>& in_action,
                         int in_patience = gPatience)
    {
        QTimer::singleShot(gPollInterval, [=] {
            QWidget* const window = in_find();
            if (window && window->isVisible())
                in_action(*window);
            else if (in_patience > 0)
                WhenOpen(in_find, in_action, in_patience - 1);
        });
    }

    void Save(const char* in_name, const QPixmap& in_picture)
    {
        const QString path = m_folder.filePath(QLatin1String(in_name) + QStringLiteral(".png"));
        // The text is drawn in shades of grey, and no part of a picture shines through.
        if (in_picture.isNull() || !in_picture.toImage().convertToFormat(QImage::Format_RGB888).save(path, "PNG", 0))
            Fail(QStringLiteral("%1 was not taken").arg(path));
    }

    void Fail(const QString& in_reason)
    {
        m_good = false;
        std::fputs(qPrintable(QStringLiteral("nodebrowser-pictures: %1\n").arg(in_reason)), stderr);
    }

    bool m_good = true;
    const QDir m_folder;
    memorymodel::DataLayer m_layer;
    host::MainWindow m_window;
};

} // namespace

int main(int in_argc, char** in_argv)
{
    QApplication application(in_argc, in_argv);
    const QStringList arguments = QApplication::arguments();
    const int least = 4; // with a library
    if (in_argc != 2 && in_argc < least)
    {
        std::fputs("usage: nodebrowser-pictures FOLDER [LIBRARY SEARCH NODE…]\n", stderr);
        return 2;
    }
    const QTemporaryDir settings; // the user's stay as they are
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(QPalette(QColor(239, 239, 239)));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    QApplication::setCursorFlashTime(0);
    Photographer photographer(QDir(arguments.at(1)));
    const bool isGood =
        photographer.TakeAll() &&
        (in_argc < least || photographer.TakeLibrary(arguments.at(2), arguments.at(3), arguments.mid(least)));
    return isGood ? 0 : 1;
}
