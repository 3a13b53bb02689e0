#include "search/run/AboutNames.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

QStringList list(const char *names) {
    return QString::fromUtf8(names).split(u'|', Qt::SkipEmptyParts);
}

TEST(AboutNames, stand_for_the_whole_name_first_and_then_for_the_longest) {
    const char *languages = "React|React Native|C|C++|Go|.NET";
    const char *french = "pêche|péché|Vélo|l’IA générative|Rust";
    const struct {
        const char *about;
        const char *names;
        const char *found;
    } cases[] = {
        {"React Native", languages, "React Native"},
        {"react native 0.80", languages, "React Native"},
        {"react-native", languages, "React Native"},
        {"React", languages, "React"},
        {"React 19", languages, "React"},
        {"Go", languages, "Go"},
        {"Django", languages, ""},
        {"Go, React Native", languages, "Go|React Native"},
        {"React Native et React", languages, "React Native|React"},
        {"C", languages, "C"},
        {"C++", languages, "C++"},
        {"C++20", languages, "C++"},
        {"C#", languages, ""},
        {"CSS", languages, ""},
        {"C/C++", languages, "C|C++"},
        {"C++ 26", "C|Go", ""},
        {".NET 10", languages, ".NET"},
        {"  Go  (weight 5)", languages, "Go"},
        {"VELO", french, "Vélo"},
        {"Pêche", french, "pêche"},
        {"péché en mer", french, "péché"},
        {"peche", french, "pêche|péché"},
        {"L'ia générative", french, "l’IA générative"},
        {"velocity", french, ""},
        {"Rust Book", "Rust|Rust Book", "Rust Book"},
        {"Visual Studio Code", "Visual Studio|Visual Studio Code", "Visual Studio Code"},
        {"@tanstack/react-query", "React|@tanstack/react-query", "@tanstack/react-query"},
        {"react", "React|react", "React|react"},
        {"", languages, ""},
        {"React", "", ""},
    };
    for (const auto &[about, names, found] : cases) {
        EXPECT_EQ(namesIn(QString::fromUtf8(about), list(names)), list(found)) << about;
    }
    EXPECT_TRUE(namesIn(QStringLiteral("a"), {QString()}).isEmpty());
}

} // namespace
} // namespace vorle
