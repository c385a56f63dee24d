// Times reading a 10,000-item RSS feed and building its page, as a ratio to parsing the
// same bytes with QDomDocument alone, measured in the same run.

#include "browser/feedpage.h"
#include "browser/feedparser.h"

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

// The median of `runs` timings of `work`, in milliseconds.
double medianMs(int runs, const std::function<void()> &work)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void measure(QTextStream &out, const char *label, const QByteArray &bytes, int runs)
{
    qsizetype sink = 0;
    const double domPlain = medianMs(runs, [&] {
        QDomDocument document;
        document.setContent(bytes);
        sink += document.documentElement().childNodes().size();
    });
    const double domNamespaces = medianMs(runs, [&] {
        QDomDocument document;
        document.setContent(bytes, true);
        sink += document.documentElement().childNodes().size();
    });
    const double parse
        = medianMs(runs, [&] { sink += FeedParser::parse(bytes).feed.items.size(); });
    const Feed feed = FeedParser::parse(bytes).feed;
    const double render = medianMs(
        runs, [&] { sink += FeedPage::render(feed, QStringLiteral("Weiterlesen...")).size(); });
    const double total = medianMs(runs, [&] {
        const FeedParseResult result = FeedParser::parse(bytes);
        sink += FeedPage::render(result.feed, QStringLiteral("Weiterlesen...")).size();
    });

    out << label << ": " << feed.items.size() << " items, " << bytes.size() / 1024 << " KiB\n";
    out << QStringLiteral("  QDomDocument::setContent           %1 ms (baseline)\n")
               .arg(domPlain, 8, 'f', 1);
    out << QStringLiteral("  setContent with namespaces         %1 ms  %2x\n")
               .arg(domNamespaces, 8, 'f', 1)
               .arg(domNamespaces / domPlain, 0, 'f', 2);
    out << QStringLiteral("  FeedParser::parse                  %1 ms  %2x\n")
               .arg(parse, 8, 'f', 1)
               .arg(parse / domPlain, 0, 'f', 2);
    out << QStringLiteral("  FeedPage::render                   %1 ms  %2x\n")
               .arg(render, 8, 'f', 1)
               .arg(render / domPlain, 0, 'f', 2);
    out << QStringLiteral("  parse + render                     %1 ms  %2x  (goal <= 2x)\n")
               .arg(total, 8, 'f', 1)
               .arg(total / domPlain, 0, 'f', 2);
    if (sink == 0)
        out << "  (nothing measured)\n";
    out.flush();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const int runs = 9;
    measure(out, "benign descriptions", makeFeed(10000, false), runs);
    measure(out, "descriptions to clean", makeFeed(10000, true), runs);
    return 0;
}
