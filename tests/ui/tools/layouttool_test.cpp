#include "core/base/uitexts.h"
#include "core/model/layouttreemodel.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "modaldialogs.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/openalllinks.h"
#include "ui/tools/frmtools.h"
#include "ui/tools/layoutpropertydialog.h"
#include "ui/tools/layouttool.h"

#include <QAction>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QToolBar>

using namespace Qt::StringLiterals;

class LayoutToolTest : public QObject
{
    Q_OBJECT

    LocalHttpServer m_server;
    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<MDIForm1> m_frame;
    frmTools *m_pane = nullptr;

    LayoutTool *tool() const { return m_pane->layouts(); }
    LayoutTreeModel *model() const { return tool()->model(); }
    QString url(const char *path) const { return m_server.url(QLatin1String(path)).toString(); }
    void press(const char *key)
    {
        tool()->band()->findChild<QAction *>(QLatin1String(key))->trigger();
    }
    static QRect placeOf(frmBrowser *window) { return window->parentWidget()->geometry(); }

private slots:
    void initTestCase()
    {
        m_server.setPage(u"/one"_s, EngineTest::titled("One"));
        m_server.setPage(u"/two"_s, EngineTest::titled("Two"));
        m_server.setSilent(u"/never"_s);
    }

    void init()
    {
        EngineTest::failOnWarnings();
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("VANTRELL_DATA_DIR", m_data->path().toUtf8());
        m_frame = std::make_unique<MDIForm1>();
        m_frame->resize(1000, 700);
        m_frame->show();
        m_pane = frmTools::attach(m_frame.get());
        m_pane->SelectTool(frmTools::Layouts);
    }

    void cleanup() { m_frame.reset(); }

    void archivedLayoutOpensAsSavedAndIsDeletedOnlyOnYes()
    {
        frmBrowser *one = EngineTest::openOn(*m_frame, url("/one"), "One");
        frmBrowser *two = EngineTest::openOn(*m_frame, url("/two"), "Two");
        for (frmBrowser *opened : {one, two})
            static_cast<QMdiSubWindow *>(opened->parentWidget())->showNormal();
        one->parentWidget()->setGeometry(10, 20, 400, 300);
        two->parentWidget()->setGeometry(250, 60, 320, 240);
        const QList<QRect> saved = {placeOf(one), placeOf(two)};

        // An empty name is refused in the dialog; the dialog stays until it has one.
        Answerer ok(u"OK"_s);
        whenShown<LayoutPropertyDialog>(this, [](LayoutPropertyDialog *dialog) {
            dialog->nameField->clear();
            dialog->accept();
            QVERIFY(dialog->isVisible());
            dialog->nameField->setText(u"Zwei Seiten"_s);
            dialog->infoField->setPlainText(u"Für den Test"_s);
            dialog->accept();
        });
        m_frame->menuAction(u"mn_Anordnung_saveArchive"_s)->trigger();
        QCOMPARE(ok.text, uiText(1561));
        const QModelIndex layout = model()->index(0, 0);
        QCOMPARE(layout.data().toString(), u"Zwei Seiten"_s);
        QCOMPARE(layout.data(Qt::ToolTipRole).toString(), u"Für den Test"_s);
        QCOMPARE(model()->index(1, 0, layout).data(Qt::ToolTipRole).toString(), url("/two"));

        // From the files, after the windows are gone.
        m_frame->CloseAll();
        VERIFY_SOON(m_frame->browsers().isEmpty());
        tool()->ViewLayoutArchiv();
        tool()->select(model()->index(0, 0));
        press("layout");
        VERIFY_SOON(m_frame->browsers().size() == 2);
        const QList<frmBrowser *> back = m_frame->browsers();
        VERIFY_SOON(EngineTest::shows(back.at(0), "One") && EngineTest::shows(back.at(1), "Two"));
        for (int i = 0; i < 2; ++i) {
            const QRect place = placeOf(back.at(i));
            QVERIFY((place.topLeft() - saved.at(i).topLeft()).manhattanLength() <= 2);
            QVERIFY(qAbs(place.width() - saved.at(i).width()) <= 1
                && qAbs(place.height() - saved.at(i).height()) <= 1);
        }

        // A window node opens that window alone.
        tool()->select(model()->index(1, 0, model()->index(0, 0)));
        press("layout");
        VERIFY_SOON(m_frame->browsers().size() == 3);
        VERIFY_SOON(EngineTest::shows(m_frame->browsers().at(2), "Two"));

        // Deleting asks first; a no keeps the layout, a yes removes it with its file.
        const QString file = m_data->filePath(tool()->book().colLayout.at(0).FileName);
        QVERIFY(QFile::exists(file));
        tool()->select(model()->index(0, 0));
        {
            Answerer no(u"&No"_s);
            tool()->action(u"mn_DelLayout"_s)->trigger();
            QCOMPARE(no.text, uiText(1557).arg(u"Zwei Seiten"_s));
            QCOMPARE(model()->rowCount(), 1);
        }
        Answerer yes(u"&Yes"_s);
        tool()->action(u"mn_DelLayout"_s)->trigger();
        QCOMPARE(model()->rowCount(), 0);
        QVERIFY(!QFile::exists(file));
    }

    void layoutFromALargerScreenOpensInsideTheFrameAFewLoadingAtOnce()
    {
        // Eight windows across 16,000 twips: far wider than this frame.
        QList<FensterInfo> wide;
        for (int i = 0; i < 8; ++i)
            wide.append({0, {}, url("/never?") + QString::number(i), i * 2000.0f, 300, 2000, 9000});
        model()->addLayout(wide, u"Breit"_s, {});
        // Listed in the frame's "open web layout" too.
        QMenu *openMenu = m_frame->menus()->layoutMenu();
        emit openMenu->aboutToShow();
        QAction *entry = openMenu->actions().last();
        QCOMPARE(entry->text(), u"Breit"_s);
        entry->trigger();
        VERIFY_SOON(m_server.requestCount(u"/never"_s) == OpenAllLinks::MaxLoading);
        EngineTest::waitUntil([] { return false; }, 500);
        QCOMPARE(m_frame->browsers().size(), OpenAllLinks::MaxLoading);
        const QRect area(QPoint(0, 0), m_frame->mdiArea()->viewport()->size());
        for (frmBrowser *opened : m_frame->browsers())
            QVERIFY(area.contains(placeOf(opened)));
    }
};

VANTRELL_ENGINE_TEST_MAIN(LayoutToolTest)
#include "layouttool_test.moc"
