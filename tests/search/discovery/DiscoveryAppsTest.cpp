#include "search/discovery/DiscoveryApps.h"

#include <gtest/gtest.h>

namespace vorle::discovery {
namespace {

App app(const char *name, const char *category = nullptr) {
    return {QString::fromUtf8(name), QStringLiteral("/somewhere"),
            category ? std::optional(QString::fromLatin1(category)) : std::nullopt};
}

std::string names(const QList<App> &apps) {
    QStringList found;
    for (const App &each : apps) {
        found += each.name;
    }
    return found.join(QStringLiteral(", ")).toStdString();
}

TEST(DiscoveryApps, leisure_is_known_by_name_or_by_category) {
    const std::pair<App, bool> cases[] = {
        {app("Steam"), true},
        {app("Spotify (old)"), true},
        {app("Self-Service", "public.app-category.business"), true},
        {app("steam"), false},
        {app("Chess", "public.app-category.games"), true},
        {app("Radio", "public.app-category.music"), true},
        {app("Films", "public.app-category.entertainment"), true},
        {app("Golf", "public.app-category.sports-games"), false},
        {app("Xcode", "public.app-category.developer-tools"), false},
        {app("Notes"), false},
    };
    for (const auto &[each, leisure] : cases) {
        EXPECT_EQ(isLeisureApp(each), leisure) << each.name.toStdString();
    }
}

TEST(DiscoveryApps, tools_are_proposed_in_their_own_order) {
    EXPECT_EQ(recognisedTools().size(), 24);
    EXPECT_EQ(recognisedTools()[18], QStringLiteral("TablePlus"));
    EXPECT_EQ(proposedTools({app("Firefox"), app("Notes"), app("Steam"), app("Xcode"),
                             app("Figma", "public.app-category.games"), app("Claude")}),
              QStringList(
                  {QStringLiteral("Xcode"), QStringLiteral("Claude"), QStringLiteral("Firefox")}));
}

TEST(DiscoveryApps, each_name_is_shown_once_where_a_reader_looks_for_it) {
    EXPECT_EQ(names(inOrder({app("Zoom"), app("éditeur"), app("Arc", "first"), app("Figma"),
                             app("Arc", "second"), app("arc")})),
              "Arc, arc, éditeur, Figma, Zoom");
    EXPECT_EQ(inOrder({app("Arc", "first"), app("Arc", "second")}).first().category,
              QStringLiteral("first"));
}

TEST(DiscoveryApps, the_first_trade_that_fits_is_proposed) {
    const struct {
        QStringList labels;
        QStringList apps;
        const char *job;
    } cases[] = {
        {{QStringLiteral("React"), QStringLiteral("Expo")}, {}, "Développeur mobile"},
        {{QStringLiteral("React")}, {QStringLiteral("Xcode")}, "Développeur mobile"},
        {{}, {QStringLiteral("Android Studio")}, "Développeur mobile"},
        {{QStringLiteral("Python"), QStringLiteral("TypeScript")}, {}, "Développeur web"},
        {{QStringLiteral("Python")}, {QStringLiteral("Figma")}, "Développeur Python"},
        {{QStringLiteral("Swift")}, {QStringLiteral("Figma")}, "Designer produit"},
        {{QStringLiteral("Blender")}, {QStringLiteral("Blender")}, "Développeur"},
        {{}, {}, "Développeur"},
    };
    for (const auto &[labels, apps, job] : cases) {
        const QString title = jobTitle(labels, apps);
        EXPECT_EQ(title.toStdString(), job);
        EXPECT_TRUE(jobPresets().contains(title));
    }
    EXPECT_TRUE(jobPresets().contains(QStringLiteral("IA pour le design")));
}

} // namespace
} // namespace vorle::discovery
