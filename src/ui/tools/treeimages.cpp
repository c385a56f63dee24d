#include "ui/tools/treeimages.h"

#include "core/model/booktreemodel.h"
#include "ui/browser/sharedicons.h"

#include <QStyle>

QIcon TreeImages::icon(const QString &image)
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
    return SharedIcons::themed(QLatin1String(found.theme), found.fallback);
}

void TreeImages::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const bool damaged = !index.data(BookTreeModel::DamagedRole).toString().isEmpty();
    option->icon = icon(
        damaged ? QStringLiteral("warning") : index.data(BookTreeModel::ImageRole).toString());
    option->features |= QStyleOptionViewItem::HasDecoration;
}
