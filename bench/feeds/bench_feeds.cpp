// Times reading a 10,000-item RSS feed and building its page, as a ratio to parsing the
// same bytes with QDomDocument alone, measured in the same run.

#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QElapsedTimer>
#include <QTextStream>

#include <algorithm>
#include <functional>
#include <vector>

namespace {

QByteArray makeFeed(int items, bool hostile)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                     "<rss version=\"2.0\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\">\n"
                     "<channel><title>Benchmark feed</title><link>http://example.org/</link>\n"
                     "<image><url>http://example.org/logo.png</url></image>\n";
    for (int i = 1; i <= items; ++i) {
        const QByteArray n = QByteArray::number(i);
        xml += "<item><title>Meldung " + n
            + ": Über die Lage der Dinge</title>"
              "<link>http://example.org/news/"
            + n
            + ".html</link>"
              "<guid>http://example.org/news/"
            + n
            + ".html</guid>"
              "<dc:date>2024-05-01T12:00:00Z</dc:date>"
              "<description><![CDATA[<p>Ein kurzer Absatz zur Meldung "
            + n + " mit <a href=\"http://example.org/more/" + n
            + "\">weiteren Angaben</a>, "
              "<b>Hervorhebung</b> und einem Bild <img src=\"http://example.org/i/"
            + n + ".png\" alt=\"\">.</p>"
            + (hostile ? "<script>alert(1)</script><img src=x onerror=\"y()\">" : "")
            + "]]></description></item>\n";
    }
    xml += "</channel></rss>\n";
    return xml;
}

double elapsedMs(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return timer.nsecsElapsed() / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Each run times every step once, one after the other, so that a machine busy with
// other work slows the baseline and the steps alike; ratios are taken per run.
void measure(QTextStream &out, const char *label, const QByteArray &bytes, int runs)
{
    qsizetype sink = 0;
    const Feed feed = FeedParser::parse(bytes).feed;
    enum Step { DomPlain, DomNamespaces, Parse, Render, Total, StepCount };
    std::vector<double> times[StepCount];
    std::vector<double> ratios[StepCount];
    for (int run = 0; run < runs; ++run) {
        double t[StepCount];
        t[DomPlain] = elapsedMs([&] {
            QDomDocument document;
            document.setContent(bytes);
            sink += document.documentElement().childNodes().size();
        });
        t[DomNamespaces] = elapsedMs([&] {
            QDomDocument document;
            document.setContent(bytes, true);
            sink += document.documentElement().childNodes().size();
        });
        t[Parse] = elapsedMs([&] { sink += FeedParser::parse(bytes).feed.items.size(); });
        t[Render] = elapsedMs(
            [&] { sink += FeedPage::render(feed, QStringLiteral("Weiterlesen...")).size(); });
        t[Total] = elapsedMs([&] {
            const FeedParseResult result = FeedParser::parse(bytes);
            sink += FeedPage::render(result.feed, QStringLiteral("Weiterlesen...")).size();
        });
        for (int step = 0; step < StepCount; ++step) {
            times[step].push_back(t[step]);
            ratios[step].push_back(t[step] / t[DomPlain]);
        }
    }

    static const char *const names[StepCount]
        = {"QDomDocument::setContent (baseline)", "setContent with namespaces", "FeedParser::parse",
            "FeedPage::render", "parse + render (goal <= 2x)"};
    out << label << ": " << feed.items.size() << " items, " << bytes.size() / 1024 << " KiB, "
        << runs << " runs, medians\n";
    for (int step = 0; step < StepCount; ++step) {
        out << QStringLiteral("  %1 %2 ms  %3x\n")
                   .arg(QString::fromLatin1(names[step]), -38)
                   .arg(median(times[step]), 7, 'f', 1)
                   .arg(median(ratios[step]), 0, 'f', 2);
    }
    if (sink == 0)
        out << "  (nothing measured)\n";
    out.flush();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const int runs = 15;
    measure(out, "benign descriptions", makeFeed(10000, false), runs);
    measure(out, "descriptions to clean", makeFeed(10000, true), runs);
    return 0;
}
