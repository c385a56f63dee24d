#pragma once

#include <QLabel>

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
    int m_frame = 0;
};
