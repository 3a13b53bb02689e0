#include "search/run/TopicDraft.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(TopicDraft, is_judged_by_the_text_else_by_title_and_description) {
    ReadPage page;
    EXPECT_EQ(judgedContent(page), "");
    page.level = ReadLevel::Meta;
    page.title = QStringLiteral("Titre");
    page.description = QStringLiteral("Résumé");
    EXPECT_EQ(judgedContent(page), "Titre\nRésumé");
    page.text = "Release 2.0 fixes the crash."; // short and plain: all there is
    EXPECT_EQ(judgedContent(page), "Release 2.0 fixes the crash.");
}

} // namespace
} // namespace vorle
