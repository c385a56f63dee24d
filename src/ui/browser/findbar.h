#pragma once

#include <QPointer>
#include <QWidget>

class PageView;
class QLabel;
class QLineEdit;

// The find bar under a browser window's bars: finds text in the page as it is typed,
// steps to the next or previous match and counts them. Escape closes it and clears
// the highlight.
class FindBar final : public QWidget
{
    Q_OBJECT

public:
    explicit FindBar(PageView *page, QWidget *parent = nullptr);

    // Shows the bar with its text selected, ready for typing.
    void open();
    void close();

    void findNext();
    void findPrevious();

    QLineEdit *textBox() const { return m_text; }
    // "2 von 5 Treffern", "Keine Treffer" or empty.
    QString resultText() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void find(bool backward);
    void showResult(int active, int count);

    QPointer<PageView> m_page;
    QLineEdit *m_text = nullptr;
    QLabel *m_result = nullptr;
    quint64 m_request = 0;
};
