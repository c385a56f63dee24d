#pragma once

#include <QLabel>
#include <QPixmap>

// The six-frame busy animation of a browser window.
class BusyIndicator final : public QLabel
{
    Q_OBJECT

public:
    static constexpr int FrameCount = 6;

    explicit BusyIndicator(QWidget *parent = nullptr);

    void reset();
    void advance();
    int frame() const { return m_frame; }

private:
    QPixmap m_frames[FrameCount];
    int m_frame = 0;
};
