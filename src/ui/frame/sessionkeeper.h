#pragma once

#include "core/model/sessionfile.h"

#include <QHash>
#include <QObject>
#include <QRect>

class MDIForm1;
class QTimer;

// Keeps the frame's open windows in the session file while the program runs, so that
// a start after a crash can offer them again; a clean quit removes the file.
class SessionKeeper final : public QObject
{
    Q_OBJECT

public:
    // A change is written this long after it happened, together with those that follow.
    static constexpr int WriteDelayMs = 3000;

    SessionKeeper(MDIForm1 &frame, const QString &path);

    // Offers the windows a session left behind in the frame's info bar and starts
    // keeping this session once the user has answered (at once when nothing is offered).
    // Returns the number of windows offered.
    int offerRestore();
    // The program quits: nothing is left to restore. An unanswered offer keeps its file.
    void finish();

    bool isKeeping() const { return m_keeping; }
    bool isAsking() const { return m_asking; }
    const SessionFile &file() const { return m_file; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void start();
    void watchNewWindows();
    void changed();
    void write();
    QList<WindowDescription> describeWindows() const;

    MDIForm1 &m_frame;
    SessionFile m_file;
    QTimer *m_delay;
    // The last normal geometry of each window, for the windows shown minimised or
    // maximised now.
    QHash<QObject *, QRect> m_normal;
    QString m_lastProblem;
    bool m_keeping = false;
    bool m_asking = false;
};
