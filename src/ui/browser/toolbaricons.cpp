#include "ui/browser/toolbaricons.h"

#include "ui/browser/sharedicons.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <functional>

namespace {

constexpr int Size = 32;
const QColor Ink(55, 65, 80);
const QColor Paper(250, 250, 245);
const QColor Accent(49, 131, 255);

QIcon drawn(const std::function<void(QPainter &)> &draw)
{
    QPixmap picture(Size, Size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Ink, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    draw(painter);
    return QIcon(picture);
}

void magnifier(QPainter &p)
{
    p.setBrush(Paper);
    p.drawEllipse(QRectF(5, 5, 16, 16));
    p.setPen(QPen(Ink, 4, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(19, 19), QPointF(27, 27));
}

void twoWindows(QPainter &p)
{
    p.setBrush(Paper);
    p.drawRect(QRectF(10, 4, 18, 14));
    p.drawRect(QRectF(4, 12, 18, 14));
    p.setBrush(Accent);
    p.drawRect(QRectF(4, 12, 18, 4));
}

void envelope(QPainter &p)
{
    p.setBrush(Paper);
    p.drawRect(QRectF(3, 8, 26, 17));
    p.drawPolyline(QPolygonF({QPointF(3, 8), QPointF(16, 18), QPointF(29, 8)}));
}

void clock(QPainter &p)
{
    p.setBrush(Paper);
    p.drawEllipse(QRectF(4, 4, 24, 24));
    p.drawLine(QPointF(16, 16), QPointF(16, 9));
    p.drawLine(QPointF(16, 16), QPointF(21, 19));
}

void book(QPainter &p)
{
    p.setBrush(Paper);
    p.drawRect(QRectF(7, 4, 19, 24));
    p.setBrush(Accent);
    p.drawRect(QRectF(5, 4, 4, 24));
    p.setPen(QPen(Ink, 1.5));
    p.drawLine(QPointF(13, 11), QPointF(22, 11));
    p.drawLine(QPointF(13, 16), QPointF(22, 16));
}

void printer(QPainter &p)
{
    p.setBrush(Paper);
    p.drawRect(QRectF(9, 4, 14, 9));
    p.setBrush(QColor(200, 205, 215));
    p.drawRoundedRect(QRectF(3, 12, 26, 11), 2, 2);
    p.setBrush(Paper);
    p.drawRect(QRectF(9, 19, 14, 9));
}

void feed(QPainter &p)
{
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(240, 130, 20));
    p.drawRoundedRect(QRectF(3, 3, 26, 26), 5, 5);
    p.setBrush(Qt::white);
    p.drawEllipse(QRectF(8, 20, 5, 5));
    p.setPen(QPen(Qt::white, 3, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    p.drawArc(QRectF(-1, 9, 24, 24), 0, 90 * 16);
    p.drawArc(QRectF(-9, 1, 40, 40), 0, 90 * 16);
}

void drive(QPainter &p)
{
    p.setBrush(QColor(200, 205, 215));
    p.drawRoundedRect(QRectF(3, 10, 26, 13), 3, 3);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(60, 190, 90));
    p.drawEllipse(QRectF(22, 15, 4, 4));
}

struct Picture
{
    const char *theme;
    QStyle::StandardPixmap standard; // used when no drawing is given
    void (*draw)(QPainter &);
};

const QHash<QString, Picture> &pictures()
{
    static const QHash<QString, Picture> table = {
        {QStringLiteral("Back"), {"go-previous", QStyle::SP_ArrowBack, nullptr}},
        {QStringLiteral("Forward"), {"go-next", QStyle::SP_ArrowForward, nullptr}},
        {QStringLiteral("Stop"), {"process-stop", QStyle::SP_BrowserStop, nullptr}},
        {QStringLiteral("Refresh"), {"view-refresh", QStyle::SP_BrowserReload, nullptr}},
        {QStringLiteral("Home"), {"go-home", QStyle::SP_DirHomeIcon, nullptr}},
        {QStringLiteral("Search"), {"system-search", QStyle::SP_CustomBase, &magnifier}},
        {QStringLiteral("Clone"), {"window-new", QStyle::SP_CustomBase, &twoWindows}},
        {QStringLiteral("Drive"), {"drive-harddisk", QStyle::SP_CustomBase, &drive}},
        {QStringLiteral("Mail"), {"mail-message-new", QStyle::SP_CustomBase, &envelope}},
        {QStringLiteral("history"), {"document-open-recent", QStyle::SP_CustomBase, &clock}},
        {QStringLiteral("Bookm"), {"bookmarks", QStyle::SP_CustomBase, &book}},
        {QStringLiteral("Save"), {"document-save", QStyle::SP_DialogSaveButton, nullptr}},
        {QStringLiteral("Print"), {"document-print", QStyle::SP_CustomBase, &printer}},
        {QStringLiteral("Feed"), {"application-rss+xml", QStyle::SP_CustomBase, &feed}},
    };
    return table;
}

} // namespace

namespace ToolbarIcons {

QIcon icon(const QString &key)
{
    const auto found = pictures().constFind(key);
    if (found == pictures().cend())
        return QIcon();
    const QString theme = QLatin1String(found->theme);
    if (!found->draw)
        return SharedIcons::themed(theme, found->standard);
    return SharedIcons::themedOr(
        theme, QStringLiteral("toolbar/") + key, [draw = found->draw] { return drawn(draw); });
}

} // namespace ToolbarIcons
