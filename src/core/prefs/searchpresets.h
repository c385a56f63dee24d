#pragma once

#include <QList>
#include <QString>

// Search engines offered in the settings; "%s" stands for the search term.
struct SearchPreset
{
    QString name;
    QString address;

    static const QList<SearchPreset> &all();
};
