// SPDX-License-Identifier: MIT
/// Uses each of the three installed libraries, the icons and the version. The argument is the package's version. Ends
/// with 0 when all of them are there, else says what is missing.
#include <datamodel/itemlibrary.h>
#include <memorymodel/datalayer.h>
#include <nodebrowser/nodebrowser.h>
#include <nodebrowser/typeselector.h>
#include <nodebrowser/version.h>
#include <nodebrowser/vireodialog.h>

#include <QApplication>
#include <QPixmap>

#include <cstdio>
#include <string>

namespace
{

/// What a derived browser sees of the rows.
class Browser : public CNodeBrowser
{
public:
    Browser() : CNodeBrowser(eConfigNodeBrowser) {}
    using CNodeBrowser::GetRowCount;

private:
    void OnDeleteItem() override {}
};

int Fail(const char* in_reason)
{
    std::fprintf(stderr, "%s\n", in_reason);
    return 1;
}

std::string Join(int in_major, int in_minor, int in_patch)
{
    return std::to_string(in_major) + '.' + std::to_string(in_minor) + '.' + std::to_string(in_patch);
}

} // namespace

#if NODEBROWSER_VERSION < NODEBROWSER_VERSION_CHECK(0, 1, 0) || \
    NODEBROWSER_VERSION >= NODEBROWSER_VERSION_CHECK(99, 0, 0)
#error "The version is out of order"
#endif
static_assert(NODEBROWSER_VERSION_CHECK(1, 0, 0) > NODEBROWSER_VERSION_CHECK(0, 255, 255), "major comes first");
static_assert(NODEBROWSER_VERSION_CHECK(0, 1, 0) > NODEBROWSER_VERSION_CHECK(0, 0, 255), "minor comes second");

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const std::string version = argc > 1 ? argv[1] : "";
    if (NODEBROWSER_VERSION_STRING != version ||
        Join(NODEBROWSER_VERSION_MAJOR, NODEBROWSER_VERSION_MINOR, NODEBROWSER_VERSION_PATCH) != version)
        return Fail("the headers have another version than the package");

    memorymodel::DataLayer layer;
    memorymodel::Library& library = layer.AddLibrary("Nodes");
    library.Add(memorymodel::NewItem::Compound("Blend"));
    library.Add(memorymodel::NewItem::Solver("Noise"));
    if (!vireo::datamodel::GetTOC(library.GetAccessor()).IsValid())
        return Fail("the data layer does not answer");
    Browser browser;
    browser.SetItemLibrary(library.GetAccessor());
    browser.resize(200, 200);
    browser.show();
    QPixmap picture(browser.size());
    browser.render(&picture);
    if (browser.GetRowCount() != 2)
        return Fail("the browser does not show the rows");
    if (QPixmap(QString::fromLatin1(":/compound.png")).isNull())
        return Fail("the icons are not there");
    CTypeSelector selector(&browser);
    CVireoCompoundCreateDialog create(library.GetAccessor(), "compound", "compound", false);
    CItemTagsEditorDialog tags("Blend", "a;b");
    return tags.GetItemTags() == "a;b" ? 0 : Fail("the tags dialog loses its tags");
}
