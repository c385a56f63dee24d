#pragma once

#include "core/model/layoutbook.h"

#include <QAbstractItemModel>

// The layout archive as a tree: the layouts by name (their description as tool tip)
// and, under each, its windows (title, address as tool tip). Every change is saved at
// once, so an arrangement the user stored survives a crash.
class LayoutTreeModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role {
        KindRole = Qt::UserRole + 1, // "Layout" or "Window"
        AddressRole, // a window's address
    };

    explicit LayoutTreeModel(LayoutBook &book, QObject *parent = nullptr);

    LayoutBook &book() const { return m_book; }

    // Reads the archive anew; false when it holds no layout.
    bool reload();
    // Why the last load or save went wrong, in the user's words; empty when it went well.
    QString problem() const;

    QModelIndex layoutIndex(qsizetype position) const;
    // The layout of a layout node, or of a window node's parent.
    const LayoutItem *layoutAt(const QModelIndex &index) const;
    // The window of a window node; nullptr for a layout node.
    const FensterInfo *windowAt(const QModelIndex &index) const;

    // A new layout of these windows at the end of the archive, saved; its node.
    QModelIndex addLayout(
        const QList<FensterInfo> &windows, const QString &name, const QString &info);
    // Removes the layout of a layout or window node with its file, and saves.
    bool deleteLayout(const QModelIndex &index);
    // Renames and describes the layout of a node, and saves.
    bool setProperties(const QModelIndex &index, const QString &name, const QString &info);
    // Sorts the layouts by name as a reader compares them (case and accents aside), and
    // saves.
    bool sortByName();

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    // A layout node has internalId 0; a window node its layout's row + 1.
    qsizetype layoutRowOf(const QModelIndex &index) const;

    LayoutBook &m_book;
};
