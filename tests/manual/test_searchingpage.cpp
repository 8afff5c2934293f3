// SPDX-License-Identifier: MIT
/// The tables of the manual's page on searching, shown to a browser.
#include "tests/nodebrowser/support/browserfixture.h"
#include "tests/support/testmain.h"

#include <QFile>

#include <memory>

using memorymodel::NewItem;
using vireo::datamodel::ItemAccessor;

namespace
{

QString Text(const char* in_text)
{
    return QString::fromUtf8(in_text);
}

std::string Latin1(const QString& in_text)
{
    const QByteArray bytes = in_text.toLatin1();
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

QStringList Cells(const QString& in_line)
{
    QStringList cells = in_line.split(QLatin1Char('|'));
    for (int i = 0; i < cells.size(); ++i)
        cells[i] = cells.at(i).trimmed();
    return cells.mid(1, cells.size() - 2);
}

/// The rows of the first table below a heading, without its head.
QList<QStringList> Table(const QStringList& in_page, const char* in_heading)
{
    QList<QStringList> rows;
    int line = static_cast<int>(in_page.indexOf(Text(in_heading)));
    while (line >= 0 && line < in_page.size() && !in_page.at(line).startsWith(QLatin1Char('|')))
        ++line;
    for (; line >= 0 && line < in_page.size() && in_page.at(line).startsWith(QLatin1Char('|')); ++line)
        rows << Cells(in_page.at(line));
    return rows.mid(2);
}

NewItem MakeItem(const QString& in_kind, const std::string& in_name)
{
    if (in_kind == Text("solver"))
        return NewItem::Solver(in_name);
    if (in_kind == Text("compound"))
        return NewItem::Compound(in_name);
    if (in_kind == Text("signature"))
        return NewItem::Signature(in_name);
    if (in_kind == Text("constant"))
        return NewItem::GlobalConstant(in_name);
    if (in_kind == Text("type"))
        return NewItem::Type(in_name);
    qWarning("the page has an item of the kind \"%s\"", in_kind.toUtf8().constData());
    return NewItem::Type(in_name);
}

} // namespace

class TestSearchingPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QFile file(Text(SOURCE_FOLDER "/docs/searching.md"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        m_page = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));

        m_layer.reset(new memorymodel::DataLayer);
        m_library = &m_layer->AddLibrary("Page");
        const QList<QStringList> items = Table(m_page, "## The library of the examples");
        QVERIFY(items.size() >= 8);
        for (int i = 0; i < items.size(); ++i)
        {
            QCOMPARE(int(items.at(i).size()), 3);
            m_library->Add(MakeItem(items.at(i).at(1), Latin1(items.at(i).at(0))).Tags(Latin1(items.at(i).at(2))));
        }
        m_browser.reset(new ProbedBrowser);
        ShowLibrary(*m_browser, m_library->GetAccessor());
    }

    void cleanupTestCase()
    {
        m_browser.reset();
        m_layer.reset();
    }

    void examples_data()
    {
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QString>("rows");
        const QList<QStringList> examples = Table(m_page, "## Examples");
        QVERIFY(examples.size() >= 18);
        for (int i = 0; i < examples.size(); ++i)
        {
            QCOMPARE(int(examples.at(i).size()), 4);
            QString search = examples.at(i).at(0);
            search.replace(Text("\xE2\x90\xA3"), QString(QLatin1Char(' ')));
            const QString tab = examples.at(i).at(1);
            QTest::newRow((tab + QLatin1String(": ") + search).toUtf8().constData())
                << search << tab << examples.at(i).at(2);
        }
    }

    void examples()
    {
        QFETCH(QString, search);
        QFETCH(QString, tab);
        QFETCH(QString, rows);
        const QStringList tabs = QStringList() << Text("Nodes") << Text("Types") << Text("All");
        QVERIFY(tabs.contains(tab));
        m_browser->TabBar()->setCurrentIndex(static_cast<int>(tabs.indexOf(tab)));
        m_browser->SearchField().setText(search);
        Settle();
        QCOMPARE(Rows(), rows);
    }

private:
    /// The rows as the page writes them.
    QString Rows()
    {
        QStringList rows = m_browser->RowNames(m_library->GetAccessor());
        for (int row = 0; row < rows.size(); ++row)
        {
            ItemAccessor item = m_browser->GetRowItem(static_cast<std::uint64_t>(row));
            std::size_t score = 9999;
            m_browser->CompareToFilter(item, &score);
            rows[row] += QString::fromLatin1(" (%1)").arg(static_cast<int>(score));
        }
        return rows.isEmpty() ? Text("nothing") : rows.join(QLatin1String(", "));
    }

    QStringList m_page;
    std::unique_ptr<memorymodel::DataLayer> m_layer;
    memorymodel::Library* m_library = nullptr;
    std::unique_ptr<ProbedBrowser> m_browser;
};

NODEBROWSER_TEST_MAIN(TestSearchingPage)
#include "test_searchingpage.moc"
