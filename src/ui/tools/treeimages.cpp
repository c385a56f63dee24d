#include "ui/tools/treeimages.h"

#include "core/model/booktreemodel.h"

#include <QApplication>
#include <QStyle>

QIcon TreeImages::icon(const QString &image, const QStyle *style)
{
    // The desktop's theme where it has the image, the style's own otherwise.
    struct Image
    {
        const char *theme;
        QStyle::StandardPixmap fallback;
    };
    static const QHash<QString, Image> images = {
        {QStringLiteral("Archiv"), {"folder-bookmark", QStyle::SP_DirHomeIcon}},
        {QStringLiteral("Dir"), {"folder", QStyle::SP_DirClosedIcon}},
        {QStringLiteral("OpenDir"), {"folder-open", QStyle::SP_DirOpenIcon}},
        {QStringLiteral("Url"), {"text-html", QStyle::SP_FileLinkIcon}},
        {QStringLiteral("xml"), {"application-rss+xml", QStyle::SP_FileDialogInfoView}},
        {QStringLiteral("warning"), {"dialog-warning", QStyle::SP_MessageBoxWarning}},
    };
    const Image found = images.value(image, {"", QStyle::SP_FileIcon});
    return QIcon::fromTheme(QLatin1String(found.theme), style->standardIcon(found.fallback));
}

void TreeImages::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const QStyle *style = option->widget ? option->widget->style() : QApplication::style();
    const bool damaged = !index.data(BookTreeModel::DamagedRole).toString().isEmpty();
    option->icon = icon(
        damaged ? QStringLiteral("warning") : index.data(BookTreeModel::ImageRole).toString(),
        style);
    option->features |= QStyleOptionViewItem::HasDecoration;
}
