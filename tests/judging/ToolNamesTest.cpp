#include "judging/ToolNames.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(ToolNames, are_found_as_whole_words_whatever_their_case) {
    const ToolNames names({QStringLiteral("Go"), QStringLiteral("C"), QStringLiteral("C#"),
                           QStringLiteral(".NET"), QStringLiteral("Visual  Studio Code"),
                           QStringLiteral("Visual Basic"), QStringLiteral("E\u0301lan"),
                           QStringLiteral("Node"), QStringLiteral("Node.js 22"), QString()});
    for (const char *text : {"Go 1.26", "du neuf dans go", "l’outil (Go)", "C, encore", "F# et c#.",
                             "Le .net de 2026", "visual studio\u00A0CODE, enfin",
                             "Visual Studio, puis Visual Basic", "Élan 3", "Node.js", "node"}) {
        EXPECT_TRUE(names.namedIn(QString::fromUtf8(text))) << text;
    }
    for (const char *text : {"", "Googler", "Cargo", "C++ 26", "Visual Studio", "ASP.NETs", "élans",
                             "Nodes", "visual studio codes", "vis"}) {
        EXPECT_FALSE(names.namedIn(QString::fromUtf8(text))) << text;
    }
    EXPECT_FALSE(ToolNames({}).namedIn(u"Go"));
}

} // namespace
} // namespace vorle
