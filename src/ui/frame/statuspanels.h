#pragma once

#include <QObject>
#include <QTimer>

class QLabel;
class QStatusBar;

// The status bar's panels beside "status": "date" (dd.MM.yyyy) and "time" (hh:mm:ss),
// both ticking once a second, and "email", a picture with a tool tip that stays hidden
// until new mail is announced.
class StatusPanels final : public QObject
{
    Q_OBJECT

public:
    explicit StatusPanels(QStatusBar *bar);

    QLabel *date() const { return m_date; }
    QLabel *time() const { return m_time; }
    QLabel *email() const { return m_email; }

    // Shows or hides the mail picture with the tool tip that says why.
    void setMailNotice(bool visible, const QString &toolTip = QString());

signals:
    void mailNoticeClicked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tick();

    QLabel *m_date = nullptr;
    QLabel *m_time = nullptr;
    QLabel *m_email = nullptr;
    QTimer m_timer;
};
