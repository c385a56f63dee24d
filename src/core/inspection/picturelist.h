#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

// The pictures of a page: what the collecting script found, and the generated page that
// lists each picture address once, sorted, with thumbnail, size and alt texts.
namespace PictureList {

// One element that shows pictures, as found in the page.
struct Element
{
    enum class Kind { Img, Picture, Input, Css };
    Kind kind = Kind::Img;
    QString src; // resolved address; for Css the computed background-image value
    QString srcset; // as written
    QString current; // the candidate the engine chose
    QString base; // the document's base address, for the srcset candidates
    QString alt;
    int width = 0; // natural size of the chosen picture, 0 when unknown
    int height = 0;
};

struct Page
{
    QString url;
    QString title;
    bool html = false;
    int unreadableFrames = 0;
    QList<Element> elements;
};

// The candidate addresses of a srcset attribute, resolved against `base`.
QStringList srcsetCandidates(const QString &srcset, const QUrl &base);
// The addresses in a CSS image value (its url(...) entries), gradients left out.
QStringList cssUrls(const QString &value);

// One picture address with all that is known of it.
struct Picture
{
    QString address;
    int width = 0;
    int height = 0;
    QStringList alts;
    QStringList kinds;
};
// Every picture address of the elements once, in ascending ordinal order.
QList<Picture> pictures(const QList<Element> &elements);

QString render(const Page &page);

} // namespace PictureList
