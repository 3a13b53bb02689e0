// A page to its text, title and description: each shape of page in turns with the regular
// expressions it stands for (the peer, same result) and with one look at every byte (the floor:
// decoding the UTF-8 and finding each "<"). Then pages made to be slow, at two sizes.

#include "search/web/PageText.h"
#include "tests/support/LiteralPageText.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <vector>

namespace {

using namespace vorle;

constexpr int turns = 9;

double milliseconds(const std::function<void()> &work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// What a page costs by itself: the least of the turns, for others share the machine.
double least(const std::vector<double> &times) {
    return *std::min_element(times.begin(), times.end());
}

double median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

qsizetype lookOnce(const QByteArray &page) {
    qsizetype found = QString::fromUtf8(page).size();
    const char *end = page.constData() + page.size();
    for (const char *at = page.constData(); at != nullptr && at < end; ++found) {
        at = static_cast<const char *>(std::memchr(at, '<', static_cast<std::size_t>(end - at)));
        at = at == nullptr ? end : at + 1;
    }
    return found;
}

QByteArray page(const QByteArray &head, const QByteArray &body) {
    return "<!doctype html><html lang=fr><head><meta charset=utf-8><title>Une page &amp; son "
           "titre</title>\n<meta property=\"og:title\" content=\"Un titre\">\n<meta "
           "name=\"description\" content=\"Ce qu’elle dit\">\n" +
           head + "</head>\n<body class=\"a b c\">\n" + body + "\n</body></html>\n";
}

QByteArray prose(qsizetype size) {
    const QByteArray paragraph =
        "  <p class=\"texte\">Une phrase avec <b>du gras</b> &amp; des entit&#233;s, une "
        "<a href=\"/suite?x=1&amp;y=2\" rel=\"nofollow\">suite</a> d’accents été à l’ombre, et "
        "quelques mots encore pour finir la phrase comme il faut.</p>\n\n";
    return paragraph.repeated(size / paragraph.size() + 1);
}

QByteArray script(qsizetype size) {
    return "<script>" +
           QByteArray("if(a<b&&c>d){window.x=[1,2,3].map(function(e){return e*2})}")
               .repeated(size / 64) +
           "</script>\n";
}

QByteArray links(int count) {
    return QByteArray("<li class=\"item\"><a href=\"/section/article\">Un lien</a></li>\n")
        .repeated(count);
}

struct Shape {
    const char *name;
    QByteArray bytes;
};

std::vector<Shape> shapes() {
    const QByteArray icon = "<svg viewBox=\"0 0 16 16\"><path d=\"M8 0C3.58 0 0 3.58 0 8c0 3.54 "
                            "2.29 6.53 5.47 7.59\"></path></svg>";
    const QByteArray row =
        "<div role=\"row\" class=\"Box-row Box-row--focus-gray\">" + icon +
        "<a class=\"Link--primary\" href=\"/o/r/blob/main/f.cpp\">f.cpp</a><span "
        "class=\"color-fg-muted\">two days ago</span></div>\n";
    const QByteArray code =
        "<pre><code><span class=\"k\">int</span> <span class=\"n\">x</span> "
        "<span class=\"o\">=</span> <span class=\"mi\">1</span>;\n</code></pre>\n";
    return {
        {"news article, 90 KB",
         page(script(30'000), "<header><nav>" + links(200) + "</nav></header><article>" +
                                  prose(20'000) + "</article><aside>" + links(300) + "</aside>" +
                                  script(10'000))},
        {"documentation, 220 KB",
         page("<style>" + QByteArray(".a > .b{color:red}\n").repeated(1'000) + "</style>",
              "<nav>" + links(1'000) + "</nav><main>" +
                  (prose(600) + code.repeated(4)).repeated(120) + "</main>")},
        {"code host, 290 KB",
         page(script(120'000), "<header>" + icon.repeated(50) + "</header>" + row.repeated(600) +
                                   "<article>" + prose(15'000) + "</article>")},
        {"long page, 3 MB",
         page(script(200'000), "<nav>" + links(2'000) + "</nav>" + prose(maxPageBytes))
             .first(maxPageBytes)},
    };
}

void compareShapes() {
    std::printf("%-24s %9s %9s %9s %8s %8s\n", "page", "scanners", "patterns", "floor", "faster",
                "x floor");
    for (const auto &[name, bytes] : shapes()) {
        PageText scanned;
        PageText literal;
        std::vector<double> ours;
        std::vector<double> theirs;
        std::vector<double> floor;
        qsizetype seen = 0;
        for (int turn = 0; turn < turns; ++turn) {
            ours.push_back(
                milliseconds([&] { scanned = extractPage(bytes, "text/html; charset=utf-8"); }));
            theirs.push_back(
                milliseconds([&] { literal = test::literalPageText(QString::fromUtf8(bytes)); }));
            floor.push_back(milliseconds([&] { seen += lookOnce(bytes); }));
        }
        std::printf("%-24s %6.2f ms %6.2f ms %6.2f ms %7.1fx %7.1fx  %s\n", name, median(ours),
                    median(theirs), median(floor), median(theirs) / median(ours),
                    median(ours) / median(floor),
                    scanned == literal && seen > 0 ? "same result" : "RESULTS DIFFER");
    }
}

void hostilePages() {
    const std::vector<Shape> units{
        {"<", "<"},
        {">", ">"},
        {"<>", "<>"},
        {"&", "&"},
        {"&#0 without end", "&#0000000"},
        {"blanks", " \t"},
        {"line feeds", "\n"},
        {"wide blanks", "\u2003"},
        {"combining marks", "\u0301"},
        {"joined emoji", "👩\u200D"},
        {"<!-- never closed", "<!-- "},
        {"<script never closed", "<script "},
        {"</script> alone", "</script>"},
        {"<script></script>", "<script></script>"},
        {"all noise, unclosed", "<script><style><noscript><svg><nav><header><footer><aside><form>"},
        {"nested noise", "<sc<script></script>ript>"},
        {"<title never closed", "<title "},
        {"<title> unclosed", "<title>"},
        {"<article never closed", "<article "},
        {"<article> unclosed", "<article>"},
        {"<meta never closed", "<meta "},
        {"<meta> closed", "<meta >"},
        {"meta keys", "<meta name=\"description\" "},
        {"meta keys and values", "<meta name='description' content='"},
        {"meta values", "<meta content=\""},
        {"meta values past tags", "<meta content='>"},
        {"meta values, no quote", "<meta content=>"},
        {"one meta, many values", " content=\"a\" name=\"x\""},
        {"<me", "<me"},
        {"tags only", "<b>"},
        {"quotes", "\"'"},
    };
    std::printf("\n%-24s %10s %10s %8s\n", "hostile page", "1.5 MB", "3 MB", "ratio");
    double worst = 0;
    double worstRatio = 0;
    for (const auto &[name, unit] : units) {
        const QByteArray whole = "<meta" + unit.repeated(maxPageBytes / unit.size());
        const QByteArray half = whole.first(maxPageBytes / 2);
        std::vector<double> small;
        std::vector<double> large;
        for (int turn = 0; turn < turns; ++turn) {
            small.push_back(milliseconds([&] { extractPage(half, "text/html; charset=utf-8"); }));
            large.push_back(milliseconds([&] { extractPage(whole, "text/html; charset=utf-8"); }));
        }
        const double ratio = least(large) / least(small);
        worst = std::max(worst, least(large));
        worstRatio = std::max(worstRatio, ratio);
        std::printf("%-24s %7.2f ms %7.2f ms %7.2fx\n", name, least(small), least(large), ratio);
    }
    std::printf("worst: %.2f ms, ratio %.2f\n", worst, worstRatio);
}

} // namespace

int main() {
    compareShapes();
    hostilePages();
    return 0;
}
