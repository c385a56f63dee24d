#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QWebEngineProfile;

// Downloads of every page: the user chooses where the file goes, progress is told
// as status text, and the file is really written.
class Downloads final : public QObject
{
    Q_OBJECT

public:
    // Returns the path to save to, or an empty string to cancel.
    using TargetChooser = std::function<QString(const QString &suggestedPath)>;

    explicit Downloads(QWebEngineProfile *profile, QObject *parent = nullptr);

    void setTargetChooser(TargetChooser chooser) { m_chooser = std::move(chooser); }

signals:
    void statusText(const QString &text);
    void finished(const QString &path, bool ok);

private:
    TargetChooser m_chooser;
};
