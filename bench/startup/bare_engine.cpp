// One QMainWindow holding one QWebEngineView, or N views in a QMdiArea, each on the
// address given. Nothing else: the physical limit of a browser built on this engine.
// It takes the share of the screen Vantrell takes on its first start, and its windows
// fill the client area as Vantrell's do, so both draw pages of the same size.
#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>
#include <QStyle>
#include <QWebEngineView>

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    const QStringList addresses = app.arguments().mid(1);
    QMainWindow window;
    const QRect screen = window.screen()->availableGeometry();
    window.setGeometry(
        QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, screen.size() * 0.8, screen));
    if (addresses.size() <= 1) {
        auto *view = new QWebEngineView(&window);
        view->load(QUrl(addresses.value(0)));
        window.setCentralWidget(view);
    } else {
        auto *area = new QMdiArea(&window);
        window.setCentralWidget(area);
        for (const QString &address : addresses) {
            auto *view = new QWebEngineView;
            view->load(QUrl(address));
            area->addSubWindow(view)->showMaximized();
        }
    }
    window.show();
    return app.exec();
}
