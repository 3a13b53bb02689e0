#include "base/Text.h"
#include "search/web/PageText.h"
#include "search/web/PageTwin.h"
#include "tests/support/LiteralPageText.h"
#include "tests/support/TagSoup.h"

#include <array>
#include <cstdio>
#include <cstdlib>

// The first byte chooses: even, what follows is spelled as tag soup; odd, it is the page, with
// one of several content types. What is valid UTF-8 must read as the patterns read it; anything
// must read as valid, bounded text, what is taken for a page's twin in JSON too.
namespace {

using namespace vorle;

[[noreturn]] void fail(const char *what, const QByteArray &page) {
    std::fprintf(stderr, "%s:\n%s\n", what, page.constData());
    std::abort();
}

void compare(const QByteArray &page) {
    const PageText literal = test::literalPageText(QString::fromUtf8(page));
    if (extractPage(page, "text/html; charset=utf-8") != literal) {
        fail("scanners and patterns differ", page);
    }
}

void check(const PageText &read, const QByteArray &page) {
    if (!QByteArrayView(read.text).isValidUtf8() || read.text.contains('\0') ||
        characterCount(QString::fromUtf8(read.text)) > maxBodyCharacters) {
        fail("the text is not what it should be", page);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static constexpr std::array<QByteArrayView, 6> types{"text/html",
                                                         "text/plain",
                                                         "",
                                                         "text/html; charset=shift_jis",
                                                         "text/html; charset=utf-16",
                                                         "text/html; charset=iso-8859-1"};
    if (size == 0) {
        return 0;
    }
    const QByteArrayView rest(data + 1, static_cast<qsizetype>(size - 1));
    if (data[0] % 2 == 0) {
        compare(test::tagSoup(rest.first(std::min<qsizetype>(rest.size(), 60))));
        return 0;
    }
    const QByteArray page(rest.data(), rest.size());
    check(extractPage(page, types[data[0] / 2 % types.size()]), page);
    for (const char *link :
         {"https://npmjs.com/package/a", "https://reddit.com/r/a/comments/b/", "https://youtu.be/a",
          "https://github.com/a/b/releases", "https://github.com/a/b/releases/latest"}) {
        check(twinOf(QUrl(QString::fromLatin1(link)))->read(page), page);
    }
    // Longer ones exceed what the patterns may take; the other exceptions are no HTML at all.
    const bool html =
        !page.contains('\0') && !page.startsWith("\xEF\xBB\xBF") && !page.startsWith("%PDF-");
    if (html && page.size() < 1'000 && rest.isValidUtf8()) {
        compare(page);
    }
    return 0;
}
