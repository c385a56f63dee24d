// One QMainWindow holding one QWebEngineView, or N views in a QMdiArea, each on the
// address given. Nothing else: the physical limit of a browser built on this engine.
#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QWebEngineView>

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    const QStringList addresses = app.arguments().mid(1);
    QMainWindow window;
    window.resize(1000, 700);
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
            area->addSubWindow(view)->show();
        }
    }
    window.show();
    return app.exec();
}
