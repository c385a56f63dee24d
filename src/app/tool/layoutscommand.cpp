#include "app/tool/toolcontext.h"
#include "core/model/layout.h"
#include "core/model/layoutbook.h"

#include <QFileInfo>

namespace {

void reportMovedAside(ToolContext &context, const FileOutcome &outcome)
{
    if (outcome.wasMovedAside())
        context.err << "vantrell-tool: " << outcome.path
                    << " did not hold whole records and has been moved to "
                    << outcome.movedAsidePath << Qt::endl;
}

int list(ToolContext &context)
{
    LayoutBook book(context.dataFolder);
    book.LoadAllLayouts();
    for (const QString &moved : book.movedAsideFiles())
        context.err << "vantrell-tool: an invalid layout file has been moved to " << moved
                    << Qt::endl;
    if (!book.lastOutcome().ok())
        return context.fail(ToolContext::DataError,
            QStringLiteral("cannot read %1: %2")
                .arg(book.lastOutcome().path, book.lastOutcome().error));
    // One line per layout: position, sequence number, name, file, description, windows.
    for (qsizetype i = 0; i < book.colLayout.size(); ++i) {
        const LayoutItem &item = book.colLayout.at(i);
        context.out << "L\t" << (i + 1) << '\t' << item.Sequenz << '\t'
                    << ToolContext::escaped(item.LayoutName) << '\t' << item.FileName << '\t'
                    << ToolContext::escaped(item.Info) << '\t' << item.colFensterInfo.size()
                    << '\n';
    }
    context.out.flush();
    return ToolContext::Success;
}

int show(ToolContext &context, QString path)
{
    if (!QFileInfo::exists(path) && QFileInfo(path).isRelative())
        path = context.dataFolder + u'/' + path;
    if (!QFileInfo(path).isFile())
        return context.fail(
            ToolContext::DataError, QStringLiteral("there is no file %1").arg(path));
    QTextStream &out = context.out;
    if (Layout::isLayoutFileName(path)) {
        const Layout::ReadResult read = Layout::LoadLayout(path);
        reportMovedAside(context, read.outcome);
        if (!read.outcome.ok())
            return context.fail(ToolContext::DataError,
                QStringLiteral("cannot read %1: %2").arg(path, read.outcome.error));
        // number, left, top, width, height, address, first and third bar band, state, caption
        for (qsizetype i = 0; i < read.windows.size(); ++i) {
            const WindowDescription &w = read.windows.at(i);
            out << (i + 1) << '\t' << w.left << '\t' << w.top << '\t' << w.width << '\t' << w.height
                << '\t' << ToolContext::escaped(w.address) << '\t' << w.addressBarVisible << '\t'
                << w.toolbarVisible << '\t' << w.windowState << '\t'
                << ToolContext::escaped(w.caption) << '\n';
        }
    } else if (path.endsWith(QStringLiteral(".nlt"), Qt::CaseInsensitive)) {
        // Only a file named as the layout archive names its files: WLn.nlt.
        const QString name = QFileInfo(path).fileName();
        if (!ArchiveFiles::isOwnFileName(name, ArchiveFiles::FileKind::Layout))
            return context.fail(ToolContext::DataError,
                QStringLiteral("%1 is not named as a layout's file (WLn.nlt)").arg(name));
        LayoutItem item(QFileInfo(path).absolutePath());
        item.FileName = name;
        item.Sequenz = name.mid(2, name.size() - 6).toInt();
        const FileOutcome outcome = item.LoadAllFensterInfos();
        reportMovedAside(context, outcome);
        if (!outcome.ok())
            return context.fail(ToolContext::DataError,
                QStringLiteral("cannot read %1: %2").arg(path, outcome.error));
        // number, x, y, width, height, address, title, toolbar, address bar, state
        for (const FensterInfo &w : std::as_const(item.colFensterInfo)) {
            out << w.Nr << '\t' << w.x << '\t' << w.y << '\t' << w.Breite << '\t' << w.Hoehe << '\t'
                << ToolContext::escaped(w.URL) << '\t' << ToolContext::escaped(w.Titel) << '\t'
                << w.ToolbarVisible << '\t' << w.AdressbarVisible << '\t' << w.WindowState << '\n';
        }
    } else {
        return context.fail(
            ToolContext::UsageError, QStringLiteral("layouts show takes a .wlt or .nlt file"));
    }
    out.flush();
    return ToolContext::Success;
}
// Adds the windows of a layout file to the layout archive as a new layout.
int add(ToolContext &context, const QString &name, const QString &path, const QString &info)
{
    const Layout::ReadResult read = Layout::LoadLayout(path);
    reportMovedAside(context, read.outcome);
    if (!read.outcome.ok())
        return context.fail(ToolContext::DataError,
            QStringLiteral("cannot read %1: %2").arg(path, read.outcome.error));
    LayoutBook book(context.dataFolder);
    book.LoadAllLayouts();
    LayoutItem item;
    for (const WindowDescription &window : read.windows)
        item.colFensterInfo.append(Layout::toFensterInfo(window));
    const LayoutItem &added = book.AddLayout(std::move(item), name, info, 0);
    const QString fileName = added.FileName;
    if (!book.SaveAllLayouts())
        return context.fail(ToolContext::DataError,
            QStringLiteral("cannot write %1: %2")
                .arg(book.lastOutcome().path, book.lastOutcome().error));
    context.out << "added layout '" << name << "' with " << read.windows.size() << " windows as "
                << fileName << '\n';
    context.out.flush();
    return ToolContext::Success;
}
} // namespace

int runLayoutsCommand(ToolContext &context)
{
    const QString verb = context.arguments.value(0);
    if (verb == u"list" && context.arguments.size() == 1)
        return list(context);
    if (verb == u"show" && context.arguments.size() == 2)
        return show(context, context.arguments.at(1));
    if (verb == u"add" && (context.arguments.size() == 3 || context.arguments.size() == 5)
        && (context.arguments.size() == 3 || context.arguments.at(3) == u"--info"))
        return add(
            context, context.arguments.at(1), context.arguments.at(2), context.arguments.value(4));
    return context.fail(ToolContext::UsageError,
        QStringLiteral(
            "usage: layouts list | layouts show FILE | layouts add NAME FILE.wlt [--info TEXT]"));
}
