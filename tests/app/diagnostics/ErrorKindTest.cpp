#include "app/diagnostics/ErrorKind.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(ErrorKind, of_an_error_only_what_kind_it_is_is_told) {
    const std::pair<const char *, const char *> cases[] = {
        {"Claude Code n’est plus connecté.", "Claude Code n’est plus connecté."},
        {"Codex n’a pas répondu à temps.", "Codex n’a pas répondu à temps."},
        {"réponse du moteur illisible", "réponse du moteur illisible"},
        {"L’IA s’est arrêtée (code 1). # Your task: judge « Tiravue » for sk-ant-123",
         "L’IA s’est arrêtée (code 1)."},
        {"API Error: 529 Overloaded at https://secret.example/x", "api error, 529, overloaded"},
        {"You've hit your limit · resets 1pm (Europe/Lisbon)", "hit your limit"},
        {"/home/marie/Projets/Potager/x: No space left on device", "no space left on device"},
        {"Le système a refusé : il n’y a plus de place sur le disque (/home/marie/Potager)",
         "il n’y a plus de place sur le disque"},
        {"Marie, your page on courgettes", "? (30)"},
        {"", ""},
    };
    for (const auto &[text, kind] : cases) {
        EXPECT_EQ(errorKind(QString::fromUtf8(text)).toStdString(), kind) << text;
    }
    const QString huge = QString(5'000'000, u'4');
    EXPECT_LT(errorKind(huge).size(), 20);
}

} // namespace
} // namespace vorle
