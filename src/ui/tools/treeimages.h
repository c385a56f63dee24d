#pragma once

#include <QStyledItemDelegate>

// Draws the bookmark tree's images ("Archiv", "Dir", "OpenDir", "Url", "xml") from the
// model's image names, and a warning image on a folder whose file was damaged.
class TreeImages final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static QIcon icon(const QString &image);

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};
