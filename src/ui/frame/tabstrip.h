#pragma once

#include <QTabBar>

// The tab strip of the frame: one tab per browser window, keyed "[n]" like the
// window registry.
class TabStrip final : public QTabBar
{
    Q_OBJECT

public:
    explicit TabStrip(QWidget *parent = nullptr);

    static QString keyOf(int number) { return u'[' + QString::number(number) + u']'; }
    // Doubles every "&" so that a title is shown as it is, never as a shortcut.
    static QString escapeCaption(const QString &title);

    void CreateTab(int number, const QString &caption);
    void UpdateTab(const QString &title, int number);
    void RemoveTab(int number);
    // The tab's tool tip, and whether the tab is drawn in the highlight colour.
    void setTabNote(int number, const QString &toolTip, bool highlighted);
    int indexOfKey(const QString &key) const;
    QString keyAt(int index) const;
    void selectKey(const QString &key);
    // Tabs drawn as buttons (true) or as tabs.
    void setButtonStyle(bool buttons);
    void setBoldCaptions(bool bold);

signals:
    void tabLeftClicked(const QString &key);
    void tabRightClicked(const QPoint &globalPos);
    // The tab's close button or a middle click on the tab.
    void tabCloseClicked(const QString &key);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    // With many windows a caption keeps enough room to be read; the strip scrolls
    // instead of squeezing every tab to an ellipsis.
    QSize minimumTabSizeHint(int index) const override;
};
