#include "base/FrenchSpacing.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

/// "~" for a no-break space, "_" for a narrow one.
QString signs(const char *text) {
    return QString::fromUtf8(text).replace(u'~', QChar(0xA0)).replace(u'_', QChar(0x202F));
}

TEST(FrenchSpacing, keeps_signs_and_numbers_to_their_words) {
    const std::pair<const char *, const char *> cases[] = {
        {"Vrai ? Oui ! Bien ; fin : suite", "Vrai_? Oui_! Bien_; fin~: suite"},
        {"Quoi ?! Non ?", "Quoi_?! Non_?"},
        {"Il dit : « oui » .", "Il dit~: «_oui_» ."},
        {"«oui»", "«_oui_»"},
        {"(« oui ! »)", "(«_oui_!_»)"},
        {"180 Ko, 1,5 Mo et 20 min à 5 %.", "180~Ko, 1,5~Mo et 20~min à 5~%."},
        {"10 000 lignes, 1 234 567 €", "10_000 lignes, 1_234_567~€"},
        {"en 2026 100 fois, 3 fois, 12 mois", "en 2026 100 fois, 3 fois, 12 mois"},
        {"Une liste :\n- un ;\n- deux", "Une liste~:\n- un_;\n- deux"},
        // What has no blank gets none: it may be another language's.
        {"println! et Yahoo! : oui", "println! et Yahoo!~: oui"},
        // Times, links, versions, code and operators stay.
        {"à 8:00 : https://a.fr/x?y=1;z!", "à 8:00~: https://a.fr/x?y=1;z!"},
        {"« https://a.fr/a:b »", "«_https://a.fr/a:b_»"},
        {"«www.a.fr»", "«_www.a.fr_»"},
        {"React 19.2.0 : std::vec !important", "React 19.2.0~: std::vec !important"},
        {"a != b, x ::y, p :hover, c ?v=1, 8 :30", "a != b, x ::y, p :hover, c ?v=1, 8 :30"},
        {"`a ? b : c` ? ``x ` ; y`` ;", "`a ? b : c`_? ``x ` ; y``_;"},
        {"```\nif x ; y !\n180 Ko\n``` !", "```\nif x ; y !\n180 Ko\n```_!"},
        {"un ` seul ; deux", "un ` seul_; deux"},
        {"v1.2 345.6, 12 345-x, a1 234", "v1.2 345.6, 12 345-x, a1 234"},
        {" ; au début", " ; au début"},
        {"", ""},
    };
    for (const auto &[text, expected] : cases) {
        EXPECT_EQ(frenchSpacing(QString::fromUtf8(text)), signs(expected)) << text;
        EXPECT_EQ(frenchSpacing(signs(expected)), signs(expected)) << text;
    }
    // Linear, or this never ends.
    EXPECT_EQ(frenchSpacing(QStringLiteral("` `` ``` ").repeated(100'000)).size(), 900'000);
}

} // namespace
} // namespace vorle
